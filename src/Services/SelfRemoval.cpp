#include "Services/SelfRemoval.h"

#include "Utilities/Diagnostics.h"
#include "Utilities/RemovableLocation.h"

#include <algorithm>
#include <array>

namespace Quillmere {

namespace {

// Below the user's home, in the order in which they go.
constexpr std::array data = {
    "Library/Application Support/Quillmere",
    "Library/Caches/com.veltrane.quillmere",
    "Library/Caches/Quillmere",
    "Library/Preferences/com.veltrane.quillmere.plist",
};

/// Whether a shell reads @p path as it stands between double quotes. Of any other it would make several, or a command.
bool staysItselfInDoubleQuotes(const FilePath &path)
{
    return std::ranges::none_of(path.bytes(), [](char each) { return QByteArrayView("\"$`\\\n").contains(each); });
}

} // namespace

SelfRemoval::SelfRemoval(Parts parts)
    : m_parts(std::move(parts))
{
}

void SelfRemoval::run() const
{
    const FilePath bundle = m_parts.bundles->mainLocation();
    removeData();
    // Of several copies the desktop knows one.
    m_parts.workspace->unregisterApplication(bundle);
    // Outside a bundle the program lies among others in a folder that is not its own.
    if (bundle.pathExtension() == "app")
        leaveBundleToScript(bundle);
}

void SelfRemoval::removeData() const
{
    for (const char *item : data)
        removeItem(m_parts.files->homeDirectory().appending(item));
    for (const PlaceEntry &entry : m_parts.places->entriesBehind(u"Self Removal"_qs))
        removeItem(entry.path);
}

void SelfRemoval::removeItem(const FilePath &item) const
{
    std::ignore = m_parts.files->removeItem(removableLocation(*m_parts.files, item));
}

void SelfRemoval::leaveBundleToScript(const FilePath &bundle) const
{
    if (!staysItselfInDoubleQuotes(bundle))
        return printDiagnostic(u"Not removed, because a script could not name it safely: "_qs + bundle.displayText());
    const FilePath script = m_parts.files->temporaryDirectory().appending("uninstall.sh");
    std::ignore = m_parts.files->writeFile(script, "sleep 1\nrm -rf \"" + bundle.bytes() + "\"", WriteMode::Atomic);
    // Where several users share the folder, something of another's may stand there and have kept ours out.
    const Result<FileAttributes> found = m_parts.files->attributesOfItem(script);
    if (found && (found.value().type != EntryKind::Regular || !found.value().isOwnedByUser))
        return;
    const Result<void> launched = m_parts.processes->launch({u"/bin/bash"_qs, {QString::fromUtf8(script.bytes())}});
    if (!launched)
        printDiagnostic(u"Failed to run self-uninstall background process: "_qs, launched.failure());
}

} // namespace Quillmere
