#include "Tools/ps/SampleStore.h"

#include "Platform/Linux/Files/FileReading.h"
#include "Platform/Linux/Files/FileReplacement.h"

#include <tuple>

#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr mode_t forOthers = S_IRWXG | S_IRWXO;
constexpr off_t mostBytes = 16 << 20;

} // namespace

SampleStore::SampleStore(FilePath runtimeFolder)
    : m_runtimeFolder(std::move(runtimeFolder))
    , m_folder(m_runtimeFolder.appending("quillmere"))
    , m_file(m_folder.appending("ps.sample"))
{
}

bool SampleStore::isOurs(const FilePath &path, mode_t kind) const
{
    struct stat status = {};
    return path.bytes().startsWith('/') && ::lstat(path.bytes().constData(), &status) == 0
        && (status.st_mode & S_IFMT) == kind && status.st_uid == ::geteuid() && (status.st_mode & forOthers) == 0
        && (kind != S_IFREG || status.st_size <= mostBytes);
}

// Once both folders are this user's alone, nobody else can put anything in the place of what was looked at.
std::optional<LoadSample> SampleStore::load() const
{
    if (!isOurs(m_runtimeFolder, S_IFDIR) || !isOurs(m_folder, S_IFDIR) || !isOurs(m_file, S_IFREG))
        return std::nullopt;
    const Result<QByteArray> text = readFile(m_file);
    return text ? LoadSample::read(text.value()) : std::nullopt;
}

void SampleStore::keep(const LoadSample &sample) const
{
    if (!isOurs(m_runtimeFolder, S_IFDIR))
        return;
    std::ignore = ::mkdir(m_folder.bytes().constData(), S_IRWXU);
    if (isOurs(m_folder, S_IFDIR))
        std::ignore = replaceFile(m_file, sample.written(), S_IRUSR | S_IWUSR);
}

} // namespace Quillmere
