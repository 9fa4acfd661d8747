#pragma once

#include "Platform/FileManager.h"

#include <QByteArray>
#include <QList>

#include <optional>

namespace Quillmere {

/// The text of a desktop entry, of which single values are read and set. All else stays byte for byte: comments, order,
/// line ends, keys and groups that nobody here knows. Only the group "Desktop Entry" is looked at.
class DesktopEntryText
{
public:
    explicit DesktopEntryText(QByteArray text = {});
    /// Fails where @p file cannot be read, or is larger than any entry is.
    [[nodiscard]] static Result<DesktopEntryText> read(const FileManager &files, const FilePath &file);

    /// There is such a group.
    [[nodiscard]] bool isSound() const { return m_header >= 0; }
    [[nodiscard]] QByteArray text() const { return m_lines.join('\n'); }

    /// Escapes undone. Of a key that stands twice the last value; nothing for one that does not stand there.
    [[nodiscard]] std::optional<QByteArray> value(const QByteArray &key) const;
    /// The first of @p languages, such as "ru_RU" or "ru", that the key has a value for, else the one without language.
    [[nodiscard]] std::optional<QByteArray> value(const QByteArray &key, const QList<QByteArray> &languages) const;
    /// The elements of a list; empty when the key does not stand there.
    [[nodiscard]] QList<QByteArray> list(const QByteArray &key) const;
    /// Nothing for whatever is no truth value.
    [[nodiscard]] std::optional<bool> boolean(const QByteArray &key) const;

    /// In the place of the value that stands there, or else behind the last line of the group. Only when isSound().
    void setBoolean(const QByteArray &key, bool value);
    /// The same of a text without line ends, semicolons and backslashes.
    void setPlain(const QByteArray &key, const QByteArray &value);
    /// Takes all values of @p key away.
    void remove(const QByteArray &key);
    /// Adds the values of @p other whose keys do not stand here. Only when isSound().
    void addMissing(const DesktopEntryText &other);
    /// The group holds a line that is neither empty nor a value of @p key, or there is something outside of the group.
    [[nodiscard]] bool saysMoreThan(const QByteArray &key) const;

private:
    /// Behind the last value of the group.
    void append(const QByteArray &line);
    /// Lines of the group that hold a value of @p key.
    [[nodiscard]] QList<qsizetype> linesOf(const QByteArray &key) const;
    [[nodiscard]] std::optional<QByteArray> rawValue(const QByteArray &key) const;

    QList<QByteArray> m_lines; ///< Without the newline, with a carriage return where there is one.
    qsizetype m_header = -1; ///< The line with the group's name.
    qsizetype m_end = 0; ///< The first line behind the group.
};

} // namespace Quillmere
