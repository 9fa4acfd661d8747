#pragma once

#include <QByteArray>

namespace Quillmere {

/// What a program has written, of which the end is kept: one that never stops writing takes up no more memory for it.
class LastOutput
{
public:
    static constexpr qsizetype mostBytes = 1024 * 1024;

    void append(const QByteArray &output);
    /// All of it, or the last whole lines below a line that says how many bytes are left out above them.
    [[nodiscard]] QByteArray text() const;

private:
    QByteArray m_kept;
    qint64 m_leftOut = 0;
};

} // namespace Quillmere
