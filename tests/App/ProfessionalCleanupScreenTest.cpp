#include "App/ScreensFixture.h"
#include "Fakes/Gate.h"

using namespace Quillmere;
using enum QAccessible::Role;

namespace {

const QString codeRow = u"Visual Studio Code caches"_qs;
const QString javaRow = u"Java, Gradle and Maven caches"_qs;
const QString toolsRow = u"Installed developer tools, SDKs and runtimes"_qs;
const QString systemRow = u"System Caches"_qs;

class ProfessionalCleanupScreenTest : public ScreensFixture
{
protected:
    void addTree(const QByteArray &path, qint64 bytes)
    {
        const FilePath folder = path.startsWith('/') ? FilePath(path) : FilePath("/home/ada").appending(path);
        machine.files->addFile(folder.appending("data"), bytes);
    }

    void addTools()
    {
        addTree("Library/Application Support/Code/Cache", 1'500'000);
        addTree(".gradle/caches", 2'000'000);
        addTree(".nvm", 3'000'000);
        addTree("/Library/Caches/daemon", 500'000);
        machine.files->refuse(FilePath("/Library/Caches"), Failure::Kind::NoPermission);
    }

    Person openScanned()
    {
        Person person = open(SidebarTab::ProfessionalCleanup);
        EXPECT_TRUE(person.click(Button, u"Start Scan"_qs));
        EXPECT_TRUE(person.seesNo(Dialog, u"Scanning..."_qs));
        EXPECT_TRUE(person.sees(Button, u"Clean"_qs));
        return person;
    }
};

} // namespace

TEST_F(ProfessionalCleanupScreenTest, WarnsAndInvitesToScan)
{
    const Person person = open(SidebarTab::ProfessionalCleanup);

    EXPECT_TRUE(person.sees(Heading, u"Professional Cleanup"_qs));
    EXPECT_TRUE(person.reads(u"Professional Cleanup Mode. Clearing developer databases, mail copies, or system folders "
                             "may require full rebuilds or elevated authorization. Confirm actions carefully."_qs));
    EXPECT_TRUE(person.reads(u"Scan advanced user caches, Xcode derived data, and system logs."_qs));
    EXPECT_TRUE(person.sees(Button, u"Start Scan"_qs));
    EXPECT_TRUE(person.seesNo(Button, u"Clean"_qs));
    EXPECT_TRUE(person.readsNo(u"selected"_qs));
}

TEST_F(ProfessionalCleanupScreenTest, ShowsWhatWasFoundWithTheSafeGroupsAloneSelected)
{
    addTools();
    const Person person = openScanned();

    EXPECT_TRUE(person.reads(u"1.5 MB selected"_qs));
    EXPECT_TRUE(person.find(CheckBox, codeRow)->state().checked);
    EXPECT_FALSE(person.find(CheckBox, javaRow)->state().checked);
    EXPECT_FALSE(person.find(CheckBox, systemRow)->state().checked);
    EXPECT_TRUE(person.reads(u"Professional Cleanup Mode"_qs));
    EXPECT_TRUE(person.seesNo(Button, u"Start Scan"_qs));
}

TEST_F(ProfessionalCleanupScreenTest, SaysOfTheInventoryThatItIsOnlyInstalledAndLetsNobodySelectIt)
{
    addTools();
    const Person person = openScanned();

    EXPECT_TRUE(person.reads(u"Installed only — not selected for cleanup"_qs));
    EXPECT_FALSE(person.canUse(CheckBox, toolsRow));
    ASSERT_TRUE(person.click(Button, u"Select All"_qs));
    EXPECT_FALSE(person.find(CheckBox, toolsRow)->state().checked);
    EXPECT_TRUE(person.find(CheckBox, systemRow)->state().checked);
    EXPECT_TRUE(person.reads(u"4 MB selected"_qs));
}

TEST_F(ProfessionalCleanupScreenTest, OpensTheInventoryAndListsWhatIsInstalled)
{
    addTools();
    machine.files->addFile(FilePath("/usr/bin/python3"), 10);
    machine.files->makeExecutable(FilePath("/usr/bin/python3"));
    machine.processes->answer(u"/usr/bin/python3"_qs, "Python <b>3.13</b>\u202e\n");
    const Person person = openScanned();

    ASSERT_TRUE(person.tabToWhatHolds(toolsRow + u", "_qs));
    person.press(Qt::Key_Space);

    EXPECT_TRUE(person.reads(u"Node.js versions"_qs));
    EXPECT_TRUE(person.reads(u"Python — Python <b>3.13</b>\uFFFD"_qs));
}

TEST_F(ProfessionalCleanupScreenTest, CannotCleanWhileNothingIsSelected)
{
    addTools();
    const Person person = openScanned();

    ASSERT_TRUE(person.click(Button, u"Deselect All"_qs));

    EXPECT_FALSE(person.canUse(Button, u"Clean"_qs));
    EXPECT_TRUE(person.readsNo(u"KB selected"_qs));
    ASSERT_TRUE(person.click(CheckBox, javaRow));
    EXPECT_TRUE(person.canUse(Button, u"Clean"_qs));
    EXPECT_TRUE(person.reads(u"2 MB selected"_qs));
}

TEST_F(ProfessionalCleanupScreenTest, CleansReportsWhatWasRefusedAndScansAnew)
{
    addTools();
    const Person person = openScanned();
    ASSERT_TRUE(person.click(Button, u"Select All"_qs));

    ASSERT_TRUE(person.click(Button, u"Clean"_qs));

    EXPECT_TRUE(person.reads(u"Cleanup Report"_qs));
    EXPECT_TRUE(person.reads(u"Space Freed: 3.5 MB"_qs));
    EXPECT_TRUE(person.reads(u"Files Removed: 2"_qs));
    EXPECT_TRUE(person.reads(u"Files Skipped: 1"_qs));
    EXPECT_TRUE(person.reads(u"Failed to clean System Caches: Permission denied"_qs));
    ASSERT_TRUE(person.click(Button, u"Done"_qs));
    EXPECT_TRUE(person.readsNo(u"Cleanup Report"_qs));
    EXPECT_TRUE(person.sees(CheckBox, systemRow));
    EXPECT_TRUE(person.seesNo(CheckBox, javaRow));
}

TEST_F(ProfessionalCleanupScreenTest, KeepsTheScansOverlayUntilTheScanHasNoticedTheCancel)
{
    addTools();
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const Person person = open(SidebarTab::ProfessionalCleanup);
    ASSERT_TRUE(person.click(Button, u"Start Scan"_qs));
    EXPECT_TRUE(person.sees(Dialog, u"Scanning..."_qs));
    EXPECT_TRUE(person.reads(u"Scanning professional categories..."_qs));

    ASSERT_TRUE(person.click(Button, u"Cancel"_qs));
    EXPECT_TRUE(person.sees(Dialog, u"Scanning..."_qs));
    gate.open();

    EXPECT_TRUE(person.seesNo(Dialog, u"Scanning..."_qs));
    EXPECT_TRUE(person.sees(Button, u"Start Scan"_qs));
}

TEST_F(ProfessionalCleanupScreenTest, LetsAPartialListBeCleanedAfterACancel)
{
    addTools();
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &path) {
        if (path.isWithin(FilePath("/home/ada/.nvm")))
            gate.wait();
    });
    const Person person = open(SidebarTab::ProfessionalCleanup);
    ASSERT_TRUE(person.click(Button, u"Start Scan"_qs));
    ASSERT_TRUE(person.sees(CheckBox, codeRow));
    EXPECT_TRUE(person.sees(Dialog, u"Scanning..."_qs));

    ASSERT_TRUE(person.click(Button, u"Cancel"_qs));
    gate.open();
    ASSERT_TRUE(person.seesNo(Dialog, u"Scanning..."_qs));
    EXPECT_TRUE(person.seesNo(CheckBox, toolsRow));
    ASSERT_TRUE(person.click(Button, u"Clean"_qs));

    EXPECT_TRUE(person.reads(u"Space Freed: 1.5 MB"_qs));
}

TEST_F(ProfessionalCleanupScreenTest, KeepsTheCleaningsOverlayBehindACancel)
{
    addTools();
    const Gate gate;
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });
    const Person person = openScanned();
    ASSERT_TRUE(person.click(Button, u"Clean"_qs));
    EXPECT_TRUE(person.sees(Dialog, u"Cleaning..."_qs));
    EXPECT_TRUE(person.reads(u"Removing selected developer and system folders..."_qs));

    ASSERT_TRUE(person.click(Button, u"Cancel"_qs));
    EXPECT_TRUE(person.sees(Dialog, u"Cleaning..."_qs));
    gate.open();

    EXPECT_TRUE(person.reads(u"Cleanup Report"_qs));
}

TEST_F(ProfessionalCleanupScreenTest, InvitesAgainWhereThereIsNothing)
{
    const Person person = open(SidebarTab::ProfessionalCleanup);

    ASSERT_TRUE(person.click(Button, u"Start Scan"_qs));

    EXPECT_TRUE(person.seesNo(Dialog, u"Scanning..."_qs));
    EXPECT_TRUE(person.sees(Button, u"Start Scan"_qs));
}

TEST_F(ProfessionalCleanupScreenTest, WalksItsWholeRoadByKeyboardAlone)
{
    addTools();
    const Person person = open();

    person.press(Qt::Key_3, Qt::ControlModifier);
    ASSERT_TRUE(person.tabTo(u"Start Scan"_qs));
    person.press(Qt::Key_Return);
    ASSERT_TRUE(person.seesNo(Dialog, u"Scanning..."_qs));
    ASSERT_TRUE(person.tabTo(javaRow));
    person.press(Qt::Key_Space);
    ASSERT_TRUE(person.reads(u"3.5 MB selected"_qs));
    ASSERT_TRUE(person.tabTo(u"Clean"_qs));
    person.press(Qt::Key_Space);
    ASSERT_TRUE(person.reads(u"Space Freed: 3.5 MB"_qs));
    ASSERT_TRUE(person.isGivenTheKeyboardAt(u"Done"_qs));
    person.press(Qt::Key_Return);

    EXPECT_TRUE(person.readsNo(u"Cleanup Report"_qs));
    EXPECT_TRUE(person.sees(CheckBox, systemRow));
}

TEST_F(ProfessionalCleanupScreenTest, ReachesEachRowOfALongListByKeyboardAndBringsItIntoSight)
{
    addTools();
    for (const char *folder :
         {"Library/Developer/Xcode/DerivedData", "Library/Developer/Xcode/Archives", ".npm/_cacache", ".android/avd",
          "Library/Caches/JetBrains/Rider2026.1", "Library/Android/sdk/temp", "Library/Caches/com.apple.FinalCut",
          "Library/Containers/com.apple.mail/Data/Library/Mail Downloads"})
        addTree(folder, 1000);
    const Person person = openScanned();
    const QRect window(QPoint(), app->mainWindow()->size());
    EXPECT_FALSE(window.contains(person.placeOf(CheckBox, systemRow)));

    for (const QString &row : {u"Xcode build caches"_qs, javaRow, u"Media and game-development caches"_qs, systemRow,
                               u"Mail Downloads"_qs}) {
        ASSERT_TRUE(person.tabTo(row)) << row.toStdString();
        EXPECT_TRUE(window.contains(person.placeOf(CheckBox, row))) << row.toStdString();
    }
    ASSERT_TRUE(person.tabTo(u"Clean"_qs));
    person.press(Qt::Key_Backtab, Qt::ShiftModifier);
    for (int i = 0; i < 100 && !person.focusedName().startsWith(codeRow); ++i)
        person.press(Qt::Key_Backtab, Qt::ShiftModifier);

    EXPECT_TRUE(window.contains(person.placeOf(CheckBox, codeRow)));
}
