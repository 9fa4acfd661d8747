#pragma once

#include <QByteArray>
#include <QHashFunctions>
#include <QMetaType>
#include <QString>

#include <compare>

namespace Quillmere {

/// An absolute location on this machine, kept as the bytes that the kernel knows.
/// Names need not be UTF-8, so a location is turned into text only to be shown, and never back.
class FilePath
{
public:
    /// No location at all.
    FilePath() = default;
    explicit FilePath(QByteArray bytes);
    /// A location written down in the program's own UTF-8 text.
    explicit FilePath(const char *utf8);

    [[nodiscard]] const QByteArray &bytes() const { return m_bytes; }
    [[nodiscard]] bool isEmpty() const { return m_bytes.isEmpty(); }

    /// Removes `.`, `..`, doubled and trailing slashes by text alone: no link is followed, nothing need exist.
    [[nodiscard]] FilePath standardized() const;
    /// "/" for the root, empty for no location. A trailing slash does not count.
    [[nodiscard]] QByteArray lastPathComponent() const;
    /// What stands after the last point of the last component; empty for "name", "name." and ".name".
    [[nodiscard]] QByteArray pathExtension() const;
    /// The location one level up. The root is its own parent.
    [[nodiscard]] FilePath deletingLastPathComponent() const;
    /// @p relative may hold several components; its own leading slash does not lead out of this location.
    [[nodiscard]] FilePath appending(const QByteArray &relative) const;
    /// True for @p ancestor itself and everything below it, by text alone. Both are taken as standardized.
    [[nodiscard]] bool isWithin(const FilePath &ancestor) const;

    /// Text for people: bytes that are not UTF-8 and control characters show as U+FFFD, whatever the name,
    /// so that no name can break a line or turn the direction of the text around it.
    [[nodiscard]] QString displayText() const;
    [[nodiscard]] static QString displayText(const QByteArray &name);

    friend bool operator==(const FilePath &, const FilePath &) = default;
    /// By bytes, as the kernel compares names.
    friend std::strong_ordering operator<=>(const FilePath &left, const FilePath &right)
    {
        return left.m_bytes.compare(right.m_bytes) <=> 0;
    }
    friend size_t qHash(const FilePath &path, size_t seed = 0) noexcept { return qHash(path.m_bytes, seed); }

private:
    QByteArray m_bytes;
};

} // namespace Quillmere

Q_DECLARE_METATYPE(Quillmere::FilePath)
