#pragma once

#include <cstddef>
#include <string>

namespace Quillmere {

/// Names of entries, one behind the other in one piece of memory: taken from the front, given away from the back.
class NameList
{
public:
    void append(const char *name);

    [[nodiscard]] bool isEmpty() const { return m_next == m_names.size(); }
    [[nodiscard]] size_t byteCount() const { return m_names.size() - m_next; }

    /// The first name, which is no longer in the list afterwards. Only when there is one. The text stands until the
    /// list is changed in another way.
    [[nodiscard]] const char *takeFirst();
    /// The names behind the middle; none of a list of one.
    [[nodiscard]] NameList takeLaterHalf();

private:
    std::string m_names; ///< Each ends with a null.
    size_t m_next = 0;
};

} // namespace Quillmere
