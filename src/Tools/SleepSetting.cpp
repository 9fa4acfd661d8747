#include "Tools/SleepSetting.h"

namespace Quillmere {

ToolEnd setSleepDisabled(const KeepAwake &keepAwake, bool disabled)
{
    const Result<void> done = disabled ? keepAwake.switchOn() : keepAwake.switchOff();
    if (done)
        return {};
    const QString wish = disabled ? u"Sleep cannot be held back: %1"_qs : u"Sleep cannot be allowed again: %1"_qs;
    return {1, wish.arg(done.failure().detail)};
}

ToolEnd runPmset(const QStringList &arguments, const KeepAwake &keepAwake, bool isRoot)
{
    const bool known = arguments.size() == 3 && arguments.at(0) == u"-a" && arguments.at(1) == u"disablesleep"
        && (arguments.at(2) == u"0" || arguments.at(2) == u"1");
    if (!known)
        return {ToolEnd::wrongUse, u"usage: pmset -a disablesleep 0|1"_qs};
    if (!isRoot)
        return {ToolEnd::needsRoot, u"pmset: Only root may change this."_qs};
    return setSleepDisabled(keepAwake, arguments.at(2) == u"1");
}

} // namespace Quillmere
