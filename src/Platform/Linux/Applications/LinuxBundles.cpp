#include "Platform/Linux/Applications/LinuxBundles.h"

#include "Platform/Linux/Files/FileReading.h"
#include "Utilities/PropertyList.h"
#include "Utilities/PropertyListLimits.h"
#include "Values/FileName.h"

#include <array>
#include <climits>

#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

/// `X.app` where @p folder is `X.app/Contents/MacOS`, else @p folder itself.
FilePath bundleAround(const FilePath &folder)
{
    const FilePath contents = folder.deletingLastPathComponent();
    const FilePath bundle = contents.deletingLastPathComponent();
    const bool isInBundle = folder.lastPathComponent() == "MacOS" && contents.lastPathComponent() == "Contents"
        && bundle.pathExtension() == "app";
    return isInBundle ? bundle : folder;
}

bool isFolder(const FilePath &location)
{
    struct stat status = {};
    return !location.isEmpty() && ::stat(location.bytes().constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

LinuxBundles::LinuxBundles(const FilePath &program)
    : m_mainLocation(bundleAround(program.standardized().deletingLastPathComponent()))
{
}

FilePath LinuxBundles::runningProgram()
{
    std::array<char, PATH_MAX> target{};
    const ssize_t length = ::readlink("/proc/self/exe", target.data(), target.size());
    return length > 0 ? FilePath(QByteArray(target.data(), length)) : FilePath();
}

std::optional<Bundle> LinuxBundles::open(const FilePath &location) const
{
    if (!isFolder(location))
        return std::nullopt;
    Bundle bundle;
    bundle.location = location;
    const Result<QByteArray> contents
        = readBounded(location.appending("Contents/Info.plist"), PropertyListLimits::mostBytes);
    const Result<PropertyList> information
        = contents ? PropertyList::read(contents.value()) : Result<PropertyList>(contents.failure());
    if (!information)
        return bundle;
    bundle.identifier = information.value().string(u"CFBundleIdentifier"_qs);
    const std::optional<QString> executable = information.value().string(u"CFBundleExecutable"_qs);
    if (executable && isPlainFileName(executable->toUtf8()))
        bundle.executable = location.appending("Contents/MacOS").appending(executable->toUtf8());
    bundle.shortVersion = information.value().string(u"CFBundleShortVersionString"_qs);
    bundle.build = information.value().string(u"CFBundleVersion"_qs);
    return bundle;
}

} // namespace Quillmere
