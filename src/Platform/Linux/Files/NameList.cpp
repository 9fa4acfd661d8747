#include "Platform/Linux/Files/NameList.h"

#include <cstring>

namespace Quillmere {

void NameList::append(const char *name)
{
    m_names.append(name, std::strlen(name) + 1);
}

const char *NameList::takeFirst()
{
    const char *name = m_names.data() + m_next;
    m_next += std::strlen(name) + 1;
    return name;
}

NameList NameList::takeLaterHalf()
{
    if (isEmpty())
        return {};
    const size_t endOfFirst = m_names.find('\0', m_next) + 1;
    const size_t startInMiddle = m_names.rfind('\0', m_next + byteCount() / 2) + 1;
    const size_t cut = startInMiddle > endOfFirst ? startInMiddle : endOfFirst;

    NameList half;
    half.m_names = m_names.substr(cut);
    m_names.resize(cut);
    return half;
}

} // namespace Quillmere
