#include "Platform/Linux/Applications/ApplicationTrace.h"

#include "Platform/Linux/Applications/ApplicationData.h"
#include "Platform/Linux/Applications/CgroupApplication.h"
#include "Platform/Linux/System/ProcText.h"

namespace Quillmere {

namespace {

// What a sandbox says of itself takes a few hundred bytes.
constexpr qsizetype mostBytesOfSandbox = 64 * 1024;

QByteArray variableIn(const QList<QByteArray> &environment, const QByteArray &name)
{
    for (const QByteArray &each : environment) {
        if (each.startsWith(name + '='))
            return each.mid(name.size() + 1);
    }
    return {};
}

bool findByCgroup(ApplicationTrace &trace, pid_t pid, const ProcessTable &processes, const ApplicationIndex &index)
{
    const CgroupApplication group = parseCgroup(processes.file(pid, "cgroup").value_or(QByteArray()));
    trace.entry = group.desktopId.isEmpty() ? nullptr : index.byId(group.desktopId);
    if (!trace.entry)
        return false;
    trace.unit = group.unit;
    return true;
}

bool findBySandbox(ApplicationTrace &trace, pid_t pid, const ProcessTable &processes, const ApplicationIndex &index)
{
    const std::optional<QByteArray> text = processes.fileInRoot(pid, ".flatpak-info", mostBytesOfSandbox);
    if (!text)
        return false;
    QByteArrayView section;
    for (const QByteArrayView line : wholeLines(*text)) {
        if (line.startsWith('['))
            section = line;
        else if (section == "[Application]" && line.startsWith("name="))
            trace.entry = index.byId(line.sliced(5).toByteArray());
        else if (section == "[Instance]" && line.startsWith("app-path="))
            trace.bundle = FilePath(line.sliced(9).toByteArray());
    }
    return trace.entry;
}

bool findByLaunch(ApplicationTrace &trace, pid_t pid, const ProcessTable &processes, const ApplicationIndex &index)
{
    const QByteArray text = processes.file(pid, "environ").value_or(QByteArray());
    if (!text.contains("GIO_LAUNCHED_DESKTOP_FILE"))
        return false;
    // Children inherit both variables; the number is that of the process that was launched.
    const QList<QByteArray> environment = text.split('\0');
    if (variableIn(environment, "GIO_LAUNCHED_DESKTOP_FILE_PID") == QByteArray::number(pid))
        trace.entry = index.byFile(FilePath(variableIn(environment, "GIO_LAUNCHED_DESKTOP_FILE")));
    return trace.entry;
}

void findByProgram(ApplicationTrace &trace, pid_t pid, const ProcessTable &processes, const ApplicationIndex &index)
{
    trace.program = programOf(pid, processes);
    if (trace.program.isEmpty())
        return;
    trace.entry = index.byProgram(trace.program);
    if (trace.entry || !ApplicationData::builtIn().isSharedProgram(trace.program))
        return;
    const FilePath script = scriptOf(pid, processes);
    if (!script.isEmpty())
        trace.entry = index.byScript(script);
}

/// A browser that another application opened a page in stays in the control group of that.
void correctByIdentity(ApplicationTrace &trace, pid_t pid, const ProcessTable &processes, const ApplicationIndex &index)
{
    const FilePath program = programOf(pid, processes);
    const ApplicationData::Identity *identity = ApplicationData::builtIn().identityOfExecutable(program);
    if (!identity || identity->desktopIds.contains(trace.entry->id))
        return;
    const DesktopEntry *entry = index.byProgram(program);
    if (!entry || entry == trace.entry)
        return;
    trace.entry = entry;
    trace.program = program;
    trace.unit.clear();
}

} // namespace

FilePath scriptOf(pid_t pid, const ProcessTable &processes)
{
    const QList<QByteArray> words = processes.file(pid, "cmdline").value_or(QByteArray()).split('\0');
    for (qsizetype place = 1; place < words.size(); ++place) {
        if (!words.at(place).startsWith('-'))
            return FilePath(words.at(place).startsWith('/') ? words.at(place) : QByteArray());
    }
    return {};
}

FilePath programOf(pid_t pid, const ProcessTable &processes)
{
    QByteArray path = processes.link(pid, "exe");
    constexpr QByteArrayView suffix = " (deleted)"; // proc(5)
    if (path.endsWith(suffix))
        path.chop(suffix.size());
    return path.isEmpty() ? FilePath() : FilePath(path);
}

ApplicationTrace ApplicationTrace::of(pid_t pid, const ProcessTable &processes, const ApplicationIndex &index)
{
    ApplicationTrace trace;
    if (findByCgroup(trace, pid, processes, index))
        correctByIdentity(trace, pid, processes, index);
    else if (!findBySandbox(trace, pid, processes, index) && !findByLaunch(trace, pid, processes, index))
        findByProgram(trace, pid, processes, index);
    return trace;
}

} // namespace Quillmere
