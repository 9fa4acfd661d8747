#include "Fakes/PretendMachine.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Places/LinuxPlaces.h"
#include "Platform/Linux/TemporaryHome.h"
#include "Services/ApplicationInventory.h"
#include "Utilities/PropertyList.h"
#include "Values/FileName.h"

#include <gmock/gmock.h>

#include <algorithm>

#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Bundles and their leftovers in a home that really stands on a disk.
class ApplicationsOnDiskTest : public testing::Test
{
protected:
    FilePath addBundle(const QByteArray &name, const QString &identifier = {}, const QString &version = {}) const
    {
        const QByteArray bundle = "home/Applications/" + name;
        disk.addFile(bundle + "/Contents/MacOS/program", QByteArray(8000, 'x'));
        PropertyList information;
        if (!identifier.isEmpty())
            information.setString(u"CFBundleIdentifier"_qs, identifier);
        if (!version.isEmpty())
            information.setString(u"CFBundleShortVersionString"_qs, version);
        disk.addFile(bundle + "/Contents/Info.plist", information.written(PropertyList::Form::Binary));
        return disk.path(bundle);
    }

    [[nodiscard]] QList<FilePath> bundles() const
    {
        QList<FilePath> paths;
        for (const FoundApplication &each : inventory.bundlesIn(inventory.roots().last()))
            paths.append(each.item.path);
        return paths;
    }

    /// As a scan has it.
    [[nodiscard]] FoundApplication application(const FilePath &bundle) const
    {
        const QList<FoundApplication> listed = inventory.bundlesIn(bundle.deletingLastPathComponent());
        const auto named
            = std::ranges::find_if(listed, [&](const FoundApplication &each) { return each.item.path == bundle; });
        EXPECT_NE(named, listed.end()) << bundle.bytes().constData();
        FoundApplication found = inventory.described(named == listed.end() ? FoundApplication() : *named);
        found.item.relatedFiles = inventory.findLeftovers(found);
        return found;
    }
    [[nodiscard]] AppItem item(const FilePath &bundle) const { return application(bundle).item; }

    [[nodiscard]] FilePath library(const QByteArray &place) const { return disk.path("home/Library/" + place); }

    void addPainter() const
    {
        addBundle("Painter.app", u"com.example.painter"_qs, u"4.2"_qs);
        disk.addFile("home/Library/Application Support/Painter/file", QByteArray(5000, 'x'));
        disk.addFile("home/Library/Caches/com.example.painter/file", QByteArray(5000, 'x'));
        disk.addFile("home/Library/Preferences/com.example.painter.plist");
        disk.addFile("home/Library/Containers/com.example.painter/file");
    }

    TemporaryHome disk;
    std::shared_ptr<LinuxFileManager> files = std::make_shared<LinuxFileManager>(disk.environment());
    ApplicationInventory inventory{files,
                                   std::make_shared<LinuxPlaces>(files, [](const char *) { return QByteArray(); }),
                                   std::make_shared<PretendInstalledApplications>()};
};

} // namespace

TEST_F(ApplicationsOnDiskTest, FindsBundlesByTheirExactExtension)
{
    const FilePath painter = addBundle("Painter.app");
    addBundle("Loud.APP");
    addBundle(".Hidden.app");
    addBundle("Games/Nested.app");

    EXPECT_THAT(bundles(), ElementsAre(painter));
}

TEST_F(ApplicationsOnDiskTest, ReadsABundleAndFindsItsLeftovers)
{
    addPainter();

    const AppItem painter = item(bundles().first());

    EXPECT_EQ(painter.name, u"Painter"_qs);
    EXPECT_EQ(painter.bundleIdentifier, u"com.example.painter"_qs);
    EXPECT_EQ(painter.version, u"4.2"_qs);
    EXPECT_THAT(painter.relatedFiles,
                ElementsAre(library("Application Support/Painter"), library("Caches/com.example.painter"),
                            library("Preferences/com.example.painter.plist"),
                            library("Containers/com.example.painter")));
}

TEST_F(ApplicationsOnDiskTest, TakesAFolderOfTheVeryNameBeforeTheList)
{
    const FilePath bundle = addBundle("A.app", u"org.example.a"_qs);
    disk.addFile("home/Library/Preferences/org.example.a.plist");
    disk.addFolder("home/Library/Preferences/org.example.a");

    EXPECT_THAT(item(bundle).relatedFiles, ElementsAre(library("Preferences/org.example.a")));
}

TEST_F(ApplicationsOnDiskTest, UninstallsIntoTheTrashAndDeletesTheLeftovers)
{
    addPainter();
    disk.addFile("home/Library/Caches/com.example.other/file");

    ASSERT_TRUE(inventory.uninstall(application(disk.path("home/Applications/Painter.app"))).isOk());

    EXPECT_THAT(disk.names("home/Applications"), IsEmpty());
    EXPECT_THAT(disk.names("home/.local/share/Trash/files"), ElementsAre("Painter.app"));
    EXPECT_THAT(disk.names("home/Library/Caches"), ElementsAre("com.example.other"));
    EXPECT_THAT(disk.names("home/Library/Preferences"), IsEmpty());
    EXPECT_THAT(disk.names("home/Library/Containers"), IsEmpty());
    EXPECT_THAT(disk.names("home/Library/Application Support"), IsEmpty());
}

TEST_F(ApplicationsOnDiskTest, RemovesTheLeftoversOfABundleThatHasGoneAndPassesOverOneThatHas)
{
    addPainter();
    const FoundApplication painter = application(bundles().first());
    ASSERT_TRUE(files->removeItem(painter.item.path).isOk());
    ASSERT_TRUE(files->removeItem(library("Caches/com.example.painter")).isOk());

    EXPECT_TRUE(inventory.uninstall(painter).isOk());

    EXPECT_THAT(disk.names("home/Library/Containers"), IsEmpty());
    EXPECT_TRUE(inventory.uninstall(painter).isOk());
}

TEST_F(ApplicationsOnDiskTest, ClearsTheDataAndTellsWhatWasRemoved)
{
    addPainter();
    const AppItem painter = item(bundles().first());
    ASSERT_TRUE(files->removeItem(library("Containers/com.example.painter")).isOk());

    const auto cleared = inventory.clearData(painter);

    ASSERT_TRUE(cleared.isOk());
    EXPECT_EQ(cleared.value().count, 3);
    EXPECT_EQ(cleared.value().size, 16384);
    EXPECT_TRUE(itemExists(painter.path));
    EXPECT_THAT(disk.names("home/Library/Caches"), IsEmpty());
    EXPECT_THAT(disk.names("home/.local/share/Trash"), IsEmpty());
}

TEST_F(ApplicationsOnDiskTest, TrashesALinkToABundleAndNotWhatItLeadsTo)
{
    disk.addFile("elsewhere/Contents/MacOS/program", QByteArray(9000, 'x'));
    PropertyList information;
    information.setString(u"CFBundleIdentifier"_qs, u"org.example.link"_qs);
    disk.addFile("elsewhere/Contents/Info.plist", information.written(PropertyList::Form::Xml));
    disk.addFolder("home/Applications");
    disk.addLink("home/Applications/Linked.app", disk.path("elsewhere").bytes());

    ASSERT_EQ(bundles().size(), 1);
    const FoundApplication linked = application(disk.path("home/Applications/Linked.app"));
    EXPECT_EQ(linked.item.bundleIdentifier, u"org.example.link"_qs);
    ASSERT_TRUE(inventory.uninstall(linked).isOk());

    EXPECT_THAT(bundles(), IsEmpty());
    EXPECT_TRUE(disk.exists("elsewhere/Contents/MacOS/program"));
}

TEST_F(ApplicationsOnDiskTest, PassesOverABundleThatIsALinkToNothing)
{
    disk.addFolder("home/Applications");
    disk.addLink("home/Applications/Dangling.app", disk.path("nowhere").bytes());
    const FilePath dangling = disk.path("home/Applications/Dangling.app");
    ASSERT_THAT(bundles(), testing::ElementsAre(dangling));

    EXPECT_TRUE(inventory.uninstall(application(dangling)).isOk());

    EXPECT_THAT(bundles(), testing::ElementsAre(dangling));
}

TEST_F(ApplicationsOnDiskTest, DeletesALeftoverThatIsALinkAndNotWhatItLeadsTo)
{
    const FilePath bundle = addBundle("A.app", u"org.example.a"_qs);
    disk.addFile("home/Documents/thesis");
    disk.addFolder("home/Library/Caches");
    disk.addLink("home/Library/Caches/org.example.a", disk.path("home/Documents").bytes());

    const auto cleared = inventory.clearData(item(bundle));

    ASSERT_TRUE(cleared.isOk());
    EXPECT_EQ(cleared.value().count, 1);
    EXPECT_TRUE(disk.exists("home/Documents/thesis"));
    EXPECT_FALSE(disk.exists("home/Library/Caches/org.example.a"));
}

TEST_F(ApplicationsOnDiskTest, WorksWhereTheFoldersThemselvesAreLinks)
{
    disk.addFile("data/Painter.app/Contents/MacOS/program");
    disk.addLink("home/Applications", disk.path("data").bytes());
    disk.addFile("caches/Painter/file");
    disk.addFolder("home/Library");
    disk.addLink("home/Library/Application Support", disk.path("caches").bytes());

    ASSERT_EQ(bundles().size(), 1);
    ASSERT_TRUE(inventory.uninstall(application(bundles().first())).isOk());

    EXPECT_FALSE(disk.exists("data/Painter.app"));
    EXPECT_FALSE(disk.exists("caches/Painter"));
}

TEST_F(ApplicationsOnDiskTest, IsNeverHeldUpByInformationThatIsNoFile)
{
    disk.addFolder("home/Applications/Folder.app/Contents/Info.plist");
    disk.addFolder("home/Applications/Pipe.app/Contents");
    ASSERT_EQ(::mkfifo(disk.path("home/Applications/Pipe.app/Contents/Info.plist").bytes().constData(), 0600), 0);
    disk.addFile("home/Applications/Huge.app/Contents/Info.plist");
    ASSERT_EQ(
        ::truncate(disk.path("home/Applications/Huge.app/Contents/Info.plist").bytes().constData(), off_t(1) << 40), 0);
    disk.addFile("home/Applications/Deep.app/Contents/Info.plist",
                 "<plist><dict><key>a</key>" + QByteArray("<array>").repeated(100000)
                     + QByteArray("</array>").repeated(100000) + "</dict></plist>");
    disk.addFolder("home/Applications/Device.app/Contents");
    disk.addLink("home/Applications/Device.app/Contents/Info.plist", "/dev/zero");
    disk.addFolder("home/Applications/Loop.app/Contents");
    disk.addLink("home/Applications/Loop.app/Contents/Info.plist", "Info.plist");

    ASSERT_EQ(bundles().size(), 6);
    for (const FilePath &bundle : bundles()) {
        EXPECT_EQ(item(bundle).bundleIdentifier, QString());
        EXPECT_EQ(item(bundle).version, QString());
    }
}

TEST_F(ApplicationsOnDiskTest, ReachesNothingOutsideThroughAHostileIdentifier)
{
    disk.addFile("home/Documents/thesis");
    disk.addFile("home/Library/Caches/other/file");
    for (const char *identifier : {"..", ".", "../../Documents", "/", "other/file", "../"}) {
        const FilePath bundle = addBundle("Evil.app", QString::fromUtf8(identifier));
        EXPECT_THAT(item(bundle).relatedFiles, IsEmpty()) << identifier;
        ASSERT_TRUE(inventory.uninstall(application(bundle)).isOk());
    }
    EXPECT_TRUE(disk.exists("home/Documents/thesis"));
    EXPECT_TRUE(disk.exists("home/Library/Caches/other/file"));
}

TEST_F(ApplicationsOnDiskTest, KeepsThisProgramsOwnHistory)
{
    const FilePath bundle = addBundle("Quillmere.app", u"com.veltrane.quillmere"_qs);
    disk.addFile("home/Library/Application Support/Quillmere/history.json");

    EXPECT_THAT(item(bundle).relatedFiles, IsEmpty());
}

TEST_F(ApplicationsOnDiskTest, FindsTheLeftoversOfANameThatIsNotUtf8)
{
    const FilePath bundle = addBundle("Caf\xe9.app");
    disk.addFile("home/Library/Application Support/Caf\xe9/file");

    EXPECT_EQ(item(bundle).name, u"Caf\xfffd"_qs);
    ASSERT_EQ(item(bundle).relatedFiles.size(), 1);
    EXPECT_TRUE(inventory.uninstall(application(bundle)).isOk());
    EXPECT_THAT(disk.names("home/Library/Application Support"), IsEmpty());
}
