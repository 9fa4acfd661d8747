#include "Platform/Linux/System/ProcessTable.h"

#include "Platform/Linux/Files/DirectoryBuffer.h"
#include "Platform/Linux/Files/FileReading.h"
#include "Platform/Linux/System/ProcFile.h"
#include "Platform/Linux/System/ProcText.h"

#include <algorithm>
#include <array>
#include <climits>

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillmere {

namespace {

QByteArray nameOf(pid_t pid, const char *name)
{
    return QByteArray::number(pid) + '/' + name;
}

} // namespace

ProcessTable::ProcessTable(const FilePath &proc)
    : m_folder(::open(proc.bytes().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
}

QList<pid_t> ProcessTable::processes() const
{
    // A description of its own, since the place in the folder belongs to it.
    const FileDescriptor folder(::openat(m_folder.number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    QList<pid_t> numbers;
    DirectoryBuffer buffer;
    while (folder.isOpen() && buffer.read(folder.number())) {
        for (const dirent64 &entry : buffer) {
            const std::optional<quint64> number = wholeNumber(entry.d_name);
            if (number && *number > 0 && *number <= INT_MAX)
                numbers.append(static_cast<pid_t>(*number));
        }
    }
    std::ranges::sort(numbers);
    return numbers;
}

std::optional<ProcessStat> ProcessTable::stat(pid_t pid) const
{
    const std::optional<QByteArray> text = file(pid, "stat");
    return text ? parseProcessStat(*text) : std::nullopt;
}

std::optional<QByteArray> ProcessTable::file(pid_t pid, const char *name) const
{
    return readProcFile(m_folder.number(), nameOf(pid, name).constData());
}

std::optional<QByteArray> ProcessTable::fileInRoot(pid_t pid, const char *name, qsizetype mostBytes) const
{
    const FileDescriptor root(
        ::openat(m_folder.number(), nameOf(pid, "root").constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!root.isOpen())
        return std::nullopt;
    const FileDescriptor file(::openat(root.number(), name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    const Result<QByteArray> contents = readBounded(file, FilePath(QByteArray("/") + name), mostBytes);
    return contents ? std::optional(contents.value()) : std::nullopt;
}

QByteArray ProcessTable::link(pid_t pid, const char *name) const
{
    std::array<char, PATH_MAX> target;
    const ssize_t length = ::readlinkat(m_folder.number(), nameOf(pid, name).constData(), target.data(), target.size());
    return length > 0 ? QByteArray(target.data(), length) : QByteArray();
}

std::optional<uid_t> ProcessTable::user(pid_t pid) const
{
    struct stat status = {};
    if (::fstatat(m_folder.number(), QByteArray::number(pid).constData(), &status, 0) != 0)
        return std::nullopt;
    return status.st_uid;
}

} // namespace Quillmere
