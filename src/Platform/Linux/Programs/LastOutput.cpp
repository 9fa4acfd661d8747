#include "Platform/Linux/Programs/LastOutput.h"

namespace Quillmere {

void LastOutput::append(const QByteArray &output)
{
    m_kept += output;
    // Seldom, because the rest is moved each time.
    if (m_kept.size() <= 2 * mostBytes)
        return;
    const qsizetype excess = m_kept.size() - mostBytes;
    m_kept.remove(0, excess);
    m_leftOut += excess;
}

QByteArray LastOutput::text() const
{
    if (m_leftOut == 0 && m_kept.size() <= mostBytes)
        return m_kept;
    qsizetype from = m_kept.size() - mostBytes;
    const qsizetype lineEnd = m_kept.indexOf('\n', from);
    // A line without an end is cut where a character begins, of which the later bytes are 10xxxxxx.
    constexpr int kindOfByte = 0xc0;
    constexpr int laterByte = 0x80;
    if (lineEnd >= 0 && lineEnd + 1 < m_kept.size())
        from = lineEnd + 1;
    else
        while (from < m_kept.size() && (m_kept.at(from) & kindOfByte) == laterByte)
            ++from;
    return "[" + QByteArray::number(m_leftOut + from) + " bytes left out]\n" + m_kept.mid(from);
}

} // namespace Quillmere
