#include "Tools/ChildStep.h"

namespace Quillmere {

ToolStep stepOf(const Result<ChildEnd> &end, const QString &done, const QString &failed)
{
    if (!end)
        return {ToolStep::Kind::Failed, failed + end.failure().detail};
    if (end.value().status == 0)
        return {ToolStep::Kind::Done, done};
    const QString said = QString::fromUtf8(end.value().said).trimmed();
    return {ToolStep::Kind::Failed, failed + (said.isEmpty() ? u"status %1"_qs.arg(end.value().status) : said)};
}

} // namespace Quillmere
