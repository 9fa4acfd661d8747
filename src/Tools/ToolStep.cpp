#include "Tools/ToolStep.h"

#include <QStringList>

namespace Quillmere {

namespace {

QString textsOf(ToolStep::Kind kind, const QList<ToolStep> &steps)
{
    QStringList texts;
    for (const ToolStep &step : steps) {
        if (step.kind == kind)
            texts.append(step.text);
    }
    return texts.join(u'\n');
}

} // namespace

ToolEnd endOf(const QList<ToolStep> &steps, const QString &nothing)
{
    const QString done = textsOf(ToolStep::Kind::Done, steps);
    const QString failed = textsOf(ToolStep::Kind::Failed, steps);
    if (!failed.isEmpty())
        return {1, failed, done};
    if (!done.isEmpty())
        return {0, {}, done};
    return {ToolEnd::unavailable, nothing};
}

} // namespace Quillmere
