#include "Platform/Linux/Applications/DesktopEntryText.h"

namespace Quillmere {

namespace {

constexpr qsizetype mostBytesOfAnEntry = 1024 * 1024;
const QByteArray group = "[Desktop Entry]";

bool isGroup(const QByteArray &line)
{
    return line.trimmed().startsWith('[');
}

bool isValue(const QByteArray &line)
{
    return !line.trimmed().startsWith('#') && line.contains('=');
}

QByteArray keyOf(const QByteArray &line)
{
    return line.left(line.indexOf('=')).trimmed();
}

/// Splits at semicolons that are not escaped, where @p isList; in any case undoes the escapes.
QList<QByteArray> partsOf(const QByteArray &raw, bool isList)
{
    QList<QByteArray> parts = {QByteArray()};
    for (qsizetype i = 0; i < raw.size(); ++i) {
        if (raw.at(i) == ';' && isList) {
            parts.append(QByteArray());
            continue;
        }
        if (raw.at(i) != '\\' || i + 1 == raw.size()) {
            parts.last().append(raw.at(i));
            continue;
        }
        const char letter = raw.at(++i);
        const qsizetype known = QByteArrayView("sntr\\;").indexOf(letter);
        if (known < 0)
            parts.last().append('\\').append(letter);
        else
            parts.last().append(" \n\t\r\\;"[known]);
    }
    return parts;
}

} // namespace

DesktopEntryText::DesktopEntryText(QByteArray text)
    : m_lines(text.split('\n'))
{
    for (qsizetype line = 0; line < m_lines.size(); ++line) {
        if (m_header < 0 && m_lines.at(line).trimmed() == group)
            m_header = line;
        else if (m_header >= 0 && isGroup(m_lines.at(line))) {
            m_end = line;
            return;
        }
    }
    m_end = m_lines.size();
}

Result<DesktopEntryText> DesktopEntryText::read(const FileManager &files, const FilePath &file)
{
    const Result<QByteArray> contents = files.contentsOfFile(file, mostBytesOfAnEntry);
    return contents ? Result<DesktopEntryText>(DesktopEntryText(contents.value()))
                    : Result<DesktopEntryText>(contents.failure());
}

std::optional<QByteArray> DesktopEntryText::value(const QByteArray &key) const
{
    const std::optional<QByteArray> raw = rawValue(key);
    return raw ? std::optional(partsOf(*raw, false).first()) : std::nullopt;
}

std::optional<QByteArray> DesktopEntryText::value(const QByteArray &key, const QList<QByteArray> &languages) const
{
    for (const QByteArray &language : languages) {
        if (const std::optional<QByteArray> found = value(key + '[' + language + ']'))
            return found;
    }
    return value(key);
}

QList<QByteArray> DesktopEntryText::list(const QByteArray &key) const
{
    QList<QByteArray> parts = partsOf(rawValue(key).value_or(QByteArray()), true);
    parts.removeAll(QByteArray());
    return parts;
}

std::optional<bool> DesktopEntryText::boolean(const QByteArray &key) const
{
    const QByteArray found = rawValue(key).value_or(QByteArray());
    // The digits are what the very first desktops wrote.
    if (found == "true" || found == "1")
        return true;
    return found == "false" || found == "0" ? std::optional(false) : std::nullopt;
}

void DesktopEntryText::setBoolean(const QByteArray &key, bool value)
{
    setPlain(key, value ? "true" : "false");
}

void DesktopEntryText::setPlain(const QByteArray &key, const QByteArray &value)
{
    const QList<qsizetype> places = linesOf(key);
    for (const qsizetype line : places) {
        const QByteArray old = m_lines.at(line);
        const qsizetype assigned = old.indexOf('=') + 1;
        const bool isSpaced = assigned < old.size() && old.at(assigned) == ' ';
        m_lines[line] = old.left(assigned) + (isSpaced ? " " : "") + value + (old.endsWith('\r') ? "\r" : "");
    }
    if (!places.isEmpty())
        return;
    append(key + '=' + value);
}

void DesktopEntryText::remove(const QByteArray &key)
{
    const QList<qsizetype> places = linesOf(key);
    for (auto place = places.crbegin(); place != places.crend(); ++place)
        m_lines.remove(*place);
    m_end -= places.size();
}

void DesktopEntryText::addMissing(const DesktopEntryText &other)
{
    for (qsizetype place = other.m_header + 1; other.m_header >= 0 && place < other.m_end; ++place) {
        const QByteArray line = other.m_lines.at(place).trimmed();
        if (isValue(line) && linesOf(keyOf(line)).isEmpty())
            append(line);
    }
}

bool DesktopEntryText::saysMoreThan(const QByteArray &key) const
{
    for (qsizetype place = 0; place < m_lines.size(); ++place) {
        const QByteArray line = m_lines.at(place).trimmed();
        const bool isOfKey = place > m_header && place < m_end && isValue(line) && keyOf(line) == key;
        if (place != m_header && !line.isEmpty() && !isOfKey)
            return true;
    }
    return false;
}

void DesktopEntryText::append(const QByteArray &line)
{
    qsizetype last = m_end - 1;
    while (last > m_header && !isValue(m_lines.at(last)))
        --last;
    m_lines.insert(last + 1, line + (m_lines.at(m_header).endsWith('\r') ? "\r" : ""));
    ++m_end;
    // A text that ended without a newline shall not begin a line of its own with it.
    if (last + 2 == m_lines.size())
        m_lines.append(QByteArray());
}

QList<qsizetype> DesktopEntryText::linesOf(const QByteArray &key) const
{
    QList<qsizetype> found;
    for (qsizetype line = m_header + 1; m_header >= 0 && line < m_end; ++line) {
        if (isValue(m_lines.at(line)) && keyOf(m_lines.at(line)) == key)
            found.append(line);
    }
    return found;
}

std::optional<QByteArray> DesktopEntryText::rawValue(const QByteArray &key) const
{
    const QList<qsizetype> places = linesOf(key);
    if (places.isEmpty())
        return std::nullopt;
    const QByteArray &line = m_lines.at(places.last());
    return line.sliced(line.indexOf('=') + 1).trimmed();
}

} // namespace Quillmere
