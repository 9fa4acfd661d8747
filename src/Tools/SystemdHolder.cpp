#include "Tools/SystemdHolder.h"

#include "Tools/ChildProgram.h"
#include "Tools/LidInhibitors.h"

#include <utility>

namespace Quillmere {

namespace {

const QString unit = u"quillmere-keepawake.service"_qs;

Result<void> succeeded(const Result<ChildEnd> &end)
{
    if (!end)
        return end.failure();
    if (end.value().status != 0)
        return Failure{Failure::Kind::Other, {}, QString::fromUtf8(end.value().said).trimmed()};
    return {};
}

} // namespace

SystemdHolder::SystemdHolder(SystemdPrograms programs)
    : m_programs(std::move(programs))
{
}

Result<bool> SystemdHolder::isRunning() const
{
    const Result<ChildEnd> end = runChild({m_programs.control, {u"is-active"_qs, u"--quiet"_qs, unit}});
    if (!end)
        return end.failure();
    return end.value().status == 0;
}

Result<void> SystemdHolder::start() const
{
    const Result<bool> running = isRunning();
    if (!running)
        return running.failure();
    if (running.value())
        return Failure{Failure::Kind::AlreadyExists, {}, unit};
    // --collect: a unit that failed would otherwise keep its name from the next one.
    return succeeded(runChild({m_programs.run,
                               {u"--quiet"_qs, u"--collect"_qs, u"--unit="_qs + unit, u"--"_qs, m_programs.inhibit,
                                u"--what="_qs + LidInhibitors::what(), u"--who="_qs + LidInhibitors::who(),
                                u"--why="_qs + LidInhibitors::why(), u"--mode="_qs + LidInhibitors::mode(),
                                m_programs.sleep, u"infinity"_qs}}));
}

Result<void> SystemdHolder::stop() const
{
    const Result<bool> running = isRunning();
    if (!running)
        return running.failure();
    // systemctl(1): stopping a unit that is not loaded is an error.
    if (!running.value())
        return {};
    return succeeded(runChild({m_programs.control, {u"stop"_qs, unit}}));
}

} // namespace Quillmere
