#include "Tools/ps/SampleStore.h"

#include "Platform/Linux/Files/FileReading.h"
#include "Platform/Linux/Files/FileReplacement.h"

#include <tuple>

#include <sys/stat.h>

namespace Quillmere {

namespace {

constexpr qsizetype mostBytes = 16 << 20;

/// A file, no link, that nobody else may have written.
bool isOurFile(const FilePath &path)
{
    struct stat status = {};
    return ::lstat(path.bytes().constData(), &status) == 0 && S_ISREG(status.st_mode) && isClosedToOthers(status);
}

} // namespace

SampleStore::SampleStore(RuntimeFolder folder)
    : m_folder(std::move(folder))
    , m_file(m_folder.path().appending("ps.sample"))
{
}

// Once both folders are closed to others, nobody else can put anything in the place of what was looked at.
std::optional<LoadSample> SampleStore::load() const
{
    if (!m_folder.check() || !isOurFile(m_file))
        return std::nullopt;
    const Result<QByteArray> text = readBounded(m_file, mostBytes);
    return text ? LoadSample::read(text.value()) : std::nullopt;
}

void SampleStore::keep(const LoadSample &sample) const
{
    if (m_folder.prepare())
        std::ignore = replaceFile(m_file, sample.written(), S_IRUSR | S_IWUSR);
}

} // namespace Quillmere
