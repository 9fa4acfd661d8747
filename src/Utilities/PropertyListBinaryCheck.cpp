#include "Utilities/PropertyListCheck.h"
#include "Utilities/PropertyListLimits.h"

#include <QStringConverter>

#include <algorithm>
#include <optional>
#include <vector>

namespace Quillmere {

namespace {

constexpr quint64 headerBytes = 8;
constexpr quint64 trailerBytes = 32;
// What one value costs in the library's tree beside its contents, in the order of magnitude.
constexpr quint64 bytesPerValue = 32;

/// The kinds of objects, by the upper half of their first byte.
enum Kind : quint8 {
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

/// An object's kind, and where its contents lie.
struct Object
{
    quint8 kind = Simple;
    quint64 count = 0; ///< Bytes, characters, elements or pairs.
    quint64 contents = 0;
};

/// What one object becomes when it is written out.
struct Expansion
{
    quint64 bytes = 0;
    int height = 0; ///< Containers inside each other, itself included.
};

class Walk
{
public:
    explicit Walk(const QByteArray &bytes)
        : m_bytes(bytes)
    {
    }

    bool isSound()
    {
        if (!readTrailer())
            return false;
        m_visits.resize(m_objectCount);
        return expand(m_top, 0).has_value();
    }

private:
    enum class Progress : quint8 { Untouched, Open, Done };
    struct Visit
    {
        Progress progress = Progress::Untouched;
        Expansion expansion;
    };

    [[nodiscard]] quint64 size() const { return static_cast<quint64>(m_bytes.size()); }

    /// Only for places that were found to lie within the bytes.
    [[nodiscard]] quint64 bigEndian(quint64 offset, quint64 width) const
    {
        quint64 value = 0;
        for (quint64 index = 0; index < width; ++index)
            value = value << 8 | static_cast<uchar>(m_bytes.at(static_cast<qsizetype>(offset + index)));
        return value;
    }

    bool readTrailer()
    {
        if (size() < headerBytes + trailerBytes)
            return false;
        const quint64 trailer = size() - trailerBytes;
        m_offsetWidth = bigEndian(trailer + 6, 1);
        m_referenceWidth = bigEndian(trailer + 7, 1);
        m_objectCount = bigEndian(trailer + 8, 8);
        m_top = bigEndian(trailer + 16, 8);
        m_tableOffset = bigEndian(trailer + 24, 8);
        return m_offsetWidth >= 1 && m_offsetWidth <= 8 && m_referenceWidth >= 1 && m_referenceWidth <= 8
            && m_tableOffset > headerBytes && m_tableOffset < trailer && m_top < m_objectCount
            && m_objectCount <= (trailer - m_tableOffset) / m_offsetWidth;
    }

    /// True when @p count things of @p width bytes at @p offset end before the table of offsets.
    [[nodiscard]] bool fits(quint64 offset, quint64 count, quint64 width) const
    {
        return offset <= m_tableOffset && count <= (m_tableOffset - offset) / width;
    }

    /// Reads the first byte of an object and, for those that have one, its count.
    [[nodiscard]] std::optional<Object> object(quint64 index) const
    {
        const quint64 offset = bigEndian(m_tableOffset + index * m_offsetWidth, m_offsetWidth);
        if (offset < headerBytes || !fits(offset, 1, 1))
            return std::nullopt;
        const quint64 marker = bigEndian(offset, 1);
        Object found = {static_cast<quint8>(marker >> 4), marker & 0x0F, offset + 1};
        if (found.count == 0x0F && found.kind >= Data && found.kind != Identifier && !readLongCount(found))
            return std::nullopt;
        return found;
    }

    /// A count of fifteen and more stands behind the first byte, as an integer object.
    bool readLongCount(Object &found) const
    {
        if (!fits(found.contents, 1, 1))
            return false;
        const quint64 marker = bigEndian(found.contents, 1);
        const quint64 width = quint64{1} << (marker & 0x0F);
        if (marker >> 4 != Integer || width > 8 || !fits(found.contents + 1, width, 1))
            return false;
        found.count = bigEndian(found.contents + 1, width);
        found.contents += 1 + width;
        return true;
    }

    std::optional<Expansion> expand(quint64 index, int depth)
    {
        if (index >= m_objectCount || depth > PropertyListLimits::deepestNesting)
            return std::nullopt;
        if (m_visits[index].progress == Progress::Open)
            return std::nullopt;
        if (m_visits[index].progress == Progress::Untouched) {
            m_visits[index].progress = Progress::Open;
            const std::optional<Object> found = object(index);
            const std::optional<Expansion> expansion = found ? expand(*found, depth) : std::nullopt;
            if (!expansion)
                return std::nullopt;
            m_visits[index] = {Progress::Done, *expansion};
        }
        return m_visits[index].expansion;
    }

    std::optional<Expansion> expand(const Object &found, int depth)
    {
        if (found.kind == Array)
            return expandContainer(found, found.count, 0, depth);
        if (found.kind == Dictionary)
            return found.count > size() ? std::nullopt : expandContainer(found, found.count * 2, found.count, depth);
        const std::optional<quint64> bytes = leafBytes(found);
        if (!bytes || !fits(found.contents, *bytes, 1) || !isCarried(found, *bytes))
            return std::nullopt;
        return Expansion{bytesPerValue + *bytes, 0};
    }

    /// Nothing for a kind that has no place in a property list.
    [[nodiscard]] std::optional<quint64> leafBytes(const Object &found) const
    {
        switch (found.kind) {
        case Simple:
            return found.count == 8 || found.count == 9 ? std::optional<quint64>(0) : std::nullopt;
        case Integer:
            return found.count <= 4 ? std::optional(quint64{1} << found.count) : std::nullopt;
        case Real:
            return found.count == 2 || found.count == 3 ? std::optional(quint64{1} << found.count) : std::nullopt;
        case Date:
            return found.count == 3 ? std::optional<quint64>(8) : std::nullopt;
        case Data:
        case AsciiText:
            return found.count;
        case Utf16Text:
            return found.count <= size() ? std::optional(found.count * 2) : std::nullopt;
        case Identifier:
            return found.count <= 7 ? std::optional(found.count + 1) : std::nullopt;
        default:
            return std::nullopt;
        }
    }

    /// False for texts that the library would mangle: other bytes than ASCII, half a surrogate pair, U+0000.
    [[nodiscard]] bool isCarried(const Object &found, quint64 bytes) const
    {
        const auto contents = QByteArrayView(m_bytes).sliced(static_cast<qsizetype>(found.contents),
                                                             static_cast<qsizetype>(bytes));
        if (found.kind == AsciiText)
            return std::ranges::all_of(contents, [](char byte) { return byte > 0; });
        if (found.kind != Utf16Text)
            return true;
        QStringDecoder decoder(QStringConverter::Utf16BE, QStringConverter::Flag::ConvertInitialBom);
        const QString text = decoder(contents);
        return text.isValidUtf16() && !text.contains(QChar(u'\0'));
    }

    /// The first @p keys of the references are those of keys, which are texts.
    std::optional<Expansion> expandContainer(const Object &found, quint64 references, quint64 keys, int depth)
    {
        if (!fits(found.contents, references, m_referenceWidth))
            return std::nullopt;
        Expansion sum = {bytesPerValue, 0};
        for (quint64 position = 0; position < references; ++position) {
            const quint64 index = bigEndian(found.contents + position * m_referenceWidth, m_referenceWidth);
            const std::optional<Expansion> child = expand(index, depth + 1);
            if (!child || (position < keys && !isText(index)))
                return std::nullopt;
            sum.bytes += child->bytes;
            sum.height = std::max(sum.height, child->height);
            if (sum.bytes > PropertyListLimits::mostExpandedBytes)
                return std::nullopt;
        }
        if (++sum.height > PropertyListLimits::deepestNesting)
            return std::nullopt;
        return sum;
    }

    [[nodiscard]] bool isText(quint64 index) const
    {
        const std::optional<Object> found = object(index);
        return found && (found->kind == AsciiText || found->kind == Utf16Text);
    }

    const QByteArray &m_bytes;
    quint64 m_offsetWidth = 0;
    quint64 m_referenceWidth = 0;
    quint64 m_objectCount = 0;
    quint64 m_top = 0;
    quint64 m_tableOffset = 0;
    std::vector<Visit> m_visits;
};

} // namespace

Result<void> checkBinaryPropertyList(const QByteArray &bytes)
{
    if (!Walk(bytes).isSound())
        return Failure{Failure::Kind::Malformed, {}, u"This is not a sound binary property list."_qs};
    return {};
}

} // namespace Quillmere
