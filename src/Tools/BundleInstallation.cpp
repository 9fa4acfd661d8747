#include "Tools/BundleInstallation.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/OpenAt.h"
#include "Tools/BundleCopy.h"
#include "Tools/CallerRights.h"
#include "Tools/InstallStaging.h"

#include <QFile>

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr const char *installedName = "Quillmere.app";
constexpr const char *stagedBundle = "bundle";

/// Links above the bundle are the caller's own way to it; the bundle itself is none.
Result<FileDescriptor> openBundle(const FilePath &source, const Caller &caller)
{
    if (!source.bytes().startsWith('/'))
        return Failure{Failure::Kind::NotFound, source, u"This is no absolute location"_qs};
    const CallerRights rights(caller);
    FileDescriptor bundle
        = openAt(AT_FDCWD, source.bytes(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW, RESOLVE_NO_MAGICLINKS);
    if (!bundle.isOpen())
        return failureFromErrno(errno, source);
    const FileDescriptor information = openAt(bundle.number(), "Contents/Info.plist", O_PATH | O_NOFOLLOW,
                                              RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_XDEV);
    struct stat status = {};
    if (!information.isOpen() || ::fstat(information.number(), &status) != 0 || !S_ISREG(status.st_mode))
        return Failure{Failure::Kind::Malformed, source, u"This is no bundle: it has no Contents/Info.plist"_qs};
    return bundle;
}

} // namespace

BundleInstallation::BundleInstallation(FilePath applications)
    : m_applications(std::move(applications))
{
}

Result<void> BundleInstallation::install(const FilePath &source, const Caller &caller) const
{
    const Result<FileDescriptor> bundle = openBundle(source, caller);
    if (!bundle)
        return bundle.failure();
    const Result<FileDescriptor> applications = openApplications();
    if (!applications)
        return applications.failure();
    const Result<InstallStaging> staging = InstallStaging::make(applications.value().number(), m_applications);
    if (!staging)
        return staging.failure();
    Result<void> copied
        = copyBundle(bundle.value().number(), source, caller, staging.value().descriptor(), stagedBundle);
    if (!copied)
        return copied;
    return staging.value().replace(stagedBundle, installedName);
}

ToolEnd BundleInstallation::run(const QStringList &arguments, const Result<Caller> &caller) const
{
    if (arguments.size() != 1)
        return {ToolEnd::wrongUse, u"usage: install-bundle BUNDLE"_qs};
    if (!caller)
        return {1, caller.failure().detail};
    const Result<void> installed = install(FilePath(QFile::encodeName(arguments.first())), caller.value());
    if (installed)
        return {};
    const Failure &failure = installed.failure();
    return {1, u"The bundle was not installed: %1: %2"_qs.arg(failure.path.displayText(), failure.detail)};
}

Result<FileDescriptor> BundleInstallation::openApplications() const
{
    if (::mkdir(m_applications.bytes().constData(), S_IRWXU | S_IRGRP | S_IXGRP | S_IROTH | S_IXOTH) != 0
        && errno != EEXIST)
        return failureFromErrno(errno, m_applications);
    FileDescriptor folder
        = openAt(AT_FDCWD, m_applications.bytes(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW, RESOLVE_NO_MAGICLINKS);
    struct stat status = {};
    if (!folder.isOpen() || ::fstat(folder.number(), &status) != 0)
        return failureFromErrno(errno, m_applications);
    if (status.st_uid != ::geteuid() || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0)
        return Failure{Failure::Kind::Protected, m_applications, u"Others than its owner may change this folder"_qs};
    return folder;
}

} // namespace Quillmere
