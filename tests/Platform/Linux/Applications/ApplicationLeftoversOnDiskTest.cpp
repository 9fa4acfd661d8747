#include "Platform/Linux/Applications/InstalledApplicationsFixture.h"
#include "Services/ApplicationInventory.h"

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Packaging = ApplicationLeftovers::Packaging;

class ApplicationLeftoversTest : public InstalledApplicationsFixture
{
};

} // namespace

TEST_F(ApplicationLeftoversTest, FindsTheLeftoversOfTheExactNameInTheirOrder)
{
    for (const char *folder : {".config", ".local/share", ".local/state", ".cache", ".var/app"}) {
        disk.addFile(QByteArray("home/") + folder + "/org.example.a/file");
        disk.addFile(QByteArray("home/") + folder + "/org.example.a-helper/file");
    }
    disk.addFile("home/.config/autostart/org.example.a.desktop");
    disk.addFile("home/.local/share/applications/org.example.a.desktop", "no entry");

    EXPECT_THAT(leftoversOf("org.example.a"),
                ElementsAre(disk.path("home/.config/org.example.a"), disk.path("home/.local/share/org.example.a"),
                            disk.path("home/.local/state/org.example.a"), disk.path("home/.cache/org.example.a"),
                            disk.path("home/.config/autostart/org.example.a.desktop"),
                            disk.path("home/.local/share/applications/org.example.a.desktop")));
}

TEST_F(ApplicationLeftoversTest, KeepsApartWhatAFlatpakAndAnotherInstallationOfItsNameKeep)
{
    for (const char *folder : {".config", ".local/share", ".local/state", ".cache", ".var/app"})
        disk.addFile(QByteArray("home/") + folder + "/org.example.a/file");
    const QByteArray marked = "[Desktop Entry]\nExec=flatpak run org.example.a\nX-Flatpak=org.example.a\n";
    const FilePath autostart = disk.addFile("home/.config/autostart/org.example.a.desktop", marked);
    const FilePath entry = disk.addFile("home/.local/share/applications/org.example.a.desktop", marked);
    ListedApplication flatpak;
    flatpak.id = "org.example.a";
    flatpak.removal = ApplicationRemoval::Command;

    // Whether there is another cannot always be seen: neither an AppImage without an entry nor a Flatpak of a further
    // installation, or one that has left its data behind on purpose, lies where it could be looked for.
    EXPECT_THAT(installed().leftoversOf(flatpak),
                ElementsAre(disk.path("home/.var/app/org.example.a"), autostart, entry));
    EXPECT_THAT(leftoversOf("org.example.a"),
                ElementsAre(disk.path("home/.config/org.example.a"), disk.path("home/.local/share/org.example.a"),
                            disk.path("home/.local/state/org.example.a"), disk.path("home/.cache/org.example.a")));
}

TEST_F(ApplicationLeftoversTest, CountsNoPartOfTheApplicationAmongItsLeftovers)
{
    const FilePath program = addProgram("home/.local/share/studio/studio");
    addOwnEntry("studio", program.bytes());
    disk.addFile("home/.config/studio/settings");

    EXPECT_THAT(installed().leftoversOf(application("studio")), ElementsAre(disk.path("home/.config/studio")));
}

struct HostileNameCase
{
    const char *name;
    QByteArray id;
};

class HostileNameTest : public ApplicationLeftoversTest, public testing::WithParamInterface<HostileNameCase>
{
};

TEST_P(HostileNameTest, ReachesNothingThatIsNotItsOwn)
{
    for (const char *file : {"Documents/thesis", ".config/autostart/other.desktop", ".config/systemd/user/unit",
                             ".config/gtk-3.0/settings", ".config/file", ".local/share/applications/other.desktop",
                             ".local/share/keyrings/login", ".local/share/Trash/files/old", ".local/share/file",
                             ".cache/file", ".var/app/file", ".local/state/file"})
        disk.addFile(QByteArray("home/") + file);

    EXPECT_THAT(leftoversOf(GetParam().id), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Names, HostileNameTest,
                         testing::Values(HostileNameCase{"Empty", ""}, HostileNameCase{"FolderItself", "."},
                                         HostileNameCase{"FolderAbove", ".."},
                                         HostileNameCase{"Document", "../../Documents"},
                                         HostileNameCase{"Absolute", "/home"}, HostileNameCase{"Slash", "/"},
                                         HostileNameCase{"Nul", QByteArray("file\0", 5)},
                                         HostileNameCase{"Autostart", "autostart"},
                                         HostileNameCase{"Applications", "applications"},
                                         HostileNameCase{"Trash", "Trash"}, HostileNameCase{"Keyrings", "keyrings"},
                                         HostileNameCase{"Services", "systemd"}, HostileNameCase{"Toolkit", "gtk-3.0"}),
                         [](const auto &info) { return info.param.name; });

TEST_F(ApplicationLeftoversTest, ClearsAndUninstallsWhatHasAHostileNameWithoutTouchingAnythingElse)
{
    const QList<QByteArray> others = {"Documents/thesis",
                                      ".config/autostart/other.desktop",
                                      ".config/gtk-3.0/settings",
                                      ".local/share/applications/other.desktop",
                                      ".local/share/keyrings/login",
                                      ".cache/file"};
    for (const QByteArray &file : others)
        disk.addFile("home/" + file);
    const auto places = std::make_shared<LinuxPlaces>(files, noVariables);
    for (const QByteArray &name : QList<QByteArray>{"autostart", "applications", "keyrings", "gtk-3.0", "--all", "a b",
                                                    "\xff\xfe", "name..", "%2e%2e%2fDocuments"}) {
        const FilePath image = addProgram("home/Applications/" + name + ".AppImage");
        const FilePath entry = addOwnEntry(name, '"' + addProgram("home/.local/bin/" + name).bytes() + '"');
        const ApplicationInventory inventory(files, places, std::make_shared<LinuxInstalledApplications>(installed()));
        for (FoundApplication application : inventory.listedApplications()) {
            application.item.relatedFiles = inventory.findLeftovers(application);
            EXPECT_TRUE(inventory.clearData(application.item).isOk()) << name.constData();
            EXPECT_TRUE(inventory.uninstall(application).isOk()) << name.constData();
        }
        EXPECT_FALSE(itemExists(image)) << name.constData();
        EXPECT_FALSE(itemExists(entry)) << name.constData();
    }
    for (const QByteArray &file : others)
        EXPECT_TRUE(disk.exists("home/" + file)) << file.constData();
}

TEST_F(ApplicationLeftoversTest, LooksWhereTheUserHasMovedTheFoldersButNeverTakesTheHome)
{
    disk.addFile("home/settings/org.example.a/file");
    const auto variables = [this](const char *name) -> QByteArray {
        if (QByteArray(name) == "XDG_CONFIG_HOME")
            return disk.path("home/settings").bytes();
        // The folder above the home: its child of the user's name is the home itself.
        return QByteArray(name) == "XDG_DATA_HOME" ? disk.path().bytes() : QByteArray();
    };
    const ApplicationLeftovers leftovers(files, std::make_shared<LinuxPlaces>(files, noVariables), {}, variables);

    EXPECT_THAT(leftovers.of("org.example.a", Packaging::Any), ElementsAre(disk.path("home/settings/org.example.a")));
    EXPECT_THAT(leftovers.of("home", Packaging::Any), IsEmpty());
}

TEST_F(ApplicationLeftoversTest, KeepsWhatTheUserChangedOfTheSystemsEntries)
{
    addEntry("system", "writer", "/bin/true");
    disk.addFile("system/xdg/autostart/writer.desktop");
    const FilePath own = addOwnEntry("writer", "/bin/true");
    disk.addFile("home/.config/autostart/writer.desktop", "[Desktop Entry]\nHidden=true\n");
    disk.addFile("home/.config/writer/settings");
    const QByteArray systemConfig = disk.path("system/xdg").bytes();
    const auto variables = [systemConfig](const char *name) {
        return QByteArray(name) == "XDG_CONFIG_DIRS" ? systemConfig : QByteArray();
    };
    const ApplicationLeftovers leftovers(files, std::make_shared<LinuxPlaces>(files, noVariables),
                                         {disk.path("system/applications")}, variables);

    EXPECT_THAT(leftovers.of("writer", Packaging::Any), ElementsAre(disk.path("home/.config/writer")));
}

TEST(ApplicationsOnASilentVolumeTest, HoldUpNeitherTheSearchForTheirLeftoversNorTheirRemoval)
{
    const PretendMachine machine;
    const FilePath home = machine.files->homeDirectory();
    ListedApplication application;
    application.id = "org.example.a";
    application.removal = ApplicationRemoval::Trash;
    application.parts = {home.appending("Programs/a.AppImage")};
    for (const char *place : {".cache/org.example.a/file", ".config/org.example.a/file", "Programs/a.AppImage"})
        machine.files->addFile(home.appending(place), 1);
    for (const char *folder : {".cache", "Programs"}) {
        machine.files->addVolume(home.appending(folder));
        machine.files->fallSilent(home.appending(folder));
    }
    const LinuxInstalledApplications installed(machine.files, machine.places, machine.processes, {}, noVariables);

    EXPECT_THAT(installed.leftoversOf(application), ElementsAre(home.appending(".config/org.example.a")));
    EXPECT_EQ(installed.uninstall(application).failure().kind, Failure::Kind::NotAnswering);
    EXPECT_THAT(machine.files->heldUp(), IsEmpty());
}
