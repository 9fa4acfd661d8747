#include "Services/BundleInstaller.h"

#include "Services/BundleReplacement.h"
#include "Utilities/Diagnostics.h"

#include <algorithm>

namespace Quillmere {

namespace {

const QByteArray folderOfAllUsers = "/Applications";
const QByteArray bundleName = "Quillmere.app";

QByteArray quotedForShell(const FilePath &path)
{
    return '\'' + QByteArray(path.bytes()).replace('\'', "'\\''") + '\'';
}

} // namespace

BundleInstaller::BundleInstaller(Parts parts)
    : m_parts(std::move(parts))
{
}

std::optional<FilePath> BundleInstaller::copyToApplications() const
{
    const FilePath current = m_parts.bundles->mainLocation();
    if (isInstalled(current)) {
        m_parts.receipt.markCompleted();
        std::ignore = m_parts.terms.writeFinalInstallationFile();
        return current;
    }
    // Outside a bundle the program lies among others, which nobody wants to have copied.
    if (current.pathExtension() != "app") {
        printDiagnostic(u"Not copied, because the program does not lie in a bundle: "_qs + current.displayText());
        return std::nullopt;
    }
    const FilePath destination = FilePath(folderOfAllUsers).appending(bundleName);
    const Result<void> copied = replaceBundle(*m_parts.files, current, destination);
    if (copied)
        return installed(destination);
    printDiagnostic(u"Failed to copy to global /Applications: "_qs, copied.failure());
    if (installBundleWithAdministratorPrivileges(current, destination))
        return installed(destination);
    return installForUser(current);
}

bool BundleInstaller::isInstalled(const FilePath &bundle) const
{
    if (bundle.bytes().startsWith(folderOfAllUsers))
        return true;
    const QList<PlaceEntry> places = m_parts.places->entriesBehind(u"Installed Program"_qs);
    return std::ranges::any_of(places, [&](const PlaceEntry &place) { return bundle.isWithin(place.path); });
}

bool BundleInstaller::installBundleWithAdministratorPrivileges(const FilePath &from, const FilePath &to) const
{
    const QByteArray target = quotedForShell(to);
    const QString script
        = u"do shell script \"rm -rf %1 && /usr/bin/ditto %2 %1\" with administrator privileges"_qs.arg(
            QString::fromUtf8(target), QString::fromUtf8(quotedForShell(from)));
    const Result<ProcessOutcome> outcome = m_parts.processes->run({u"/usr/bin/osascript"_qs, {u"-e"_qs, script}});
    if (outcome)
        return outcome.value().exitStatus == 0;
    printDiagnostic(u"Privileged install failed: "_qs, outcome.failure());
    return false;
}

std::optional<FilePath> BundleInstaller::installForUser(const FilePath &from) const
{
    const FilePath folder = m_parts.files->homeDirectory().appending("Applications");
    const FilePath destination = folder.appending(bundleName);
    Result<void> copied = m_parts.files->createDirectory(folder, Intermediates::Create);
    if (copied)
        copied = replaceBundle(*m_parts.files, from, destination);
    if (copied)
        return installed(destination);
    printDiagnostic(u"Fallback copy to ~/Applications failed: "_qs, copied.failure());
    return std::nullopt;
}

FilePath BundleInstaller::installed(const FilePath &bundle) const
{
    // The bundle stands; a desktop that does not know of it keeps nobody from starting it.
    std::ignore = m_parts.workspace->registerApplication(bundle);
    m_parts.receipt.markCompleted(bundle);
    m_parts.receipt.markCompleted();
    return bundle;
}

} // namespace Quillmere
