#include "App/ScreensFixture.h"
#include "Fakes/Gate.h"
#include "Fakes/PretendScript.h"
#include "Utilities/BackgroundWork.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

using namespace Quillmere;
using enum QAccessible::Role;

namespace {

class ToolsScreenTest : public ScreensFixture
{
protected:
    ToolsScreenTest() { machine.connectDisks(); }
    ~ToolsScreenTest() override
    {
        gate.open();
        childProcessPool().waitForDone();
    }

    /// From now on every command that needs rights waits.
    void holdCommands()
    {
        machine.processes->answer(
            u"/usr/bin/osascript"_qs, [gate = gate, files = machine.files](const Command &command) {
                gate.wait();
                return files->disks().diskutil(wordsOfScript(command.arguments.value(1)).mid(1), true);
            });
    }
    [[nodiscard]] bool prints(const Person &person, const QString &text) const
    {
        QAccessibleInterface *console = person.find(EditableText, u"Terminal Console Output"_qs);
        return console && QTest::qWaitFor([&] { return console->text(QAccessible::Value).contains(text); }, 10'000);
    }
    [[nodiscard]] bool wasErased() const
    {
        return QTest::qWaitFor(
            [this] { return machine.files->disks().mountedAt(FilePath("/Volumes/CleanDisk")).has_value(); }, 10'000);
    }
    void plugIn(const QByteArray &mountPoint, const QString &device, bool isInternal = false) const
    {
        PretendVolume volume;
        volume.mountPoint = FilePath(mountPoint);
        volume.device = device;
        volume.fileSystem = u"MS-DOS FAT32"_qs;
        volume.values = VolumeValues{{}, !isInternal, isInternal, {}};
        volume.capacity = {64'000'000'000, 40'000'000'000, 40'000'000'000};
        machine.files->disks().plugIn(volume);
    }
    Person openSheet()
    {
        plugIn("/Volumes/STICK", u"disk4s2"_qs);
        const Person person = open(SidebarTab::Tools);
        EXPECT_TRUE(person.click(Button, u"Run, Erase and Format Disk"_qs));
        EXPECT_TRUE(person.sees(ComboBox, systemDrive));
        return person;
    }
    static void chooseStick(const Person &person)
    {
        ASSERT_TRUE(person.tabToWhatHolds(u"Drive, "_qs));
        person.press(Qt::Key_Down);
        ASSERT_TRUE(person.sees(ComboBox, u"Drive, STICK (disk4s2) - 64 GB"_qs));
    }

    const QString systemDrive = u"Drive, Macintosh HD (System) (disk1s1s1) - 500 GB"_qs;
    const QString step1 = u"Erase Confirmation Step 1 of 3"_qs;
    const QString step2 = u"System Volume Alert Step 2 of 3"_qs;
    const QString step3 = u"Critical Confirmation Step 3 of 3"_qs;
    const QString finished = u"Operation Finished"_qs;
    Gate gate;
};

} // namespace

TEST_F(ToolsScreenTest, ShowsFiveToolsBesideAnIdleConsole)
{
    const Person person = open(SidebarTab::Tools);

    EXPECT_TRUE(person.sees(Heading, u"Tools"_qs));
    for (const QString &title : {u"Reset Spotlight Index"_qs, u"Flush DNS Cache"_qs, u"Rebuild Launch Services"_qs,
                                 u"Reclaim Memory"_qs, u"Erase and Format Disk"_qs}) {
        EXPECT_TRUE(person.sees(StaticText, title)) << title.toStdString();
        EXPECT_TRUE(person.canUse(Button, u"Run, "_qs + title)) << title.toStdString();
    }
    EXPECT_TRUE(person.sees(Heading, u"Terminal Console Output"_qs));
    EXPECT_TRUE(person.sees(StaticText, u"Console idle. Run a tool on the left to see output."_qs));
}

TEST_F(ToolsScreenTest, PrintsWhatACommandSaysOnceItHasEnded)
{
    holdCommands();
    const Person person = open(SidebarTab::Tools);

    ASSERT_TRUE(person.click(Button, u"Run, Reclaim Memory"_qs));
    EXPECT_TRUE(prints(person, u"Executing Reclaim Memory...\n"_qs));
    EXPECT_TRUE(person.sees(ProgressBar, u"Reclaim Memory"_qs));
    EXPECT_TRUE(person.canUse(Button, u"Run, Reclaim Memory"_qs)) << "it stays pressable";
    EXPECT_TRUE(person.seesNo(StaticText, u"Console idle. Run a tool on the left to see output."_qs));

    gate.open();
    EXPECT_TRUE(prints(person, u"ERROR: ERROR 1:\nUsage: diskutil"_qs));
    EXPECT_TRUE(person.seesNo(ProgressBar, u"Reclaim Memory"_qs));
}

TEST_F(ToolsScreenTest, RunsTheCommandOfEachCard)
{
    const Person person = open(SidebarTab::Tools);

    for (const auto &[title, printed] : {
             std::pair(u"Reset Spotlight Index"_qs, u"Executing Reset Spotlight Indexing..."_qs),
             std::pair(u"Flush DNS Cache"_qs, u"DNS cache flushed."_qs),
             std::pair(u"Rebuild Launch Services"_qs, u"Executing Rebuild Launch Services..."_qs),
             std::pair(u"Reclaim Memory"_qs, u"Executing Reclaim Memory..."_qs),
         }) {
        ASSERT_TRUE(person.click(Button, u"Run, "_qs + title));
        EXPECT_TRUE(prints(person, printed)) << title.toStdString();
        EXPECT_TRUE(prints(person, u"SUCCESS: Command completed successfully."_qs)) << title.toStdString();
    }
}

TEST_F(ToolsScreenTest, IsRunByTheKeyboardAloneAndItsOutputCopied)
{
    const Person person = open(SidebarTab::Tools);

    ASSERT_TRUE(person.tabTo(u"Run, Flush DNS Cache"_qs));
    person.press(Qt::Key_Space);
    ASSERT_TRUE(prints(person, u"SUCCESS: Command completed successfully.\n"_qs));
    ASSERT_TRUE(person.tabTo(u"Terminal Console Output"_qs));
    person.press(Qt::Key_A, Qt::ControlModifier);
    person.press(Qt::Key_C, Qt::ControlModifier);

    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
              "Starting DNS cache flush...\nDNS cache flushed.\nmDNSResponder restarted successfully.\n"
              "SUCCESS: Command completed successfully.\n");
}

TEST_F(ToolsScreenTest, ForgetsTheConsoleWhenItIsLeft)
{
    const Person person = open(SidebarTab::Tools);
    ASSERT_TRUE(person.click(Button, u"Run, Flush DNS Cache"_qs));
    ASSERT_TRUE(prints(person, u"SUCCESS"_qs));

    app->appState().setSelectedTab(SidebarTab::History);
    app->appState().setSelectedTab(SidebarTab::Tools);

    EXPECT_TRUE(person.sees(StaticText, u"Console idle. Run a tool on the left to see output."_qs));
}

TEST_F(ToolsScreenTest, SaysThatItLoadsWhileTheVolumesKeepTheProgramWaiting)
{
    plugIn("/Volumes/STICK", u"disk4s2"_qs);
    const Person person = open(SidebarTab::Tools);
    bool wasSaid = false;
    machine.processes->answer(u"/usr/sbin/diskutil"_qs, [&](const Command &command) {
        wasSaid = wasSaid || person.findWhatHolds(StaticText, u"Loading volumes..."_qs);
        return machine.files->disks().diskutil(command.arguments, false);
    });

    ASSERT_TRUE(person.click(Button, u"Run, Erase and Format Disk"_qs));
    ASSERT_TRUE(person.sees(ComboBox, systemDrive));

    EXPECT_TRUE(wasSaid);
    EXPECT_TRUE(person.seesNo(StaticText, u"Loading volumes..."_qs));
}

TEST_F(ToolsScreenTest, OpensTheSheetWithTheSystemDiskChosen)
{
    const Person person = openSheet();

    EXPECT_TRUE(person.sees(Heading, u"Select Target Drive"_qs));
    EXPECT_TRUE(person.sees(Heading, u"Drive Information"_qs));
    EXPECT_TRUE(person.sees(StaticText, u"Volume Name: Macintosh HD (System)"_qs));
    EXPECT_TRUE(person.sees(StaticText, u"Mount Path: /"_qs));
    EXPECT_TRUE(person.sees(StaticText, u"BSD Device: /dev/disk1s1s1"_qs));
    EXPECT_TRUE(person.sees(StaticText, u"Filesystem Type: APFS"_qs));
    EXPECT_TRUE(person.sees(StaticText, u"Total Capacity: 500 GB"_qs));
    EXPECT_TRUE(person.sees(StaticText, u"Drive Type: Internal or System Drive"_qs));
    EXPECT_TRUE(person.sees(Heading, u"Operation Mode"_qs));
    EXPECT_TRUE(person.canUse(Button, u"Run Quick Format"_qs));
}

TEST_F(ToolsScreenTest, FormatsAnExternalVolumeAfterOneConfirmation)
{
    holdCommands();
    const Person person = openSheet();
    chooseStick(person);
    EXPECT_TRUE(person.sees(StaticText, u"Drive Type: External Removable Drive"_qs));

    ASSERT_TRUE(person.click(Button, u"Run Quick Format"_qs));
    ASSERT_TRUE(person.sees(Heading, step1));
    EXPECT_TRUE(person.sees(StaticText, u"All files on this volume will be permanently deleted."_qs));
    ASSERT_TRUE(person.click(Button, u"Proceed"_qs));

    EXPECT_TRUE(person.seesNo(Heading, step1));
    EXPECT_TRUE(person.sees(ProgressBar, u"Quick Format STICK"_qs));
    EXPECT_FALSE(person.canUse(Button, u"Run Quick Format"_qs));
    gate.open();
    ASSERT_TRUE(person.sees(Heading, finished));
    EXPECT_TRUE(person.sees(StaticText, u"The drive was formatted or erased successfully."_qs));
    EXPECT_TRUE(wasErased());
    ASSERT_TRUE(person.click(Button, u"OK"_qs));
    EXPECT_TRUE(person.seesNo(Heading, finished));
    EXPECT_TRUE(person.sees(StaticText, u"Volume Name: STICK"_qs)) << "the choice stays as it was";
}

TEST_F(ToolsScreenTest, ErasesTheSystemDiskOnlyAfterThreeConfirmationsAndATypedWord)
{
    const Person person = openSheet();

    ASSERT_TRUE(person.click(Button, u"Run Quick Format"_qs));
    ASSERT_TRUE(person.sees(Heading, step1));
    ASSERT_TRUE(person.click(Button, u"Proceed"_qs));
    ASSERT_TRUE(person.sees(Heading, step2));
    EXPECT_TRUE(
        person.sees(StaticText, u"This is an internal system drive. Formatting it can remove macOS startup data."_qs));
    ASSERT_TRUE(person.click(Button, u"Proceed"_qs));
    ASSERT_TRUE(person.sees(Heading, step3));
    EXPECT_TRUE(
        person.sees(StaticText, u"Final confirmation. Type ERASE below to erase the internal system drive."_qs));
    EXPECT_TRUE(machine.processes->joinedRuns().isEmpty());
    ASSERT_TRUE(person.isGivenTheKeyboardAt(u"Type ERASE"_qs));
    person.type(u"erase "_qs);
    ASSERT_TRUE(person.click(Button, u"Erase System Drive"_qs));

    ASSERT_TRUE(person.sees(Heading, finished));
    EXPECT_TRUE(person.sees(StaticText, u"The operation failed. See terminal output for details."_qs));
    EXPECT_EQ(machine.processes->joinedRuns().size(), 1);
    ASSERT_TRUE(person.click(Button, u"OK"_qs));
    ASSERT_TRUE(person.click(Button, u"Close"_qs));
    EXPECT_TRUE(prints(person, u"Unable to find disk for disk1s1s1"_qs));
}

TEST_F(ToolsScreenTest, HasTheChainWalkedAgainFromStepOneAfterAWrongWord)
{
    const Person person = openSheet();
    ASSERT_TRUE(person.click(Button, u"Run Quick Format"_qs));
    ASSERT_TRUE(person.sees(Heading, step1));
    ASSERT_TRUE(person.click(Button, u"Proceed"_qs));
    ASSERT_TRUE(person.sees(Heading, step2));
    ASSERT_TRUE(person.click(Button, u"Proceed"_qs));
    ASSERT_TRUE(person.isGivenTheKeyboardAt(u"Type ERASE"_qs));
    person.type(u"DELETE"_qs);
    ASSERT_TRUE(person.click(Button, u"Erase System Drive"_qs));

    EXPECT_TRUE(person.seesNo(Heading, step3));
    EXPECT_TRUE(machine.processes->joinedRuns().isEmpty());
    ASSERT_TRUE(person.click(Button, u"Run Quick Format"_qs));
    EXPECT_TRUE(person.sees(Heading, step1));
    EXPECT_TRUE(person.seesNo(Heading, step3));
}

TEST_F(ToolsScreenTest, ClearsTheTypedWordWhenTheLastStepIsCancelled)
{
    const Person person = openSheet();
    for (int attempt = 0; attempt < 2; ++attempt) {
        ASSERT_TRUE(person.click(Button, u"Run Quick Format"_qs));
        ASSERT_TRUE(person.sees(Heading, step1));
        ASSERT_TRUE(person.click(Button, u"Proceed"_qs));
        ASSERT_TRUE(person.sees(Heading, step2));
        ASSERT_TRUE(person.click(Button, u"Proceed"_qs));
        ASSERT_TRUE(person.isGivenTheKeyboardAt(u"Type ERASE"_qs));
        QAccessibleInterface *field = person.find(EditableText, u"Type ERASE"_qs);
        ASSERT_NE(field, nullptr);
        EXPECT_EQ(field->text(QAccessible::Value), QString()) << attempt;
        person.type(u"ERASE"_qs);
        ASSERT_TRUE(person.click(Button, u"Cancel"_qs));
        EXPECT_TRUE(person.seesNo(Heading, step3));
    }
    EXPECT_TRUE(machine.processes->joinedRuns().isEmpty());
}

TEST_F(ToolsScreenTest, LeavesEveryStepByEscapeAndKeepsTheChoice)
{
    const Person person = openSheet();
    chooseStick(person);

    ASSERT_TRUE(person.click(Button, u"Run Quick Format"_qs));
    ASSERT_TRUE(person.sees(Heading, step1));
    person.press(Qt::Key_Escape);

    EXPECT_TRUE(person.seesNo(Heading, step1));
    EXPECT_TRUE(person.sees(ComboBox, u"Drive, STICK (disk4s2) - 64 GB"_qs));
    EXPECT_TRUE(machine.processes->joinedRuns().isEmpty());
    person.press(Qt::Key_Escape);
    EXPECT_TRUE(person.seesNo(Heading, u"Select Target Drive"_qs));
}

TEST_F(ToolsScreenTest, BeginsEachStepAtTheWayOut)
{
    const Person person = openSheet();
    ASSERT_TRUE(person.click(Button, u"Run Quick Format"_qs));
    ASSERT_TRUE(person.sees(Heading, step1));
    ASSERT_TRUE(person.isGivenTheKeyboardAt(u"Cancel"_qs));
    ASSERT_TRUE(person.tabTo(u"Proceed"_qs));

    person.press(Qt::Key_Space);
    ASSERT_TRUE(person.sees(Heading, step2));

    EXPECT_TRUE(person.isGivenTheKeyboardAt(u"Cancel"_qs));
}

TEST_F(ToolsScreenTest, TakesTwoQuickPressesForOne)
{
    const Person person = openSheet();
    ASSERT_TRUE(person.click(Button, u"Run Quick Format"_qs));
    ASSERT_TRUE(person.sees(Heading, step1));

    QTest::mouseDClick(app->mainWindow(), Qt::LeftButton, {}, person.placeOf(Button, u"Proceed"_qs).center());

    EXPECT_TRUE(person.sees(Heading, step2));
    EXPECT_TRUE(person.seesNo(Heading, step3));
}

TEST_F(ToolsScreenTest, LocksTheSecureOverwriteOfAnInternalVolume)
{
    const Person person = openSheet();
    ASSERT_TRUE(person.click(RadioButton, u"Full Cleanup with Secure Overwrite"_qs));

    EXPECT_TRUE(person.sees(AlertMessage,
                            u"Secure overwrite is blocked for internal or system drives to protect macOS files."_qs));
    EXPECT_FALSE(person.canUse(Button, u"Run Secure Overwrite"_qs));

    chooseStick(person);
    EXPECT_TRUE(person.canUse(Button, u"Run Secure Overwrite"_qs));
    ASSERT_TRUE(person.click(Button, u"Run Secure Overwrite"_qs));
    ASSERT_TRUE(person.sees(Heading, step1));
    ASSERT_TRUE(person.click(Button, u"Proceed"_qs));
    ASSERT_TRUE(person.sees(Heading, finished));
    EXPECT_TRUE(machine.files->disks().volumes().isEmpty());
}

TEST_F(ToolsScreenTest, DoesNothingWithoutAChosenVolume)
{
    const Person person = openSheet();
    ASSERT_TRUE(person.tabToWhatHolds(u"Drive, "_qs));
    person.press(Qt::Key_Up);
    ASSERT_TRUE(person.sees(ComboBox, u"Drive, Select a drive..."_qs));

    ASSERT_TRUE(person.click(Button, u"Run Quick Format"_qs));

    EXPECT_TRUE(person.seesNo(Heading, u"Drive Information"_qs));
    EXPECT_TRUE(person.seesNo(Heading, step1));
}

TEST_F(ToolsScreenTest, GoesOnErasingWhenTheSheetIsClosedAndBeginsANewOneAfresh)
{
    holdCommands();
    const Person person = openSheet();
    chooseStick(person);
    ASSERT_TRUE(person.click(Button, u"Run Quick Format"_qs));
    ASSERT_TRUE(person.sees(Heading, step1));
    ASSERT_TRUE(person.click(Button, u"Proceed"_qs));
    ASSERT_TRUE(person.sees(ProgressBar, u"Quick Format STICK"_qs));
    ASSERT_TRUE(person.seesNo(Heading, step1));

    ASSERT_TRUE(person.click(Button, u"Close"_qs));
    ASSERT_TRUE(person.seesNo(Heading, u"Select Target Drive"_qs));
    ASSERT_TRUE(person.click(Button, u"Run, Erase and Format Disk"_qs));
    EXPECT_TRUE(person.sees(ComboBox, systemDrive));
    gate.open();

    EXPECT_TRUE(wasErased());
    EXPECT_TRUE(prints(person, u"SUCCESS: Quick format completed."_qs));
    QCoreApplication::processEvents();
    EXPECT_TRUE(!person.findWhatHolds(Heading, finished));
}

TEST_F(ToolsScreenTest, MountsADiskThatCameWhileTheProgramRuns)
{
    open(SidebarTab::Tools);
    plugIn("/Volumes/STICK", u"disk4s2"_qs);

    machine.workspace->announceMount({FilePath("/Volumes/STICK")});
    childProcessPool().waitForDone();

    EXPECT_EQ(machine.processes->launches(), QList({Command{u"/usr/sbin/diskutil"_qs, {u"mount"_qs, u"disk4s2"_qs}}}));
}
