#include "Tools/ChildProgram.h"

#include "Platform/Linux/Programs/LastOutput.h"

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>

#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr int notStarted = 255;

/// A file without a name that takes what a program writes. Whoever is left behind by that program may go on to write,
/// which fails and does no harm: into a pipe of ours it would be its end.
class WrittenOutput
{
public:
    /// For one that appends.
    [[nodiscard]] QString path() const { return u"/proc/self/fd/%1"_qs.arg(m_file.number()); }

    /// What it holds, which is all that it ever will.
    [[nodiscard]] QByteArray end() const
    {
        ::fcntl(m_file.number(), F_ADD_SEALS, F_SEAL_GROW);
        LastOutput output;
        QByteArray block(blockSize, '\0');
        for (off_t at = 0;;) {
            const ssize_t count = ::pread(m_file.number(), block.data(), static_cast<size_t>(blockSize), at);
            if (count <= 0)
                return output.text();
            output.append(block.first(count));
            at += count;
        }
    }

private:
    static constexpr qsizetype blockSize = 64 * 1024;

    FileDescriptor m_file{::memfd_create("quillmere-output", MFD_CLOEXEC | MFD_ALLOW_SEALING)};
};

/// The status of its end.
Result<int> finish(QProcess &process, const Command &command, FileDescriptor input = {})
{
    constexpr int forever = -1;
    constexpr int signalled = 128;
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(command.launchPath, command.arguments);
    if (!process.waitForStarted(forever))
        return Failure{Failure::Kind::NotFound, FilePath(QFile::encodeName(command.launchPath)), process.errorString()};
    input = {};
    process.waitForFinished(forever);
    // Of a program that a signal ended, QProcess gives the signal's number as the code.
    const int end = process.exitStatus() == QProcess::CrashExit ? signalled : 0;
    return end + process.exitCode();
}

/// In the child of a process that may have threads: system calls alone. The C library's own would look for threads.
void become(const Caller &caller)
{
    const bool isAnother = caller.user != ::geteuid();
    if (::setsid() < 0)
        ::_exit(notStarted);
    if (isAnother
        && (::syscall(SYS_setgroups, caller.groups.size(), caller.groups.data()) != 0
            || ::syscall(SYS_setresgid, caller.group, caller.group, caller.group) != 0
            || ::syscall(SYS_setresuid, caller.user, caller.user, caller.user) != 0))
        ::_exit(notStarted);
    if (::chdir(caller.home.bytes().constData()) != 0 && ::chdir("/") != 0)
        ::_exit(notStarted);
}

/// In the child too.
void readFrom(int input)
{
    if (::dup2(input, STDIN_FILENO) < 0)
        ::_exit(notStarted);
}

bool isFolderOf(const Caller &caller, const QByteArray &folder)
{
    struct stat status = {};
    return ::lstat(folder.constData(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == caller.user;
}

QProcessEnvironment environmentOf(const Caller &caller)
{
    QProcessEnvironment environment;
    environment.insert(u"PATH"_qs, u"/usr/local/bin:/usr/bin:/bin"_qs);
    environment.insert(u"LC_ALL"_qs, u"C.UTF-8"_qs);
    environment.insert(u"HOME"_qs, QFile::decodeName(caller.home.bytes()));
    environment.insert(u"USER"_qs, QString::fromUtf8(caller.name));
    environment.insert(u"LOGNAME"_qs, QString::fromUtf8(caller.name));
    // logind makes this folder, for its user alone.
    const QByteArray runtime = "/run/user/" + QByteArray::number(caller.user);
    if (isFolderOf(caller, runtime)) {
        environment.insert(u"XDG_RUNTIME_DIR"_qs, QString::fromUtf8(runtime));
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_qs, u"unix:path="_qs + QString::fromUtf8(runtime) + u"/bus"_qs);
    }
    return environment;
}

} // namespace

QString argumentOf(const FilePath &path)
{
    return QFile::decodeName(path.bytes());
}

Result<ChildEnd> runChild(const Command &command, FileDescriptor input)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedOutputChannel);
    LastOutput said;
    QObject::connect(&process, &QProcess::readyReadStandardError, &process,
                     [&] { said.append(process.readAllStandardError()); });
    if (input.isOpen())
        process.setChildProcessModifier([number = input.number()] { readFrom(number); });
    const Result<int> status = finish(process, command, std::move(input));
    return status ? Result(ChildEnd{status.value(), said.text()}) : status.failure();
}

Result<ChildEnd> runChildAs(const Caller &caller, const Command &command)
{
    QProcess process;
    process.setProcessEnvironment(environmentOf(caller));
    process.setChildProcessModifier([&caller] { become(caller); });
    const WrittenOutput output;
    process.setStandardOutputFile(output.path(), QProcess::Append);
    process.setStandardErrorFile(output.path(), QProcess::Append);
    const Result<int> status = finish(process, command);
    return status ? Result(ChildEnd{status.value(), output.end()}) : status.failure();
}

} // namespace Quillmere
