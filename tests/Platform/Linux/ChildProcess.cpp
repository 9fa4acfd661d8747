#include "Platform/Linux/ChildProcess.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr uid_t nobody = 65534;

int statusOfChild(const std::function<void()> &body)
{
    int status = -1;
    ::waitpid(startChild(body), &status, 0);
    return status;
}

bool writeText(const char *path, const QByteArray &text)
{
    const int file = ::open(path, O_WRONLY | O_CLOEXEC);
    const bool written = file >= 0 && ::write(file, text.constData(), static_cast<size_t>(text.size())) == text.size();
    ::close(file);
    return written;
}

bool enterMountNamespace()
{
    const uid_t user = ::geteuid();
    const gid_t group = ::getegid();
    if (user == 0 && ::unshare(CLONE_NEWNS) != 0)
        return false;
    if (user != 0
        && (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0 || !writeText("/proc/self/setgroups", "deny")
            || !writeText("/proc/self/uid_map", "0 " + QByteArray::number(user) + " 1")
            || !writeText("/proc/self/gid_map", "0 " + QByteArray::number(group) + " 1")))
        return false;
    return ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

} // namespace

void inChild(const std::function<void()> &body)
{
    EXPECT_EQ(statusOfChild(body), 0) << "in a child process, see above";
}

void inUnprivilegedChild(const FilePath &foldersToOwn, const std::function<void()> &body)
{
    const bool privileged = ::geteuid() == 0;
    if (privileged && !foldersToOwn.isEmpty())
        QProcess::execute(u"/bin/chown"_qs,
                          {u"-R"_qs, QString::number(nobody), QFile::decodeName(foldersToOwn.bytes())});
    inChild([&] {
        if (privileged) {
            ASSERT_EQ(::setgroups(0, nullptr), 0);
            ASSERT_EQ(::setresgid(nobody, nobody, nobody), 0);
            ASSERT_EQ(::setresuid(nobody, nobody, nobody), 0);
        }
        body();
    });
}

void inMountNamespace(const std::function<void()> &body)
{
    inChild([&] {
        ASSERT_TRUE(enterMountNamespace()) << std::strerror(errno);
        body();
    });
}

QByteArray whyNoMountNamespace()
{
    static const int status = statusOfChild([] {
        const bool works = enterMountNamespace() && ::mount("tmpfs", "/mnt", "tmpfs", 0, nullptr) == 0;
        ::_exit(works ? 0 : errno);
    });
    if (status == 0)
        return {};
    return QByteArray("This machine gives no mount namespace: ") + std::strerror(WEXITSTATUS(status));
}

bool mountTmpfs(const FilePath &folder, const char *options)
{
    ::mkdir(folder.bytes().constData(), 0777);
    const bool mounted = ::mount("tmpfs", folder.bytes().constData(), "tmpfs", 0, options) == 0;
    EXPECT_TRUE(mounted) << std::strerror(errno);
    return mounted;
}

bool mountVolume(const FilePath &folder, const FilePath &backing)
{
    const FilePath lower = backing.appending("lower");
    const FilePath upper = backing.appending("upper");
    const FilePath work = backing.appending("work");
    for (const FilePath &made : {lower, upper, work, folder})
        ::mkdir(made.bytes().constData(), 0777);
    const QByteArray options = "lowerdir=" + lower.bytes() + ",upperdir=" + upper.bytes() + ",workdir=" + work.bytes();
    const bool mounted = ::mount("overlay", folder.bytes().constData(), "overlay", 0, options.constData()) == 0;
    EXPECT_TRUE(mounted) << std::strerror(errno);
    return mounted;
}

pid_t startChild(const std::function<void()> &body)
{
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        body();
        std::fflush(nullptr);
        ::_exit(testing::Test::HasFailure() ? 1 : 0);
    }
    return child;
}

void killChild(pid_t child)
{
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
}

} // namespace Quillmere
