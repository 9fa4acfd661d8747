#include "App/ScreensFixture.h"
#include "Fakes/Gate.h"
#include "Utilities/PropertyList.h"

#include <QTest>

using namespace Quillmere;
using enum QAccessible::Role;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ApplicationsScreenTest : public ScreensFixture
{
protected:
    ApplicationsScreenTest() { machine.bundles->main = FilePath("/opt/Quillmere.app"); }
    // Colours change for a moment after a click, and Qt complains of a window that goes in the middle of that.
    ~ApplicationsScreenTest() override { QTest::qWait(longestColorChange); }

    void addPainter() const
    {
        machine.addBundle(FilePath("/Applications/Painter.app"), 5'000'000, u"com.example.painter"_qs, u"4.2"_qs);
        machine.files->addFile(caches.appending("data"), 1'000'000);
    }

    /// Opens the screen and waits for its list.
    Person openList()
    {
        const Person person = open(SidebarTab::Applications);
        EXPECT_TRUE(person.seesNo(Dialog, u"Scanning Applications"_qs));
        return person;
    }

    static constexpr int longestColorChange = 300; ///< Milliseconds.
    const FilePath caches = FilePath("/home/ada/Library/Caches/com.example.painter");
};

} // namespace

TEST_F(ApplicationsScreenTest, InvitesToScanWhereThereIsNothing)
{
    const Person person = openList();

    EXPECT_TRUE(person.reads(u"No applications scanned"_qs));
    EXPECT_TRUE(person.reads(u"Select an application to view uninstallation options."_qs));
    addPainter();
    ASSERT_TRUE(person.click(Button, u"Scan Apps"_qs));
    EXPECT_TRUE(person.sees(ListItem, u"Painter, 6 MB"_qs));
    EXPECT_TRUE(person.readsNo(u"No applications scanned"_qs));
}

TEST_F(ApplicationsScreenTest, ScansByItselfAndCanBeCancelled)
{
    addPainter();
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const Person person = open(SidebarTab::Applications);

    ASSERT_TRUE(person.sees(Dialog, u"Scanning Applications"_qs));
    EXPECT_TRUE(person.sees(StaticText, u"Painter"_qs));
    ASSERT_TRUE(person.click(Button, u"Cancel"_qs));
    gate.open();

    EXPECT_TRUE(person.seesNo(Dialog, u"Scanning Applications"_qs));
    EXPECT_TRUE(person.sees(Button, u"Scan Apps"_qs));
}

TEST_F(ApplicationsScreenTest, ShowsWhatIsKnownOfTheChosenApplication)
{
    addPainter();
    machine.addBundle(FilePath("/Applications/Alone.app"), 10);
    const Person person = openList();

    ASSERT_TRUE(person.click(ListItem, u"Painter, 6 MB"_qs));
    EXPECT_TRUE(person.sees(StaticText, u"Version: 4.2"_qs));
    EXPECT_TRUE(person.sees(StaticText, u"6 MB"_qs));
    EXPECT_TRUE(person.reads(u"Leftover Files Discovered"_qs));
    EXPECT_TRUE(person.sees(ListItem, u"com.example.painter, /home/ada/Library/Caches/com.example.painter"_qs));
    EXPECT_TRUE(person.sees(Button, u"Clear Application Data"_qs));
    EXPECT_TRUE(person.readsNo(u"Select an application"_qs));

    ASSERT_TRUE(person.click(ListItem, u"Alone, 10 bytes"_qs));
    EXPECT_TRUE(person.sees(StaticText, u"Version: "_qs));
    EXPECT_TRUE(person.reads(u"No related leftovers found. The app is self-contained."_qs));
    EXPECT_TRUE(person.seesNo(Button, u"Clear Application Data"_qs));
    EXPECT_TRUE(person.canUse(Button, u"Uninstall Completely"_qs));
}

TEST_F(ApplicationsScreenTest, AsksBeforeItUninstalls)
{
    addPainter();
    const Person person = openList();
    ASSERT_TRUE(person.click(ListItem, u"Painter, 6 MB"_qs));

    ASSERT_TRUE(person.click(Button, u"Uninstall Completely"_qs));
    ASSERT_TRUE(person.sees(Dialog, u"Confirm Uninstall"_qs));
    EXPECT_TRUE(person.reads(
        u"Painter: The application and all discovered leftover folders and preferences will be deleted."_qs));
    ASSERT_TRUE(person.click(Button, u"Cancel"_qs));
    EXPECT_TRUE(person.seesNo(Dialog, u"Confirm Uninstall"_qs));
    EXPECT_THAT(machine.files->trashed(), IsEmpty());

    ASSERT_TRUE(person.click(Button, u"Uninstall Completely"_qs));
    ASSERT_TRUE(person.click(Button, u"Uninstall"_qs));

    EXPECT_TRUE(person.seesNo(ListItem, u"Painter, 6 MB"_qs));
    EXPECT_TRUE(person.reads(u"Select an application to view uninstallation options."_qs));
    EXPECT_THAT(machine.files->trashed(), ElementsAre(FilePath("/Applications/Painter.app")));
    EXPECT_THAT(machine.files->removed(), ElementsAre(caches));
    EXPECT_EQ(HistoryService(machine.files).loadHistory().size(), 1);
}

TEST_F(ApplicationsScreenTest, ClearsTheDataAndTakesTheButtonAway)
{
    addPainter();
    const Person person = openList();
    ASSERT_TRUE(person.click(ListItem, u"Painter, 6 MB"_qs));

    ASSERT_TRUE(person.click(Button, u"Clear Application Data"_qs));
    ASSERT_TRUE(person.sees(Dialog, u"Confirm Clear Data"_qs));
    EXPECT_TRUE(person.reads(u"Painter: Settings, caches, and configuration directories will be deleted, but the "
                             u"application itself will be kept."_qs));
    EXPECT_TRUE(person.readsNo(u"This application is running."_qs));
    ASSERT_TRUE(person.click(Button, u"Clear Data"_qs));

    EXPECT_TRUE(person.sees(ListItem, u"Painter, 5 MB"_qs));
    EXPECT_TRUE(person.seesNo(Button, u"Clear Application Data"_qs));
    EXPECT_TRUE(person.reads(u"No related leftovers found."_qs));
    EXPECT_THAT(machine.files->removed(), ElementsAre(caches));
}

TEST_F(ApplicationsScreenTest, StandsUnderAnOverlayWhoseCancelDoesNothingWhileItRemoves)
{
    addPainter();
    const Gate gate;
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });
    const Person person = openList();
    ASSERT_TRUE(person.click(ListItem, u"Painter, 6 MB"_qs));
    ASSERT_TRUE(person.click(Button, u"Clear Application Data"_qs));
    ASSERT_TRUE(person.click(Button, u"Clear Data"_qs));

    ASSERT_TRUE(person.sees(Dialog, u"Uninstalling App..."_qs));
    EXPECT_TRUE(person.reads(u"Removing all associated configuration folders..."_qs));
    EXPECT_NE(person.findWhatHolds(ProgressBar, u"50%"_qs), nullptr);
    EXPECT_FALSE(person.canUse(Button, u"Cancel"_qs));
    person.press(Qt::Key_Escape);
    EXPECT_TRUE(person.sees(Dialog, u"Uninstalling App..."_qs));
    gate.open();

    EXPECT_TRUE(person.seesNo(Dialog, u"Uninstalling App..."_qs));
    EXPECT_TRUE(person.sees(ListItem, u"Painter, 5 MB"_qs));
}

TEST_F(ApplicationsScreenTest, BlocksTrafficAndAllowsItAgain)
{
    machine.installTrafficFilter();
    addPainter();
    const Person person = openList();
    ASSERT_TRUE(person.click(ListItem, u"Painter, 6 MB"_qs));
    EXPECT_TRUE(person.reads(u"Traffic is currently allowed for this app."_qs));
    EXPECT_TRUE(showsSymbol(u"wifi"_qs));
    EXPECT_FALSE(showsSymbol(u"wifi.slash"_qs));

    ASSERT_TRUE(person.click(Button, u"Block Traffic"_qs));
    ASSERT_TRUE(person.sees(Button, u"Allow Traffic"_qs));
    EXPECT_TRUE(person.reads(u"The Quillmere content filter blocks this app's outbound network traffic."_qs));
    EXPECT_TRUE(showsSymbol(u"wifi.slash"_qs));
    EXPECT_FALSE(showsSymbol(u"wifi"_qs));

    ASSERT_TRUE(person.click(Button, u"Allow Traffic"_qs));
    EXPECT_TRUE(person.sees(Button, u"Block Traffic"_qs));
}

TEST_F(ApplicationsScreenTest, SaysWhyARuleWasNotAppliedUntilThatIsRead)
{
    machine.addBundle(FilePath("/Applications/Alone.app"), 10);
    const Person person = openList();
    ASSERT_TRUE(person.click(ListItem, u"Alone, 10 bytes"_qs));

    ASSERT_TRUE(person.click(Button, u"Block Traffic"_qs));
    ASSERT_TRUE(person.sees(Dialog, u"Traffic rule was not applied"_qs));
    EXPECT_TRUE(person.reads(u"This application has no bundle identifier"_qs));
    ASSERT_TRUE(person.click(Button, u"OK"_qs));
    EXPECT_TRUE(person.seesNo(Dialog, u"Traffic rule was not applied"_qs));

    ASSERT_TRUE(person.click(Button, u"Block Traffic"_qs));
    ASSERT_TRUE(person.sees(Dialog, u"Traffic rule was not applied"_qs));
    person.press(Qt::Key_Escape);
    EXPECT_TRUE(person.seesNo(Dialog, u"Traffic rule was not applied"_qs));
}

TEST_F(ApplicationsScreenTest, WarnsWhereFilesWouldGoFromUnderARunningApplication)
{
    addPainter();
    RunningApplication running;
    running.processIdentifier = 7;
    running.bundleIdentifier = u"com.example.painter"_qs;
    machine.workspace->start(running);
    const Person person = openList();

    ASSERT_TRUE(person.click(ListItem, u"Painter, 6 MB, Running"_qs));
    ASSERT_TRUE(person.click(Button, u"Clear Application Data"_qs));
    EXPECT_TRUE(person.reads(u"This application is running. It would lose files that it is using now."_qs));
    ASSERT_TRUE(person.click(Button, u"Clear Data"_qs));

    EXPECT_TRUE(person.sees(ListItem, u"Painter, 5 MB, Running"_qs));
}

TEST_F(ApplicationsScreenTest, SaysWhyWhatBelongsToTheSystemCannotBeUninstalled)
{
    ListedApplication writer;
    writer.id = "writer";
    writer.name = u"Writer"_qs;
    writer.version = u"7.4"_qs;
    writer.size = 96'000'000;
    writer.removal = ApplicationRemoval::System;
    machine.applications->add(writer);
    const Person person = openList();

    ASSERT_TRUE(person.click(ListItem, u"Writer, 96 MB"_qs));

    EXPECT_TRUE(person.sees(StaticText, u"Version: 7.4"_qs));
    EXPECT_FALSE(person.canUse(Button, u"Uninstall Completely"_qs));
    EXPECT_TRUE(person.reads(u"This application belongs to the system. Its package manager alone can remove it."_qs));
}

TEST_F(ApplicationsScreenTest, IsUsedByTheKeyboardAlone)
{
    machine.addBundle(FilePath("/Applications/Largest.app"), 300);
    machine.addBundle(FilePath("/Applications/Middle.app"), 200);
    machine.addBundle(FilePath("/Applications/Smallest.app"), 100);
    const Person person = openList();

    ASSERT_TRUE(person.tabTo(u"Largest, 300 bytes"_qs));
    person.press(Qt::Key_Space);
    EXPECT_TRUE(person.sees(Button, u"Uninstall Completely"_qs));
    person.press(Qt::Key_Down);
    EXPECT_TRUE(person.isGivenTheKeyboardAt(u"Middle, 200 bytes"_qs));
    EXPECT_TRUE(person.sees(Heading, u"Middle"_qs));
    person.press(Qt::Key_End);
    EXPECT_TRUE(person.isGivenTheKeyboardAt(u"Smallest, 100 bytes"_qs));
    person.press(Qt::Key_Up);
    EXPECT_TRUE(person.isGivenTheKeyboardAt(u"Middle, 200 bytes"_qs));

    // The list is one stop: the next is on the right.
    person.press(Qt::Key_Tab);
    EXPECT_EQ(person.focusedName(), u"Block Traffic"_qs);
    person.press(Qt::Key_Tab);
    ASSERT_EQ(person.focusedName(), u"Uninstall Completely"_qs);
    person.press(Qt::Key_Return);
    ASSERT_TRUE(person.sees(Dialog, u"Confirm Uninstall"_qs));
    ASSERT_TRUE(person.tabTo(u"Uninstall"_qs));
    person.press(Qt::Key_Space);
    EXPECT_TRUE(person.seesNo(ListItem, u"Middle, 200 bytes"_qs));
    EXPECT_THAT(machine.files->trashed(), ElementsAre(FilePath("/Applications/Middle.app")));
}

TEST_F(ApplicationsScreenTest, FollowsAChangeOfLanguage)
{
    addPainter();
    const Person person = openList();
    ASSERT_TRUE(person.click(ListItem, u"Painter, 6 MB"_qs));

    app->localizer().setLanguage(Language::Spanish);

    EXPECT_TRUE(person.sees(StaticText, u"Versión: 4.2"_qs));
    EXPECT_TRUE(person.sees(Button, u"Desinstalar por completo"_qs));
}
