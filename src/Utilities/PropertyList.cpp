#include "Utilities/PropertyList.h"

#include "Utilities/PropertyListCheck.h"
#include "Utilities/PropertyListLimits.h"
#include "Utilities/PropertyListNode.h"
#include "Utilities/PropertyListOldStyle.h"

#include <QStringDecoder>

#include <plist/plist.h>

namespace Quillmere {

namespace {

/// From where the library counts, in seconds of 32 bits.
QDateTime firstDate()
{
    return QDateTime({2001, 1, 1}, {0, 0}, Qt::UTC);
}

PropertyList::Type typeOf(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN:
        return PropertyList::Type::Boolean;
    case PLIST_UINT:
        return PropertyList::Type::Integer;
    case PLIST_REAL:
        return PropertyList::Type::Real;
    case PLIST_STRING:
        return PropertyList::Type::String;
    case PLIST_DATA:
        return PropertyList::Type::Data;
    case PLIST_DATE:
        return PropertyList::Type::Date;
    case PLIST_ARRAY:
        return PropertyList::Type::Array;
    case PLIST_DICT:
        return PropertyList::Type::Dictionary;
    default:
        return PropertyList::Type::Other;
    }
}

QString textOf(plist_t node)
{
    return QString::fromUtf8(plist_get_string_ptr(node, nullptr));
}

/// The root of XML or of the binary form, whatever it is.
Result<PropertyListNode> parsed(const QByteArray &bytes)
{
    const Result<void> check
        = bytes.startsWith("bplist00") ? checkBinaryPropertyList(bytes) : checkXmlPropertyList(bytes);
    if (!check)
        return check.failure();
    plist_t root = nullptr;
    plist_from_memory(bytes.constData(), static_cast<uint32_t>(bytes.size()), &root);
    if (!root)
        return Failure::malformed(u"The property list cannot be parsed."_qs);
    return PropertyListNode(root);
}

/// No dictionary begins like XML, and no XML like anything else.
bool isOldStyle(const QByteArray &text)
{
    const QByteArrayView start = QByteArrayView(text).trimmed();
    return !start.startsWith('<') && !start.startsWith("bplist0");
}

/// Without its mark, and of text in UTF-16, which the mark shows, as UTF-8.
QByteArray inUtf8(const QByteArray &bytes)
{
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return bytes.sliced(3);
    if (!bytes.startsWith("\xFF\xFE") && !bytes.startsWith("\xFE\xFF"))
        return bytes;
    QStringDecoder decoder(QStringDecoder::Utf16, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    return decoder.hasError() ? bytes : text.toUtf8();
}

} // namespace

PropertyList::PropertyList()
    : PropertyList(PropertyListNode(plist_new_dict()))
{
}

PropertyList::PropertyList(PropertyListNode root)
    : m_root(std::move(root))
{
}

Result<PropertyList> PropertyList::read(const QByteArray &bytes)
{
    if (bytes.size() > PropertyListLimits::mostBytes)
        return Failure::malformed(u"The property list is too large."_qs);
    const QByteArray text = inUtf8(bytes);
    Result<PropertyListNode> root = isOldStyle(text) ? readOldStylePropertyList(text) : parsed(text);
    if (!root)
        return root.failure();
    if (!PLIST_IS_DICT(root.value().get()))
        return Failure::malformed(u"The root of the property list is not a dictionary."_qs);
    return PropertyList(std::move(root).value());
}

QByteArray PropertyList::written(Form form) const
{
    const PropertyListNode sorted(sortedCopy(m_root.get()));
    char *bytes = nullptr;
    uint32_t length = 0;
    if (form == Form::Xml)
        plist_to_xml(sorted.get(), &bytes, &length);
    else
        plist_to_bin(sorted.get(), &bytes, &length);
    const PropertyListMemory<char> owned(bytes);
    Q_CHECK_PTR(bytes);
    return {bytes, static_cast<qsizetype>(length)};
}

QStringList PropertyList::keys() const
{
    QStringList texts;
    for (const QByteArray &key : sortedKeys(m_root.get()))
        texts.append(QString::fromUtf8(key));
    return texts;
}

std::optional<PropertyList::Type> PropertyList::type(const QString &key) const
{
    void *node = find(key);
    return node ? std::optional(typeOf(node)) : std::nullopt;
}

std::optional<QString> PropertyList::string(const QString &key) const
{
    void *node = find(key, Type::String);
    return node ? std::optional(textOf(node)) : std::nullopt;
}

std::optional<bool> PropertyList::boolean(const QString &key) const
{
    void *node = find(key, Type::Boolean);
    if (!node)
        return std::nullopt;
    uint8_t value = 0;
    plist_get_bool_val(node, &value);
    return value != 0;
}

std::optional<qint64> PropertyList::integer(const QString &key) const
{
    void *node = find(key, Type::Integer);
    if (!node)
        return std::nullopt;
    uint64_t value = 0;
    plist_get_uint_val(node, &value);
    return static_cast<qint64>(value);
}

std::optional<double> PropertyList::real(const QString &key) const
{
    void *node = find(key, Type::Real);
    if (!node)
        return std::nullopt;
    double value = 0;
    plist_get_real_val(node, &value);
    return value;
}

std::optional<QByteArray> PropertyList::data(const QString &key) const
{
    void *node = find(key, Type::Data);
    if (!node)
        return std::nullopt;
    uint64_t length = 0;
    const char *bytes = plist_get_data_ptr(node, &length);
    return QByteArray(bytes, static_cast<qsizetype>(length));
}

std::optional<QDateTime> PropertyList::date(const QString &key) const
{
    void *node = find(key, Type::Date);
    if (!node)
        return std::nullopt;
    int32_t seconds = 0;
    plist_get_date_val(node, &seconds, nullptr);
    return firstDate().addSecs(seconds);
}

std::optional<QStringList> PropertyList::stringArray(const QString &key) const
{
    void *node = find(key, Type::Array);
    if (!node)
        return std::nullopt;
    QStringList texts;
    for (uint32_t index = 0; index < plist_array_get_size(node); ++index) {
        const plist_t element = plist_array_get_item(node, index);
        if (!PLIST_IS_STRING(element))
            return std::nullopt;
        texts.append(textOf(element));
    }
    return texts;
}

void PropertyList::setString(const QString &key, const QString &value)
{
    set(key, plist_new_string(value.toUtf8().constData()));
}

void PropertyList::setBoolean(const QString &key, bool value)
{
    set(key, plist_new_bool(value ? 1 : 0));
}

void PropertyList::setInteger(const QString &key, qint64 value)
{
    set(key, plist_new_uint(static_cast<uint64_t>(value)));
}

void PropertyList::setReal(const QString &key, double value)
{
    set(key, plist_new_real(value));
}

void PropertyList::setData(const QString &key, const QByteArray &value)
{
    set(key, plist_new_data(value.constData(), static_cast<uint64_t>(value.size())));
}

void PropertyList::setDate(const QString &key, const QDateTime &value)
{
    set(key, plist_new_date(static_cast<int32_t>(firstDate().secsTo(value)), 0));
}

void PropertyList::setStringArray(const QString &key, const QStringList &value)
{
    const plist_t array = plist_new_array();
    for (const QString &text : value)
        plist_array_append_item(array, plist_new_string(text.toUtf8().constData()));
    set(key, array);
}

void PropertyList::remove(const QString &key)
{
    if (find(key))
        plist_dict_remove_item(m_root.get(), key.toUtf8().constData());
}

void *PropertyList::find(const QString &key) const
{
    return plist_dict_get_item(m_root.get(), key.toUtf8().constData());
}

void *PropertyList::find(const QString &key, Type type) const
{
    void *node = find(key);
    return node && typeOf(node) == type ? node : nullptr;
}

void PropertyList::set(const QString &key, void *node)
{
    plist_dict_set_item(m_root.get(), key.toUtf8().constData(), node);
}

} // namespace Quillmere
