#include "Values/FilePath.h"

#include <QList>

namespace Quillmere {

namespace {

QByteArray withoutTrailingSlashes(const QByteArray &bytes)
{
    qsizetype end = bytes.size();
    while (end > 1 && bytes.at(end - 1) == '/')
        --end;
    return bytes.first(end);
}

// Unicode's explicit directional formatting characters turn the text that follows them.
bool turnsDirection(QChar character)
{
    const char16_t code = character.unicode();
    return code == 0x200E || code == 0x200F || code == 0x061C || (code >= 0x202A && code <= 0x202E)
        || (code >= 0x2066 && code <= 0x2069);
}

bool breaksTheLine(QChar character)
{
    return character.category() == QChar::Other_Control || character.unicode() == 0x2028
        || character.unicode() == 0x2029;
}

} // namespace

FilePath::FilePath(QByteArray bytes)
    : m_bytes(std::move(bytes))
{
}

FilePath::FilePath(const char *utf8)
    : m_bytes(utf8)
{
}

FilePath FilePath::standardized() const
{
    const bool absolute = m_bytes.startsWith('/');
    QList<QByteArray> kept;
    for (const QByteArray &component : m_bytes.split('/')) {
        if (component.isEmpty() || component == ".")
            continue;
        if (component != "..")
            kept.append(component);
        else if (!kept.isEmpty() && kept.last() != "..")
            kept.removeLast();
        else if (!absolute)
            kept.append(component);
    }
    return FilePath((absolute ? QByteArray("/") : QByteArray()) + kept.join('/'));
}

QByteArray FilePath::lastPathComponent() const
{
    const QByteArray bytes = withoutTrailingSlashes(m_bytes);
    return bytes == "/" ? bytes : bytes.sliced(bytes.lastIndexOf('/') + 1);
}

QByteArray FilePath::pathExtension() const
{
    const QByteArray name = lastPathComponent();
    const qsizetype point = name.lastIndexOf('.');
    return point <= 0 ? QByteArray() : name.sliced(point + 1);
}

FilePath FilePath::deletingLastPathComponent() const
{
    const QByteArray bytes = withoutTrailingSlashes(m_bytes);
    const qsizetype slash = bytes.lastIndexOf('/');
    if (slash < 0)
        return {};
    return FilePath(slash == 0 ? QByteArray("/") : withoutTrailingSlashes(bytes.first(slash)));
}

FilePath FilePath::appending(const QByteArray &relative) const
{
    qsizetype start = 0;
    while (start < relative.size() && relative.at(start) == '/')
        ++start;
    const QByteArray base = withoutTrailingSlashes(m_bytes);
    return FilePath(base.endsWith('/') ? base + relative.sliced(start) : base + '/' + relative.sliced(start));
}

bool FilePath::isWithin(const FilePath &ancestor) const
{
    if (ancestor.m_bytes == "/")
        return m_bytes.startsWith('/');
    return m_bytes == ancestor.m_bytes || m_bytes.startsWith(ancestor.m_bytes + '/');
}

QString FilePath::displayText() const
{
    return displayText(m_bytes);
}

QString FilePath::displayText(const QByteArray &name)
{
    QString text = QString::fromUtf8(name);
    for (QChar &character : text) {
        if (breaksTheLine(character) || turnsDirection(character))
            character = QChar::ReplacementCharacter;
    }
    return text;
}

} // namespace Quillmere
