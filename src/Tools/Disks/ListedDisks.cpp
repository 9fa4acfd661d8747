#include "Tools/Disks/ListedDisks.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/FileReading.h"
#include "Platform/Linux/Files/FileReplacement.h"

#include <QRandomGenerator>

#include <array>
#include <cerrno>
#include <tuple>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr qsizetype mostBytes = 4096;
// Of the volumes of one disk that take the place of others.
constexpr quint64 mostNumbers = 10'000;

} // namespace

ListedDisks::ListedDisks(RuntimeFolder runtimeFolder)
    : m_runtimeFolder(std::move(runtimeFolder))
    , m_folder(m_runtimeFolder.path().appending("disks"))
{
}

ListedDisks ListedDisks::ofThisUser()
{
    return ListedDisks(RuntimeFolder::ofThisUser());
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
        return prepared.failure();
    const FilePath file = fileOf(identity.name);
    const FilePath draft = m_folder.appending("new-" + QByteArray::number(::getpid()));
    const Result<void> written = replaceFile(draft, identity.words().join(u'\n').toUtf8(), S_IRUSR | S_IWUSR);
    if (!written)
        return written.failure();
    // link(2) takes the place of nothing, so that of two that come at once one is told of the other.
    const int error = ::link(draft.bytes().constData(), file.bytes().constData()) == 0 ? 0 : errno;
    ::unlink(draft.bytes().constData());
    const Result<DiskIdentity> kept = find(identity.name);
    if (error == 0 || (error == EEXIST && kept && kept.value() == identity))
        return {};
    return failureFromErrno(error, file);
}

Result<DiskIdentity> ListedDisks::keepVolume(DiskIdentity volume) const
{
    Result<void> kept = keep(volume);
    for (quint64 number = 0; !kept && kept.failure().kind == Failure::Kind::AlreadyExists && number < mostNumbers;
         ++number) {
        volume.name.volume = DiskName::firstOfReplaced + number;
        kept = keep(volume);
    }
    return kept ? Result<DiskIdentity>(volume) : kept.failure();
}

Result<void> ListedDisks::prepare() const
{
    const Result<void> prepared = m_runtimeFolder.prepare();
    return prepared ? makeOurs(m_folder) : prepared;
}

Result<DiskIdentity> ListedDisks::find(const DiskName &name) const
{
    if (const Result<void> ours = m_runtimeFolder.check(); !ours)
        return ours.failure();
    if (const Result<void> ours = seeThatItIsOurs(m_folder); !ours)
        return ours.failure();
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
