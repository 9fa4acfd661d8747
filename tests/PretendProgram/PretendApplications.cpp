#include "PretendProgram/PretendApplications.h"

#include "Fakes/ByteUnits.h"
#include "Utilities/PropertyList.h"

namespace Quillmere {

namespace {

struct Installed
{
    const char *name;
    const char *identifier;
    const char *version;
    qint64 megabytes;
    const char *leftovers; ///< Which there are: support, caches, preferences, container.
};

constexpr Installed bundles[] = {
    {"Model Workshop", "org.example.workshop", "2026.3", 2870, "scpk"},
    {"Painter", "com.example.painter", "4.2.1", 520, "scp"},
    {"Sound Studio", "com.example.soundstudio", "12.0", 1430, "scpk"},
    {"An Image Manipulation Program of Uncommon Length", "org.example.image", "3.0", 358, "sp"},
    {"Notes & Sketches", "org.example.notes", "0.9.4", 41, "sck"},
    {"Drawing", "org.example.drawing", "7", 96, "p"},
    {"Cloud Folder", "org.example.cloud", "5.1", 118, "sc"},
    {"Document Reader", "org.example.reader", "44.2", 74, ""},
    {"Nameless", "", "", 12, "s"},
    {"Tiny", "com.example.tiny", "1", 1, ""},
    {"Map Room", "com.example.maps", "2.8", 644, "sc"},
    {"Calculator", "com.example.calculator", "11.4", 9, "p"},
};

constexpr Installed packages[] = {
    {"Firefox", "firefox-esr", "128.4.0esr-1~deb12u1", 241, ""},
    {"Office Writer", "libreoffice-writer", "4:7.4.7-1+deb12u5", 96, ""},
    {"Image Viewer", "org.example.viewer", "43.2-1", 8, ""},
    {"Text Editor", "org.example.editor", "43.2-2", 4, ""},
    {"Terminal", "org.example.terminal", "3.46.8-1", 3, ""},
};

void addBundle(PretendMachine &machine, const Installed &application)
{
    const QByteArray name = application.name;
    const QByteArray identifier = application.identifier;
    const FilePath bundle = FilePath("/Applications").appending(name + ".app");
    const FilePath library = machine.files->homeDirectory().appending("Library");
    const QByteArray kinds = application.leftovers;
    machine.files->addFile(bundle.appending("Contents/Resources/data"), application.megabytes * megabyte);
    PropertyList information;
    if (!identifier.isEmpty()) {
        information.setString(u"CFBundleIdentifier"_qs, QString::fromUtf8(identifier));
        information.setString(u"CFBundleShortVersionString"_qs, QString::fromUtf8(application.version));
    }
    machine.files->addFile(bundle.appending("Contents/Info.plist"), 900, information.written(PropertyList::Form::Xml));
    if (kinds.contains('s'))
        machine.files->addFile(library.appending("Application Support").appending(name).appending("data"),
                               37 * megabyte);
    if (kinds.contains('c'))
        machine.files->addFile(library.appending("Caches").appending(identifier).appending("data"), 64 * megabyte);
    if (kinds.contains('p'))
        machine.files->addFile(library.appending("Preferences").appending(identifier + ".plist"), 4096);
    if (kinds.contains('k'))
        machine.files->addFile(library.appending("Containers").appending(identifier).appending("Data/tmp/data"),
                               5 * megabyte);
}

ListedApplication listed(const Installed &application, const FilePath &location, ApplicationRemoval removal)
{
    ListedApplication made;
    made.id = application.identifier;
    made.name = QString::fromUtf8(application.name);
    made.identifier = QString::fromUtf8(application.identifier);
    made.version = QString::fromUtf8(application.version);
    made.location = location;
    made.removal = removal;
    return made;
}

} // namespace

void fillPretendApplications(PretendMachine &machine)
{
    for (const Installed &application : bundles)
        addBundle(machine, application);

    const FilePath home = machine.files->homeDirectory();
    ListedApplication image = listed({"Slicer", "org.example.slicer", "2.7", 0, ""},
                                     home.appending("Applications/Slicer-2.7.AppImage"), ApplicationRemoval::Trash);
    image.parts = {image.location};
    machine.files->addFile(image.location, 183 * megabyte);
    const FilePath settings = home.appending(".config/org.example.slicer");
    machine.files->addFile(settings.appending("profiles"), 2 * megabyte);
    machine.applications->add(image, {settings});

    ListedApplication flatpak
        = listed({"Chess", "org.example.Chess", "45.1", 0, ""},
                 home.appending(".local/share/flatpak/app/org.example.Chess"), ApplicationRemoval::Command);
    flatpak.parts = {flatpak.location};
    machine.files->addFile(flatpak.location.appending("current/files"), 57 * megabyte);
    const FilePath data = home.appending(".var/app/org.example.Chess");
    machine.files->addFile(data.appending("data/games"), megabyte);
    machine.applications->add(flatpak, {data});

    for (const Installed &package : packages) {
        const QByteArray id = package.identifier;
        ListedApplication application = listed(package, FilePath("/usr/share/applications").appending(id + ".desktop"),
                                               ApplicationRemoval::System);
        application.size = package.megabytes * megabyte;
        machine.applications->add(application);
    }
}

} // namespace Quillmere
