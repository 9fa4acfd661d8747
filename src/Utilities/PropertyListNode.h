#pragma once

#include <QByteArray>
#include <QList>

#include <memory>

namespace Quillmere {

/// Frees a node of the library, with all that is in it.
struct FreePropertyListNode
{
    void operator()(void *node) const;
};
using PropertyListNode = std::unique_ptr<void, FreePropertyListNode>;

/// Frees what the library hands out.
struct FreePropertyListMemory
{
    void operator()(void *memory) const;
};
template<typename Type>
using PropertyListMemory = std::unique_ptr<Type, FreePropertyListMemory>;

/// The keys of a dictionary, sorted by their UTF-16 code units.
[[nodiscard]] QList<QByteArray> sortedKeys(void *dictionary);
/// A copy with the keys sorted so at every level. The caller, or the node that takes it, owns it.
[[nodiscard]] void *sortedCopy(void *node);

} // namespace Quillmere
