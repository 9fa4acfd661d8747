#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace Quillmere {

/// The table of objects in a binary property list, read without trust: whatever does not lie between the header and the
/// table of offsets is not there. Looks at @p bytes for as long as it lives.
class PropertyListObjects
{
public:
    /// By the upper half of an object's first byte.
    enum class Kind : quint8 {
        Simple = 0x0,
        Integer = 0x1,
        Real = 0x2,
        Date = 0x3,
        Data = 0x4,
        AsciiText = 0x5,
        Utf16Text = 0x6,
        Identifier = 0x8,
        Array = 0xA,
        Dictionary = 0xD,
    };

    struct Object
    {
        Kind kind = Kind::Simple;
        quint64 count = 0; ///< Bytes, characters, elements or pairs; of the others, the lower half of the first byte.
        quint64 offset = 0; ///< Where the contents begin.
    };

    explicit PropertyListObjects(const QByteArray &bytes)
        : m_bytes(bytes)
    {
    }

    /// Reads where everything lies. Nothing else may be asked unless this is true.
    [[nodiscard]] bool readTrailer();

    [[nodiscard]] quint64 count() const { return m_count; }
    [[nodiscard]] quint64 top() const { return m_top; }
    /// Nothing for an index beyond the table, and an object that does not begin where it may.
    [[nodiscard]] std::optional<Object> object(quint64 index) const;
    /// Bytes of what is neither array nor dictionary. Nothing for a kind or size that has no place in a property list,
    /// for one that does not fit, and for a text that text() does not give.
    [[nodiscard]] std::optional<quint64> leafBytes(const Object &object) const;
    /// Nothing for other kinds and for texts that would not survive: other bytes than ASCII, half a surrogate pair,
    /// U+0000.
    [[nodiscard]] std::optional<QString> text(const Object &object) const;
    /// How many objects an array or a dictionary refers to. Nothing when the references do not fit.
    [[nodiscard]] std::optional<quint64> references(const Object &container) const;
    /// The index behind one of its references(); of a dictionary those of the keys come first.
    [[nodiscard]] quint64 reference(const Object &container, quint64 position) const;

private:
    [[nodiscard]] quint64 size() const { return static_cast<quint64>(m_bytes.size()); }
    [[nodiscard]] quint64 bigEndian(quint64 offset, quint64 width) const;
    [[nodiscard]] bool fits(quint64 offset, quint64 count, quint64 width) const;
    [[nodiscard]] bool readLongCount(Object &object) const;

    const QByteArray &m_bytes;
    quint64 m_offsetWidth = 0;
    quint64 m_referenceWidth = 0;
    quint64 m_count = 0;
    quint64 m_top = 0;
    quint64 m_tableOffset = 0;
};

} // namespace Quillmere
