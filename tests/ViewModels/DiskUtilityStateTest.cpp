#include "Fakes/Gate.h"
#include "ViewModels/ToolsFixture.h"

#include <QSet>

using namespace Quillmere;

namespace {

struct DiskUtilityStateTest : ToolsFixture
{
    DiskUtilityState state{*tools};

    ~DiskUtilityStateTest() override { settle(); }

    void openSheet()
    {
        plugInStick();
        state.reset();
        state.appear();
    }
    void selectStick() { state.selectRow(2); }
    /// Up to the end of the work that a press has begun.
    [[nodiscard]] bool finishes()
    {
        return QTest::qWaitFor([this] { return state.alert() == DiskAlert::Finished; }, 10'000);
    }
    [[nodiscard]] bool nothingWasErased() const
    {
        return machine.files->disks().mountedAt(FilePath("/Volumes/STICK")).has_value()
            && machine.processes->joinedRuns().isEmpty();
    }
    void expectAlert(int step, const char *title, const char *message, const char *confirm) const
    {
        EXPECT_EQ(state.step(), step);
        EXPECT_EQ(state.titleKey(), QString::fromLatin1(title));
        EXPECT_EQ(state.messageKey(), QString::fromLatin1(message));
        EXPECT_EQ(state.confirmKey(), QString::fromLatin1(confirm));
        EXPECT_EQ(state.isTyped(), step == 3);
        EXPECT_EQ(state.isOver(), step == 0);
    }
    void walkToStepThree()
    {
        state.run();
        state.proceed();
        state.proceed();
    }
};

struct TypedCase
{
    const char *name;
    QString text;
    bool matches;
};

struct TypedTextTest : DiskUtilityStateTest, testing::WithParamInterface<TypedCase>
{
};

} // namespace

TEST_F(DiskUtilityStateTest, LoadsUntilItHasAppearedAndThenHasTheSystemDiskChosen)
{
    plugInStick();

    EXPECT_TRUE(state.isLoading());
    EXPECT_FALSE(state.hasSelection());
    state.appear();

    EXPECT_FALSE(state.isLoading());
    EXPECT_EQ(state.selectedRow(), 1);
    EXPECT_TRUE(state.details().isInternal);
    EXPECT_EQ(state.selectedMode(), EraseMode::Quick);
    EXPECT_EQ(state.alert(), DiskAlert::None);
    EXPECT_EQ(state.confirmInputText(), QString());
}

TEST_F(DiskUtilityStateTest, WritesARowForEachVolumeBehindTheOneForNone)
{
    machine.files->setCapacity(VolumeCapacity{512'110'000'000, 1, 1});
    openSheet();

    EXPECT_EQ(state.volumeTexts(),
              QStringList({u"Select a drive..."_qs, u"Macintosh HD (System) (disk1s1s1) - 512.11 GB"_qs,
                           u"STICK (disk4s2) - 64 GB"_qs}));
    EXPECT_EQ(state.selectedText(), u"Macintosh HD (System) (disk1s1s1) - 512.11 GB"_qs);
}

TEST_F(DiskUtilityStateTest, SaysWhatIsKnownOfTheChosenVolume)
{
    openSheet();

    selectStick();

    EXPECT_EQ(state.details(),
              (VolumeDetails{u"STICK"_qs, u"/Volumes/STICK"_qs, u"/dev/disk4s2"_qs, u"msdos"_qs, u"64 GB"_qs, false}));
}

TEST_F(DiskUtilityStateTest, KeepsWhatIsChosenWhenItAppearsOnceMore)
{
    openSheet();
    selectStick();

    state.appear();

    EXPECT_EQ(state.selectedRow(), 2);
}

TEST_F(DiskUtilityStateTest, DoesNothingWithoutAChosenVolume)
{
    openSheet();
    state.selectRow(0);

    state.run();

    EXPECT_FALSE(state.hasSelection());
    EXPECT_EQ(state.selectedText(), u"Select a drive..."_qs);
    EXPECT_EQ(state.alert(), DiskAlert::None);
}

TEST_F(DiskUtilityStateTest, ErasesAnExternalVolumeAfterOneConfirmation)
{
    openSheet();
    selectStick();

    state.run();
    EXPECT_EQ(state.alert(), DiskAlert::Confirm1);
    EXPECT_TRUE(nothingWasErased());
    state.proceed();
    EXPECT_EQ(state.alert(), DiskAlert::Running);

    ASSERT_TRUE(finishes());
    EXPECT_TRUE(state.hasSucceeded());
    EXPECT_TRUE(machine.files->disks().mountedAt(FilePath("/Volumes/CleanDisk")));
    state.dismiss();
    EXPECT_EQ(state.alert(), DiskAlert::None);
}

TEST_F(DiskUtilityStateTest, ErasesAnInternalVolumeOnlyAfterThreeConfirmations)
{
    openSheet();

    state.run();
    EXPECT_EQ(state.alert(), DiskAlert::Confirm1);
    state.proceed();
    EXPECT_EQ(state.alert(), DiskAlert::Confirm2);
    state.proceed();
    EXPECT_EQ(state.alert(), DiskAlert::Confirm3);
    EXPECT_TRUE(machine.processes->joinedRuns().isEmpty());
    state.setConfirmInputText(u"ERASE"_qs);
    state.eraseSystem();
    EXPECT_EQ(state.alert(), DiskAlert::Running);

    ASSERT_TRUE(finishes());
    EXPECT_FALSE(state.hasSucceeded()) << "the pretend machine knows no such disk";
    EXPECT_EQ(machine.processes->joinedRuns(),
              QList({privileged(u"'/usr/sbin/diskutil' 'eraseVolume' 'APFS' 'CleanDisk' 'disk1s1s1'"_qs)}));
}

TEST_P(TypedTextTest, IsTrimmedAndComparedInUpperCase)
{
    openSheet();
    walkToStepThree();

    state.setConfirmInputText(GetParam().text);
    state.eraseSystem();

    EXPECT_EQ(state.confirmInputText(), QString());
    EXPECT_EQ(state.alert(), GetParam().matches ? DiskAlert::Running : DiskAlert::None);
    settle();
    EXPECT_EQ(machine.processes->joinedRuns().size(), GetParam().matches ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, TypedTextTest,
    testing::Values(TypedCase{"Exact", u"ERASE"_qs, true}, TypedCase{"LowerCaseAndABlank", u"erase "_qs, true},
                    TypedCase{"LinesAround", u"\n\tErAsE\n"_qs, true}, TypedCase{"Nothing", u""_qs, false},
                    TypedCase{"Part", u"ERAS"_qs, false}, TypedCase{"More", u"ERASED"_qs, false},
                    TypedCase{"BlankInside", u"ERA SE"_qs, false}, TypedCase{"Translated", u"BORRAR"_qs, false}),
    [](const auto &info) { return info.param.name; });

TEST_F(DiskUtilityStateTest, HasTheWholeChainWalkedAgainAfterAWrongText)
{
    openSheet();
    walkToStepThree();
    state.setConfirmInputText(u"delete"_qs);
    state.eraseSystem();

    state.eraseSystem();
    state.proceed();
    EXPECT_EQ(state.alert(), DiskAlert::None);
    state.run();

    EXPECT_EQ(state.alert(), DiskAlert::Confirm1);
    EXPECT_TRUE(nothingWasErased());
}

TEST_F(DiskUtilityStateTest, LeavesTheDiskAndTheSelectionAloneWhenItIsCancelledAtAnyStep)
{
    openSheet();
    for (int steps = 1; steps <= 3; ++steps) {
        state.run();
        for (int step = 1; step < steps; ++step)
            state.proceed();
        state.setConfirmInputText(u"ERASE"_qs);
        state.dismiss();

        EXPECT_EQ(state.alert(), DiskAlert::None) << steps;
        EXPECT_EQ(state.confirmInputText(), QString()) << steps;
        EXPECT_EQ(state.selectedRow(), 1) << steps;
    }
    EXPECT_TRUE(nothingWasErased());
}

TEST_F(DiskUtilityStateTest, NeverGetsPastTheButtonWithASecureOverwriteOfAnInternalVolume)
{
    openSheet();

    state.setSelectedMode(EraseMode::Secure);
    state.run();

    EXPECT_TRUE(state.isSecureBlocked());
    EXPECT_EQ(state.alert(), DiskAlert::None);
    state.setSelectedMode(EraseMode::Quick);
    EXPECT_FALSE(state.isSecureBlocked());
}

TEST_F(DiskUtilityStateTest, IsStoppedByTheModelWhereTheModeChangesToSecureDuringTheConfirmations)
{
    openSheet();
    walkToStepThree();

    state.setSelectedMode(EraseMode::Secure);
    state.setConfirmInputText(u"ERASE"_qs);
    state.eraseSystem();

    ASSERT_TRUE(finishes());
    EXPECT_FALSE(state.hasSucceeded());
    EXPECT_TRUE(nothingWasErased());
    EXPECT_EQ(console(), "\nERROR: Secure overwrite of an internal or system disk is blocked!\n");
}

TEST_F(DiskUtilityStateTest, OverwritesAnExternalDiskInTheSecureMode)
{
    openSheet();
    selectStick();
    state.setSelectedMode(EraseMode::Secure);

    state.run();
    state.proceed();

    ASSERT_TRUE(finishes());
    EXPECT_TRUE(state.hasSucceeded());
    EXPECT_EQ(machine.processes->joinedRuns(),
              QList({privileged(u"'/usr/sbin/diskutil' 'secureErase' '0' '/dev/disk4'"_qs)}));
}

TEST_F(DiskUtilityStateTest, CountsARefusedPasswordAsAFailure)
{
    openSheet();
    selectStick();
    answer(osascript(), 1, "User canceled. (-128)");

    state.run();
    state.proceed();

    ASSERT_TRUE(finishes());
    EXPECT_FALSE(state.hasSucceeded());
    EXPECT_TRUE(machine.files->disks().mountedAt(FilePath("/Volumes/STICK")));
}

TEST_F(DiskUtilityStateTest, KeepsTheOldNameOfWhatItHasFormatted)
{
    openSheet();
    selectStick();
    state.run();
    state.proceed();

    ASSERT_TRUE(finishes());

    EXPECT_EQ(state.details().name, u"STICK"_qs);
    EXPECT_EQ(state.selectedText(), u"STICK (disk4s2) - 64 GB"_qs);
    EXPECT_EQ(state.selectedRow(), -1);
    EXPECT_EQ(state.volumeTexts().last(), u"CleanDisk (disk4s2) - 64 GB"_qs);
}

TEST_F(DiskUtilityStateTest, TakesNoPressWhileItErases)
{
    const Gate gate;
    openSheet();
    selectStick();
    machine.processes->answer(osascript(), [gate](const Command &) {
        gate.wait();
        return ProcessOutcome{};
    });
    state.run();
    state.proceed();

    state.run();
    state.proceed();
    state.eraseSystem();
    state.dismiss();

    EXPECT_EQ(state.alert(), DiskAlert::Running);
    gate.open();
    ASSERT_TRUE(finishes());
    EXPECT_EQ(machine.processes->joinedRuns().size(), 1);
}

TEST_F(DiskUtilityStateTest, HearsNothingOfWhatAnEarlierSheetHasBegun)
{
    const Gate gate;
    openSheet();
    selectStick();
    machine.processes->answer(osascript(), [gate](const Command &) {
        gate.wait();
        return ProcessOutcome{};
    });
    state.run();
    state.proceed();

    state.reset();
    gate.open();
    settle();
    settle();

    EXPECT_FALSE(tools->isRunning());
    EXPECT_EQ(state.alert(), DiskAlert::None);
    EXPECT_FALSE(state.hasSelection());
}

TEST_F(DiskUtilityStateTest, AsksAtEachOfTheThreeStepsInItsOwnWordsAndIsConfirmedByOneButton)
{
    openSheet();
    EXPECT_FALSE(state.isAsking());

    state.run();
    EXPECT_TRUE(state.isAsking());
    expectAlert(1, "disk.confirm1", "disk.eraseWarning", "disk.proceed");
    state.confirm();
    EXPECT_TRUE(state.isAsking());
    expectAlert(2, "disk.confirm2", "disk.systemWarning", "disk.proceed");
    state.confirm();
    EXPECT_TRUE(state.isAsking());
    expectAlert(3, "disk.confirm3", "disk.finalWarning", "disk.eraseSystem");
    EXPECT_TRUE(machine.processes->joinedRuns().isEmpty());
    state.setConfirmInputText(u"ERASE"_qs);
    state.confirm();
    EXPECT_EQ(state.alert(), DiskAlert::Running);
    EXPECT_FALSE(state.isAsking());

    ASSERT_TRUE(finishes());
    EXPECT_TRUE(state.isAsking());
    expectAlert(0, "disk.operationFinished", "disk.failure", "common.ok");
    EXPECT_EQ(state.symbol(), u"exclamationmark.triangle"_qs);
    state.confirm();
    EXPECT_EQ(state.alert(), DiskAlert::None);
    EXPECT_FALSE(state.isAsking());
}

TEST_F(DiskUtilityStateTest, ErasesNothingByTheButtonOfTheLastStepWithoutTheWord)
{
    openSheet();
    walkToStepThree();

    state.confirm();

    EXPECT_EQ(state.alert(), DiskAlert::None);
    EXPECT_TRUE(nothingWasErased());
}

TEST_F(DiskUtilityStateTest, TakesNoConfirmationWhereNothingIsAsked)
{
    openSheet();
    selectStick();

    state.confirm();

    EXPECT_EQ(state.alert(), DiskAlert::None);
    EXPECT_TRUE(nothingWasErased());
}

TEST_F(DiskUtilityStateTest, SaysWhileItsAlertGoesWhatThatSaid)
{
    openSheet();
    walkToStepThree();
    state.dismiss();
    EXPECT_FALSE(state.isAsking());
    expectAlert(3, "disk.confirm3", "disk.finalWarning", "disk.eraseSystem");

    selectStick();
    state.run();
    state.confirm();
    expectAlert(1, "disk.confirm1", "disk.eraseWarning", "disk.proceed");
    ASSERT_TRUE(finishes());
    state.confirm();

    EXPECT_FALSE(state.isAsking());
    expectAlert(0, "disk.operationFinished", "disk.success", "common.ok");
    EXPECT_EQ(state.symbol(), u"checkmark.circle"_qs);
}

TEST_F(DiskUtilityStateTest, NamesEveryStateOfItsOwn)
{
    QSet<QString> ids;
    for (const DiskAlert alert : {DiskAlert::None, DiskAlert::Confirm1, DiskAlert::Confirm2, DiskAlert::Confirm3,
                                  DiskAlert::Blocked, DiskAlert::Running})
        ids.insert(DiskAlertState{alert}.id());

    EXPECT_EQ(
        ids, QSet<QString>({u"none"_qs, u"confirm1"_qs, u"confirm2"_qs, u"confirm3"_qs, u"blocked"_qs, u"running"_qs}));
    EXPECT_EQ((DiskAlertState{DiskAlert::Finished, true}.id()), u"finished_true"_qs);
    EXPECT_EQ((DiskAlertState{DiskAlert::Finished, false}.id()), u"finished_false"_qs);
}

TEST_F(DiskUtilityStateTest, SpeaksTheNewLanguageAtOnce)
{
    openSheet();
    state.selectRow(0);
    int changes = 0;
    QObject::connect(&state, &DiskUtilityState::selectionChanged, &state, [&] { ++changes; });

    localizer->setLanguage(Language::Russian);

    EXPECT_EQ(changes, 1);
    EXPECT_EQ(state.selectedText(), u"Выберите диск..."_qs);
}
