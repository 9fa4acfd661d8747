#include "Platform/Linux/Tray/TestDesktop.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QThread>

#include <csignal>
#include <vector>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr int patienceForTheDesktop = 20000;
constexpr int answerDescriptor = 3;

/// Starts @p command with descriptor 3 open for writing into @p answer.
pid_t started(QByteArrayList command, const QByteArray &answer)
{
    std::vector<char *> arguments;
    for (QByteArray &word : command)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const pid_t parent = ::getpid();
    const pid_t child = ::fork();
    if (child != 0)
        return child;
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    const int file = ::open(answer.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const int quiet = ::open("/dev/null", O_WRONLY);
    ::dup2(quiet, STDERR_FILENO);
    if (::getppid() == parent && file >= 0 && (file == answerDescriptor || ::dup2(file, answerDescriptor) >= 0))
        ::execvp(arguments.front(), arguments.data());
    ::_exit(127);
}

/// The line that a program has written into @p answer; empty when none came.
QByteArray lineFrom(const QByteArray &answer)
{
    const QDeadlineTimer deadline(patienceForTheDesktop);
    while (!deadline.hasExpired()) {
        QFile file(QFile::decodeName(answer));
        const QByteArray text = file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
        if (text.endsWith('\n'))
            return text.trimmed();
        QThread::msleep(10);
    }
    return {};
}

void end(pid_t process)
{
    if (process <= 0)
        return;
    ::kill(process, SIGTERM);
    ::waitpid(process, nullptr, 0);
}

} // namespace

TestDesktop::TestDesktop()
{
    const QByteArray folder = QFile::encodeName(m_folder.path());
    m_bus = started({"dbus-daemon", "--session", "--nofork", "--address=unix:dir=" + folder, "--print-address=3"},
                    folder + "/bus-address");
    m_screen = started({"Xvfb", "-displayfd", "3", "-screen", "0", "800x600x24", "-nolisten", "tcp", "-noreset"},
                       folder + "/display");
    const QByteArray address = lineFrom(folder + "/bus-address");
    const QByteArray display = lineFrom(folder + "/display");
    m_isRunning = !address.isEmpty() && !display.isEmpty();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    qputenv("DISPLAY", ":" + display);
    qputenv("QT_QPA_PLATFORM", "xcb");
    // The machine's own theme plug-ins would ask for its own tray.
    qputenv("QT_QPA_PLATFORMTHEME", "");
    qputenv("XDG_CURRENT_DESKTOP", "");
    qputenv("HOME", folder);
}

TestDesktop::~TestDesktop()
{
    end(m_screen);
    end(m_bus);
}

} // namespace Quillmere
