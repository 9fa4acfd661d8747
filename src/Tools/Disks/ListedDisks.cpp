#include "Tools/Disks/ListedDisks.h"

#include "Platform/Linux/BoundedReading.h"
#include "Platform/Linux/ErrnoFailure.h"
#include "Platform/Linux/FileReplacement.h"

#include <QRandomGenerator>

#include <array>
#include <cerrno>
#include <tuple>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr mode_t writableByOthers = S_IWGRP | S_IWOTH;
constexpr qsizetype mostBytes = 4096;

Result<void> seeThatItIsOurs(const FilePath &folder)
{
    struct stat status = {};
    if (!folder.bytes().startsWith('/') || ::lstat(folder.bytes().constData(), &status) != 0)
        return Failure{Failure::Kind::NotFound, folder, u"There is no folder of the session."_qs};
    if (!S_ISDIR(status.st_mode) || status.st_uid != ::geteuid() || (status.st_mode & writableByOthers) != 0)
        return Failure{Failure::Kind::Protected, folder, u"Others than the user may write there."_qs};
    return {};
}

FilePath runtimeFolderOfThisUser()
{
    const FilePath folder(qgetenv("XDG_RUNTIME_DIR"));
    // Root may be without a session, or in that of whoever became root.
    return ::geteuid() == 0 && !seeThatItIsOurs(folder) ? FilePath("/run") : folder;
}

} // namespace

ListedDisks::ListedDisks(FilePath runtimeFolder)
    : m_runtimeFolder(std::move(runtimeFolder))
    , m_folder(m_runtimeFolder.appending("quillmere-disks"))
{
}

ListedDisks ListedDisks::ofThisUser()
{
    return ListedDisks(runtimeFolderOfThisUser());
}

quint64 ListedDisks::numbersBegin() const
{
    if (!prepare())
        return DiskName::leastBegin;
    // A link is there whole or not at all, and never takes the place of another: of two that draw at once, one wins.
    const FilePath link = m_folder.appending("numbers-begin");
    const quint32 drawn = QRandomGenerator::system()->bounded(static_cast<quint32>(DiskName::leastBegin),
                                                              static_cast<quint32>(DiskName::mostBegin + 1));
    std::ignore = ::symlink(QByteArray::number(drawn).constData(), link.bytes().constData());
    std::array<char, 16> text{};
    const ssize_t length = ::readlink(link.bytes().constData(), text.data(), text.size());
    const quint64 kept = length > 0 ? QByteArray(text.data(), length).toULongLong() : 0;
    return kept >= DiskName::leastBegin && kept <= DiskName::mostBegin ? kept : DiskName::leastBegin;
}

Result<void> ListedDisks::keep(const DiskIdentity &identity) const
{
    if (const Result<void> prepared = prepare(); !prepared)
        return prepared;
    return replaceFile(fileOf(identity.name), identity.words().join(u'\n').toUtf8(), S_IRUSR | S_IWUSR);
}

Result<void> ListedDisks::prepare() const
{
    if (const Result<void> ours = seeThatItIsOurs(m_runtimeFolder); !ours)
        return ours;
    if (::mkdir(m_folder.bytes().constData(), S_IRWXU) != 0 && errno != EEXIST)
        return failureFromErrno(errno, m_folder);
    return seeThatItIsOurs(m_folder);
}

Result<DiskIdentity> ListedDisks::find(const DiskName &name) const
{
    for (const FilePath &folder : {m_runtimeFolder, m_folder}) {
        if (const Result<void> ours = seeThatItIsOurs(folder); !ours)
            return ours.failure();
    }
    const FilePath file = fileOf(name);
    const Result<QByteArray> text = readBounded(file, mostBytes);
    if (!text)
        return text.failure();
    const auto identity = DiskIdentity::parse(QString::fromUtf8(text.value()).split(u'\n'));
    if (!identity || identity->name != name)
        return Failure{Failure::Kind::Malformed, file, u"What is written there is no disk."_qs};
    return *identity;
}

FilePath ListedDisks::fileOf(const DiskName &name) const
{
    return m_folder.appending(name.text().toLatin1());
}

} // namespace Quillmere
