#include "ViewModels/CleanupReport.h"

#include "Utilities/ByteCountFormatter.h"

namespace Quillmere {

namespace {

constexpr qsizetype mostErrorsShown = 5;

} // namespace

CleanupReport::CleanupReport(const CleanupResult &result)
    : m_result(result)
{
}

QString CleanupReport::spaceFreed() const
{
    return formatByteCount(m_result.sizeCleaned);
}

QString CleanupReport::filesRemoved() const
{
    return QString::number(m_result.filesRemoved);
}

QString CleanupReport::filesSkipped() const
{
    return m_result.filesSkipped >= 1 ? QString::number(m_result.filesSkipped) : QString();
}

QStringList CleanupReport::errors() const
{
    return m_result.errors.first(std::min(mostErrorsShown, m_result.errors.size()));
}

} // namespace Quillmere
