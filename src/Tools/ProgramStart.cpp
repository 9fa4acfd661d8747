#include "Tools/ProgramStart.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr const char *systemBus = "DBUS_SYSTEM_BUS_ADDRESS";
constexpr const char *raisedFor = "PKEXEC_UID";

void openStandardDescriptors()
{
    for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number) {
        // The lowest free number is the one that is missing.
        if (::fcntl(number, F_GETFD) < 0 && ::open("/dev/null", O_RDWR) < 0)
            std::abort();
    }
}

} // namespace

bool isRoot()
{
    return ::getuid() == 0 && ::geteuid() == 0;
}

void startClean()
{
    const QByteArray user = qgetenv(raisedFor);
    const QByteArray bus = user.isEmpty() ? qgetenv(systemBus) : QByteArray();
    ::clearenv();
    ::setenv("PATH", "/usr/sbin:/usr/bin:/sbin:/bin", 1);
    ::setenv("LC_ALL", "C.UTF-8", 1);
    if (!user.isEmpty())
        ::setenv(raisedFor, user.constData(), 1);
    if (!bus.isEmpty())
        ::setenv(systemBus, bus.constData(), 1);
    openStandardDescriptors();
    ::close_range(STDERR_FILENO + 1, ~0U, 0);
    ::umask(S_IWGRP | S_IWOTH);
    if (::chdir("/") != 0)
        std::abort();
}

void letGoOfInput()
{
    const int nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (nothing < 0 || ::dup2(nothing, STDIN_FILENO) < 0)
        std::abort();
    ::close(nothing);
}

QString programFolder()
{
    return QFileInfo(QFile::symLinkTarget(u"/proc/self/exe"_qs)).absolutePath();
}

void say(const QString &line)
{
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}

int finish(const ToolEnd &end)
{
    if (!end.report.isEmpty())
        std::fprintf(stdout, "%s\n", end.report.toUtf8().constData());
    std::fflush(stdout);
    if (!end.message.isEmpty())
        std::fprintf(stderr, "%s\n", end.message.toUtf8().constData());
    return end.status;
}

} // namespace Quillmere
