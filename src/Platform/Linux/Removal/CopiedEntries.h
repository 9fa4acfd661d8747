#pragma once

#include <QHash>
#include <QPair>

#include <ctime>
#include <sys/stat.h>

namespace Quillmere {

/// What was copied, so that afterwards nothing else is deleted than that.
class CopiedEntries
{
public:
    void add(const struct stat &status);
    /// True for an entry that was copied and has not been written to since.
    [[nodiscard]] bool contains(const struct stat &status) const;

private:
    struct State
    {
        qint64 size = 0;
        timespec modified = {};
    };

    QHash<QPair<dev_t, ino_t>, State> m_states;
};

} // namespace Quillmere
