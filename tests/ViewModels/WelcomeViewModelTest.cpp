#include "ViewModels/WelcomeViewModel.h"
#include "Fakes/Gate.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "Utilities/BackgroundWork.h"

#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;

namespace {

class WelcomeViewModelTest : public testing::Test
{
protected:
    ~WelcomeViewModelTest() override { childProcessPool().waitForDone(); }

    /// Whatever is tried, the bundle cannot be copied.
    void closeEveryWay()
    {
        machine.bundles->main = FilePath("/home/ada/Downloads/Quillmere.app");
        machine.processes->answer(u"/usr/bin/osascript"_qs, [](const Command &) { return ProcessOutcome{1, {}}; });
    }
    void runToTheCopy()
    {
        wizard.startInstallation();
        while (wizard.progressTimer().isActive())
            wizard.advance();
    }
    [[nodiscard]] bool isCompleted() const { return machine.defaults->boolean(u"hasSeenWelcome"_qs); }

    PretendMachine machine;
    InstalledLocalizer localizer{machine.defaults};
    SetupReceipt receipt{machine.defaults, machine.bundles, machine.clock, InstallerTerms(machine.files)};
    WelcomeViewModel wizard{{
        machine.files,
        machine.bundles,
        machine.workspace,
        receipt,
        BundleInstaller({machine.files, machine.places, machine.bundles, machine.processes, machine.workspace, receipt,
                         InstallerTerms(machine.files)}),
        DiskDriverHelper(machine.files, machine.places, machine.processes),
    }};
    QSignalSpy finished{&wizard, &WelcomeViewModel::finished};
};

} // namespace

TEST_F(WelcomeViewModelTest, BeginsInEnglishAtItsFirstStepWithNothingInstalled)
{
    EXPECT_EQ(wizard.selectedLanguage(), Language::English);
    EXPECT_EQ(wizard.currentStep(), 1);
    EXPECT_EQ(wizard.installProgress(), 0.0);
    EXPECT_EQ(wizard.installStatusText(), QString());
    EXPECT_EQ(wizard.installedDestinationText(), u"/Applications"_qs);
    EXPECT_FALSE(wizard.drivers()->areDriversInstalled());
    EXPECT_FALSE(wizard.drivers()->isInstallingDrivers());
    EXPECT_EQ(wizard.drivers()->driverInstallStatus(), QString());
}

TEST_F(WelcomeViewModelTest, TakesTheLanguageThatWasChosenBefore)
{
    localizer->setLanguage(Language::Russian);

    wizard.appear();

    EXPECT_EQ(wizard.selectedLanguage(), Language::Russian);
    EXPECT_EQ(localizer->language(), Language::Russian);
}

TEST_F(WelcomeViewModelTest, ReplacesTheSystemsLanguageByTheOneThatItLeadsTo)
{
    Localizer russian(machine.defaults, [] { return u"ru"_qs; });
    SharedInstance<Localizer>::install(&russian);
    ASSERT_EQ(russian.language(), Language::System);

    wizard.appear();

    SharedInstance<Localizer>::install(localizer.operator->());
    EXPECT_EQ(wizard.selectedLanguage(), Language::Russian);
    EXPECT_EQ(russian.language(), Language::Russian);
    EXPECT_EQ(machine.defaults->string(Localizer::languageKey()), u"ru"_qs);
}

TEST_F(WelcomeViewModelTest, OffersThreeLanguagesAndNotTheSystems)
{
    EXPECT_THAT(wizard.languages(), ElementsAre(u"English"_qs, u"Español"_qs, u"Русский"_qs));
}

TEST_F(WelcomeViewModelTest, TurnsTheWholeProgramToThePickedLanguageAtOnce)
{
    wizard.selectLanguage(1);

    EXPECT_EQ(wizard.languageIndex(), 1);
    EXPECT_EQ(localizer->language(), Language::Spanish);
    EXPECT_EQ(machine.defaults->string(Localizer::languageKey()), u"es"_qs);
    EXPECT_EQ(wizard.text(u"next"_qs), u"Siguiente"_qs);
}

TEST_F(WelcomeViewModelTest, IgnoresALanguageThatIsNotOffered)
{
    wizard.selectLanguage(3);
    wizard.selectLanguage(-1);

    EXPECT_EQ(wizard.selectedLanguage(), Language::English);
    EXPECT_EQ(localizer->language(), Language::System);
}

TEST_F(WelcomeViewModelTest, ShowsTheKeyOfATextThatItDoesNotHave)
{
    EXPECT_EQ(wizard.text(u"no.such.text"_qs), u"no.such.text"_qs);
}

TEST_F(WelcomeViewModelTest, GoesForwardToTheInstallationAndBackUntilThen)
{
    wizard.back();
    EXPECT_EQ(wizard.currentStep(), 1);
    wizard.next();
    wizard.next();
    EXPECT_EQ(wizard.currentStep(), 3);
    wizard.back();
    EXPECT_EQ(wizard.currentStep(), 2);
    wizard.next();
    wizard.next();
    EXPECT_EQ(wizard.currentStep(), 4);
    wizard.back();
    wizard.next();
    EXPECT_EQ(wizard.currentStep(), 4);
}

TEST_F(WelcomeViewModelTest, AdvancesByTheClockWithAStatusForEachPart)
{
    wizard.startInstallation();
    EXPECT_TRUE(wizard.progressTimer().isActive());
    EXPECT_EQ(wizard.progressTimer().interval(), 400);
    EXPECT_EQ(wizard.installProgress(), 0.0);
    EXPECT_EQ(wizard.installStatusText(), u"Preparing installation..."_qs);

    QStringList statuses;
    QList<int> percents;
    while (wizard.progressTimer().isActive()) {
        statuses.append(wizard.installStatusText());
        percents.append(qRound(wizard.installProgress() * 100));
        wizard.advance();
    }

    const QString copying = u"Copying application bundle..."_qs;
    const QString registering = u"Registering system helper..."_qs;
    const QString configuring = u"Configuring application preferences..."_qs;
    EXPECT_THAT(percents, ElementsAre(0, 10, 20, 30, 45, 60, 70, 80, 90));
    EXPECT_THAT(statuses,
                ElementsAre(u"Preparing installation..."_qs, copying, copying, copying, registering, registering,
                            configuring, configuring, configuring));
    EXPECT_EQ(wizard.installProgress(), 1.0);
    EXPECT_EQ(wizard.installStatusText(), u"Done!"_qs);
}

TEST_F(WelcomeViewModelTest, AdvancesByItself)
{
    wizard.startInstallation();

    EXPECT_TRUE(QTest::qWaitFor([&] { return wizard.installProgress() > 0; }, 10'000));
}

TEST_F(WelcomeViewModelTest, EndsAtItsLastStepAndSaysWhereTheProgramIs)
{
    runToTheCopy();

    EXPECT_EQ(wizard.currentStep(), 5);
    EXPECT_EQ(wizard.installedDestinationText(), u"/Applications/Quillmere.app"_qs);
    EXPECT_TRUE(isCompleted());
    EXPECT_EQ(finished.size(), 0);
}

TEST_F(WelcomeViewModelTest, WritesTheReceiptAndGoesWhenLaunched)
{
    wizard.launch();

    EXPECT_TRUE(isCompleted());
    EXPECT_FALSE(receipt.shouldShowWelcome());
    EXPECT_EQ(finished.size(), 1);
}

TEST_F(WelcomeViewModelTest, ComesAgainWhenTheProgramIsRunWithoutInstalling)
{
    wizard.runWithoutInstalling();

    EXPECT_EQ(finished.size(), 1);
    EXPECT_FALSE(isCompleted());
    EXPECT_TRUE(receipt.shouldShowWelcome());
}

TEST_F(WelcomeViewModelTest, ShowsThePortableLineForTwoSecondsWhenAllThreeCopiesFail)
{
    closeEveryWay();

    testing::internal::CaptureStdout();
    runToTheCopy();
    testing::internal::GetCapturedStdout();

    EXPECT_EQ(wizard.currentStep(), 1);
    EXPECT_EQ(qRound(wizard.installProgress() * 100), 90);
    EXPECT_EQ(wizard.installStatusText(), u"Could not copy the app. Starting in portable mode..."_qs);
    EXPECT_TRUE(wizard.portableTimer().isActive());
    EXPECT_TRUE(wizard.portableTimer().isSingleShot());
    EXPECT_EQ(wizard.portableTimer().interval(), 2000);
    EXPECT_EQ(finished.size(), 0);
    EXPECT_FALSE(isCompleted());

    EXPECT_TRUE(finished.wait(10'000));
    EXPECT_EQ(finished.size(), 1);
    EXPECT_FALSE(machine.defaults->boolean(u"hasSeenWelcome"_qs));
}

TEST_F(WelcomeViewModelTest, SpeaksOfTheInstallationInTheSelectedLanguage)
{
    wizard.startInstallation();

    wizard.selectLanguage(2);

    EXPECT_EQ(wizard.installStatusText(), u"Подготовка к установке..."_qs);
}

TEST_F(WelcomeViewModelTest, ShowsTheLogoOfTheBundleOrItsOwn)
{
    EXPECT_EQ(wizard.logoFile(), u":/icon/quillmere.svg"_qs);

    machine.files->addFile(machine.bundles->main.appending("Contents/Resources/app_logo.png"), 10);

    EXPECT_EQ(wizard.logoFile(), u"/Applications/Quillmere.app/Contents/Resources/app_logo.png"_qs);
}

TEST_F(WelcomeViewModelTest, OpensTheMakersPage)
{
    wizard.openMakerPage();

    EXPECT_TRUE(QTest::qWaitFor([&] { return machine.workspace->opened().size() == 1; }, 10'000));
    EXPECT_EQ(machine.workspace->opened().first().host(), u"veltrane.example"_qs);
}

TEST_F(WelcomeViewModelTest, OpensThePromotedPageInTheSelectedLanguage)
{
    wizard.selectLanguage(1);

    wizard.openPromotionPage();

    EXPECT_TRUE(QTest::qWaitFor([&] { return machine.workspace->opened().size() == 1; }, 10'000));
    EXPECT_EQ(machine.workspace->opened().first(), QUrl(u"https://farhop.example/es/"_qs));
}

TEST_F(WelcomeViewModelTest, LooksForTheDriversWhenItAppears)
{
    machine.files->addFile(FilePath("/usr/local/bin/ntfs-3g"), 1);

    wizard.appear();

    EXPECT_TRUE(wizard.drivers()->areDriversInstalled());
}

TEST_F(WelcomeViewModelTest, InstallsTheDriversAndLooksForThemAgain)
{
    const Gate gate;
    machine.processes->onEnd([&] {
        gate.wait();
        machine.files->addFile(FilePath("/usr/local/bin/ntfs-3g"), 1);
    });
    QCoro::Task<> installing = wizard.drivers()->runDriverInstallation();

    EXPECT_TRUE(wizard.drivers()->isInstallingDrivers());
    EXPECT_EQ(wizard.drivers()->driverInstallStatus(), u"Installing drivers in the background..."_qs);
    EXPECT_FALSE(wizard.drivers()->areDriversInstalled());

    gate.open();
    QCoro::waitFor(std::move(installing));
    EXPECT_FALSE(wizard.drivers()->isInstallingDrivers());
    EXPECT_EQ(wizard.drivers()->driverInstallStatus(), u"Installation successful!"_qs);
    EXPECT_TRUE(wizard.drivers()->areDriversInstalled());
}

TEST_F(WelcomeViewModelTest, SaysSoInItsLanguageWhenTheDriversAreNotInstalled)
{
    machine.processes->answer(u"/usr/bin/osascript"_qs, [](const Command &) { return ProcessOutcome{1, {}}; });

    QCoro::waitFor(wizard.drivers()->runDriverInstallation());

    EXPECT_EQ(wizard.drivers()->driverInstallStatus(), u"Installation failed or was cancelled."_qs);
    EXPECT_FALSE(wizard.drivers()->areDriversInstalled());
    wizard.selectLanguage(1);
    EXPECT_EQ(wizard.drivers()->driverInstallStatus(), u"La instalación falló o fue cancelada."_qs);
}

TEST_F(WelcomeViewModelTest, TellsTheOutcomeBeforeItLooksForTheDrivers)
{
    machine.files->addFile(FilePath("/usr/local/bin/ntfs-3g"), 1);
    QList<bool> wereInstalled; ///< With each change while the outcome stands there.
    const DriversViewModel *const drivers = wizard.drivers();
    QObject::connect(drivers, &DriversViewModel::changed, drivers, [&] {
        if (drivers->driverInstallStatus() == u"Installation successful!")
            wereInstalled.append(drivers->areDriversInstalled());
    });

    QCoro::waitFor(wizard.drivers()->runDriverInstallation());

    EXPECT_THAT(wereInstalled, ElementsAre(false, true));
}

TEST_F(WelcomeViewModelTest, InstallsTheDriversOnceHoweverOftenItIsPressed)
{
    const Gate gate;
    machine.processes->onEnd([&] { gate.wait(); });
    QCoro::Task<> installing = wizard.drivers()->runDriverInstallation();

    wizard.drivers()->install();

    gate.open();
    QCoro::waitFor(std::move(installing));
    EXPECT_EQ(machine.processes->starts().size(), 1);
}
