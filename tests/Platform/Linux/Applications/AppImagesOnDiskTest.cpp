#include "Platform/Linux/Applications/InstalledApplicationsFixture.h"

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

class AppImagesTest : public InstalledApplicationsFixture
{
};

} // namespace

TEST_F(AppImagesTest, ListsAppImagesOfTheUsualFoldersWhereTheyAreFilesThemselves)
{
    const FilePath one = addProgram("home/Applications/Sketch-1.2.AppImage");
    const FilePath two = addProgram("home/.local/bin/tool.appimage");
    addProgram("home/bin/Three.AppImage");
    addProgram("home/Downloads/Fresh.AppImage");
    addProgram("home/Applications/games/Deep.AppImage");
    addProgram("home/Applications/.Hidden.AppImage");
    disk.addFolder("home/Applications/Folder.AppImage");
    disk.addLink("home/bin/Link.AppImage", one.bytes());

    const QList<ListedApplication> found = installed().applications();

    ASSERT_EQ(found.size(), 3);
    EXPECT_EQ(found.at(0).name, u"Sketch-1.2"_qs);
    EXPECT_THAT(found.at(0).parts, ElementsAre(one));
    EXPECT_EQ(found.at(1).location, two);
    EXPECT_EQ(found.at(2).id, "Three");
}

TEST_F(AppImagesTest, KnowsAnAppImageByItsEntryAndTrashesBoth)
{
    const FilePath program = addProgram("home/Applications/Sketch-1.2.AppImage");
    const FilePath entry = addOwnEntry("org.example.sketch", program.bytes() + " %U");

    const QList<ListedApplication> found = installed().applications();

    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.first().name, u"The org.example.sketch"_qs);
    EXPECT_EQ(found.first().icon, u"org.example.sketch"_qs);
    EXPECT_THAT(found.first().parts, ElementsAre(program, entry));
    ASSERT_TRUE(installed().uninstall(found.first()).isOk());
    EXPECT_FALSE(disk.exists("home/Applications/Sketch-1.2.AppImage"));
    EXPECT_THAT(disk.names("home/.local/share/Trash/files"),
                UnorderedElementsAre("Sketch-1.2.AppImage", "org.example.sketch.desktop"));
    EXPECT_THAT(installed().applications(), IsEmpty());
}

TEST_F(AppImagesTest, HidesNoApplicationBehindAnAppImagesFileName)
{
    const FilePath image = addProgram("home/Applications/painter.AppImage");
    const FilePath entry = addOwnEntry("painter", addProgram("home/.local/bin/painter").bytes());
    disk.addFile("home/.config/painter/settings");

    const QList<ListedApplication> found = installed().applications();

    ASSERT_EQ(found.size(), 2);
    EXPECT_THAT(found.at(0).parts, ElementsAre(image));
    EXPECT_EQ(found.at(0).identifier, QString());
    EXPECT_THAT(installed().leftoversOf(found.at(0)), IsEmpty());
    EXPECT_THAT(found.at(1).parts, ElementsAre(disk.path("home/.local/bin/painter"), entry));
    EXPECT_THAT(installed().leftoversOf(found.at(1)), ElementsAre(disk.path("home/.config/painter")));
}

TEST_F(AppImagesTest, KeepsTheDataOfAPackageBesideAnAppImageOfItsName)
{
    const FilePath image = addProgram("home/Applications/writer.AppImage");
    const FilePath owned = addEntry("system", "writer", "/bin/true");
    const FilePath own = addOwnEntry("writer", image.bytes());
    disk.addFile("home/.config/writer/settings");
    packageOwns(owned);

    const QList<ListedApplication> found = installed().applications();

    ASSERT_EQ(found.size(), 2);
    EXPECT_THAT(found.at(0).parts, ElementsAre(image, own));
    EXPECT_THAT(installed().leftoversOf(found.at(0)), IsEmpty());
    EXPECT_EQ(found.at(1).removal, ApplicationRemoval::System);
    EXPECT_THAT(installed().leftoversOf(found.at(1)), ElementsAre(disk.path("home/.config/writer")));
}

TEST_F(AppImagesTest, KeepsTheLeftoversOfAnAppImageThatNobodyElseIsNamedAfter)
{
    addProgram("home/Applications/painter.AppImage");
    disk.addFile("home/.config/painter/settings");

    EXPECT_THAT(installed().leftoversOf(application("painter")), ElementsAre(disk.path("home/.config/painter")));
    EXPECT_EQ(application("painter").identifier, u"painter"_qs);
}

TEST_F(AppImagesTest, KeepsTheDataWhereTwoAppImagesAreNamedAlike)
{
    addProgram("home/Applications/painter.AppImage");
    addProgram("home/bin/painter.appimage");
    disk.addFile("home/.config/painter/settings");

    const QList<ListedApplication> found = installed().applications();

    ASSERT_EQ(found.size(), 2);
    for (const ListedApplication &image : found)
        EXPECT_THAT(installed().leftoversOf(image), IsEmpty());
}

TEST_F(AppImagesTest, TakesAllEntriesOfAnAppImageWithIt)
{
    const FilePath image = addProgram("home/Applications/Sketch.AppImage");
    const FilePath entry = addOwnEntry("sketch", image.bytes());
    const FilePath setup = addOwnEntry("sketch-setup", image.bytes() + " --setup");

    EXPECT_THAT(application("sketch").parts, ElementsAre(image, entry, setup));
    EXPECT_THAT(installed().applications(), testing::SizeIs(1));
}

TEST_F(AppImagesTest, ListsAnAppImageThatAnEntryStartsFromAnotherFolder)
{
    const FilePath image = addProgram("home/AppImages/Sketch.AppImage");
    const FilePath entry = addOwnEntry("sketch", image.bytes());
    const FilePath outside = addProgram("elsewhere/Shared.AppImage");
    const FilePath outsiders = addOwnEntry("shared", outside.bytes());

    EXPECT_THAT(application("sketch").parts, ElementsAre(image, entry));
    EXPECT_EQ(application("sketch").location, image);
    EXPECT_THAT(application("shared").parts, ElementsAre(outsiders));
}

TEST_F(AppImagesTest, LeavesAFolderInWhichAnotherEntrysAppImageLies)
{
    const FilePath one = addProgram("home/Applications/Suite/writer");
    const FilePath image = addProgram("home/Applications/Suite/Painter.AppImage");
    const FilePath entry = addOwnEntry("writer", one.bytes());
    addOwnEntry("painter", image.bytes());

    EXPECT_THAT(application("writer").parts, ElementsAre(entry));
}
