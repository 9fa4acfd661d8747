#include "Utilities/PropertyListNode.h"

#include <QString>
#include <QStringDecoder>

#include <plist/plist.h>

#include <algorithm>
#include <cstdlib>

namespace Quillmere {

void FreePropertyListNode::operator()(void *node) const
{
    plist_free(node);
}

void FreePropertyListMemory::operator()(void *memory) const
{
    std::free(memory); // NOLINT: the library asks malloc for what it hands out.
}

namespace {

/// With a byte order mark at its beginning: a key with one is not the key without.
QString codeUnitsOf(const QByteArray &key)
{
    return QStringDecoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom)(key);
}

} // namespace

QList<QByteArray> sortedKeys(void *dictionary)
{
    QList<QByteArray> keys;
    plist_dict_iter next = nullptr;
    plist_dict_new_iter(dictionary, &next);
    const PropertyListMemory<void> iterator(next);
    for (;;) {
        char *key = nullptr;
        plist_dict_next_item(dictionary, next, &key, nullptr);
        const PropertyListMemory<char> owned(key);
        if (!key)
            break;
        keys.append(key);
    }
    std::ranges::sort(keys, {}, codeUnitsOf);
    return keys;
}

void *sortedCopy(void *node)
{
    if (PLIST_IS_DICT(node)) {
        const plist_t copy = plist_new_dict();
        for (const QByteArray &key : sortedKeys(node))
            plist_dict_set_item(copy, key.constData(), sortedCopy(plist_dict_get_item(node, key.constData())));
        return copy;
    }
    if (PLIST_IS_ARRAY(node)) {
        const plist_t copy = plist_new_array();
        for (uint32_t index = 0; index < plist_array_get_size(node); ++index)
            plist_array_append_item(copy, sortedCopy(plist_array_get_item(node, index)));
        return copy;
    }
    return plist_copy(node);
}

} // namespace Quillmere
