#include "Fakes/PretendMachine.h"
#include "Platform/Linux/Applications/ApplicationLeftovers.h"
#include "Services/ApplicationInventory.h"

#include <algorithm>

using namespace Quillmere;

namespace {

const QByteArrayList foldersOfBundles = {"Library/Caches", "Library/Preferences", "Library/Containers"};
const QByteArrayList foldersOfEntries = {
    ".config", ".local/share", ".local/state", ".cache", ".var/app", ".config/autostart", ".local/share/applications"};

/// What an application may call its own stands directly in one of these folders and bears its name.
void check(const QList<FilePath> &leftovers, const QByteArrayList &folders, const QByteArray &name)
{
    for (const FilePath &leftover : leftovers) {
        const QByteArray bytes = leftover.bytes();
        const bool isInPlace = std::ranges::any_of(folders, [&](const QByteArray &folder) {
            const QByteArray own = "/home/ada/" + folder + '/' + name;
            return bytes == own || bytes == own + ".plist" || bytes == own + ".desktop";
        });
        if (!isInPlace || leftover.lastPathComponent() == ".." || leftover.lastPathComponent() == ".")
            qFatal("It reaches for %s.", bytes.constData());
    }
}

} // namespace

/// Wherever an identifier leads to, something is there; yet what is found is never anything but the application's own.
extern "C" int LLVMFuzzerTestOneInput(const char *bytes, std::size_t size)
{
    const QByteArray identifier(bytes, static_cast<qsizetype>(size));
    const auto files = std::make_shared<PretendFileManager>();
    const auto places = std::make_shared<PretendPlaces>();
    for (const QByteArray &folder : foldersOfBundles + foldersOfEntries) {
        for (const char *suffix : {"", ".plist", ".desktop"})
            files->addFile(FilePath("/home/ada/" + folder + '/' + identifier + suffix), 10);
    }

    FoundApplication application;
    application.item.path = FilePath("/Applications/Painter.app");
    application.item.bundleIdentifier = QString::fromUtf8(identifier);
    const ApplicationInventory inventory(files, places, std::make_shared<PretendInstalledApplications>());
    check(inventory.findLeftovers(application), foldersOfBundles, identifier);

    const ApplicationLeftovers leftovers(files, places, {}, [](const char *) { return QByteArray(); });
    for (const auto packaging : {ApplicationLeftovers::Packaging::Any, ApplicationLeftovers::Packaging::Flatpak})
        check(leftovers.of(identifier, packaging), foldersOfEntries, identifier);
    return 0;
}
