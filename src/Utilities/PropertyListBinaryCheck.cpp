#include "Utilities/PropertyListCheck.h"
#include "Utilities/PropertyListLimits.h"
#include "Utilities/PropertyListObjects.h"

#include <QSet>

#include <algorithm>
#include <vector>

namespace Quillmere {

namespace {

using Kind = PropertyListObjects::Kind;

// What one value costs in the library's tree beside its contents, in the order of magnitude.
constexpr quint64 bytesPerValue = 32;

/// What one object becomes when it is written out.
struct Expansion
{
    quint64 bytes = 0;
    int height = 0; ///< Containers inside each other, itself included.
};

/// Goes down from the root, into each object once.
class ObjectWalk
{
public:
    explicit ObjectWalk(const QByteArray &bytes)
        : m_objects(bytes)
    {
    }

    bool isSound()
    {
        if (!m_objects.readTrailer())
            return false;
        m_visits.resize(m_objects.count());
        return expand(m_objects.top(), 0).has_value();
    }

private:
    enum class Progress : quint8 { Untouched, Open, Done };
    struct Visit
    {
        Progress progress = Progress::Untouched;
        Expansion expansion;
    };

    std::optional<Expansion> expand(quint64 index, int depth)
    {
        const std::optional<PropertyListObjects::Object> object = m_objects.object(index);
        // An object that is still open holds itself.
        if (!object || depth > PropertyListLimits::deepestNesting || m_visits[index].progress == Progress::Open)
            return std::nullopt;
        if (m_visits[index].progress == Progress::Untouched) {
            m_visits[index].progress = Progress::Open;
            const bool isContainer = object->kind == Kind::Array || object->kind == Kind::Dictionary;
            const std::optional<Expansion> found = isContainer ? expandContainer(*object, depth) : expandLeaf(*object);
            if (!found)
                return std::nullopt;
            m_visits[index] = {Progress::Done, *found};
        }
        return m_visits[index].expansion;
    }

    [[nodiscard]] std::optional<Expansion> expandLeaf(const PropertyListObjects::Object &leaf) const
    {
        const std::optional<quint64> bytes = m_objects.leafBytes(leaf);
        return bytes ? std::optional(Expansion{bytesPerValue + *bytes, 0}) : std::nullopt;
    }

    std::optional<Expansion> expandContainer(const PropertyListObjects::Object &container, int depth)
    {
        const quint64 references = m_objects.references(container).value_or(0);
        if (references == 0 && container.count > 0)
            return std::nullopt;
        const quint64 keys = container.kind == Kind::Dictionary ? container.count : 0;
        QSet<QString> keysSeen;
        Expansion sum = {bytesPerValue, 0};
        for (quint64 position = 0; position < references; ++position) {
            const quint64 index = m_objects.reference(container, position);
            const std::optional<Expansion> child = expand(index, depth + 1);
            if (!child || (position < keys && !isNewKey(index, keysSeen)))
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

    /// A key is a text, and of two equal keys the library would keep both.
    [[nodiscard]] bool isNewKey(quint64 index, QSet<QString> &seen) const
    {
        const std::optional<QString> key = m_objects.text(*m_objects.object(index));
        if (!key || seen.contains(*key))
            return false;
        seen.insert(*key);
        return true;
    }

    PropertyListObjects m_objects;
    std::vector<Visit> m_visits;
};

} // namespace

Result<void> checkBinaryPropertyList(const QByteArray &bytes)
{
    if (!ObjectWalk(bytes).isSound())
        return Failure{Failure::Kind::Malformed, {}, u"This is not a sound binary property list."_qs};
    return {};
}

} // namespace Quillmere
