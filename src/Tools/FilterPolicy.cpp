#include "Tools/FilterPolicy.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/FileReplacement.h"
#include "Platform/Linux/Filter/FilterPolicyRecord.h"

#include <QDeadlineTimer>

#include <array>
#include <cerrno>
#include <chrono>
#include <utility>

#include <poll.h>
#include <sys/stat.h>

namespace Quillmere {

namespace {

constexpr std::chrono::seconds patience{10};
constexpr mode_t folderMode = S_IRWXU | S_IRGRP | S_IXGRP | S_IROTH | S_IXOTH;
constexpr mode_t fileMode = S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH;
constexpr mode_t writableByOthers = S_IWGRP | S_IWOTH;

ToolEnd notSaved(const QString &reason)
{
    return {1, u"The rules of the filter were not saved: "_qs + reason};
}

/// Whoever calls may never come to an end, or say nothing.
Result<QByteArray> readToTheEnd(int input)
{
    const QDeadlineTimer deadline(patience);
    QByteArray text;
    std::array<char, 4096> block{};
    while (text.size() <= FilterPolicy::mostBytes) {
        pollfd event = {input, POLLIN, 0};
        if (::poll(&event, 1, static_cast<int>(deadline.remainingTime())) == 0)
            return Failure{Failure::Kind::Other, {}, u"They did not come."_qs};
        const ssize_t count = ::read(input, block.data(), block.size());
        if (count == 0)
            return text;
        if (count > 0)
            text.append(block.data(), count);
        else if (errno != EINTR)
            return failureFromErrno(errno, {});
    }
    return Failure{Failure::Kind::Malformed, {}, u"They are too long."_qs};
}

Result<void> prepareFolder(const FilePath &folder)
{
    const bool wasMade = ::mkdir(folder.bytes().constData(), folderMode) == 0;
    if (!wasMade && errno != EEXIST)
        return failureFromErrno(errno, folder);
    struct stat status = {};
    if (::lstat(folder.bytes().constData(), &status) != 0)
        return failureFromErrno(errno, folder);
    if (!S_ISDIR(status.st_mode) || status.st_uid != ::geteuid() || (status.st_mode & writableByOthers) != 0)
        return Failure{Failure::Kind::Protected, folder, u"Others than root may write into their folder."_qs};
    return {};
}

} // namespace

FilterPolicy::FilterPolicy(FilePath file, int input)
    : m_file(std::move(file))
    , m_input(input)
{
}

ToolEnd FilterPolicy::run(const QStringList &arguments) const
{
    if (!arguments.isEmpty())
        return {ToolEnd::wrongUse, u"usage: quillmere-admin filter-policy <RECORD"_qs};
    const Result<QByteArray> text = readToTheEnd(m_input);
    if (!text)
        return notSaved(text.failure().detail);
    const std::optional<FilterPolicyRecord> record = readFilterPolicyRecord(text.value());
    if (!record)
        return notSaved(u"They cannot be understood."_qs);
    if (const Result<void> prepared = prepareFolder(m_file.deletingLastPathComponent()); !prepared)
        return notSaved(prepared.failure().detail);
    // Written anew, so that nothing comes into the file that is not part of a record.
    const Result<void> saved = replaceFile(m_file, written(*record), fileMode);
    return saved ? ToolEnd() : notSaved(saved.failure().detail);
}

} // namespace Quillmere
