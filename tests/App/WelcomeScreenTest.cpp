#include "App/ScreensFixture.h"
#include "Fakes/Gate.h"
#include "Utilities/BackgroundWork.h"
#include "ViewModels/WelcomeViewModel.h"

#include <QQuickItem>
#include <QStyleHints>
#include <QTest>

using namespace Quillmere;
using enum QAccessible::Role;

namespace {

class WelcomeScreenTest : public ScreensFixture
{
protected:
    WelcomeScreenTest() { machine.defaults->setBoolean(u"hasSeenWelcome"_qs, false); }
    ~WelcomeScreenTest() override { childProcessPool().waitForDone(); }

    [[nodiscard]] WelcomeViewModel *wizardBehind() const { return app->mainWindow()->findChild<WelcomeViewModel *>(); }
    /// The clock of the installation goes on by finishInstallation() alone.
    void holdTheClock() const
    {
        WelcomeViewModel *wizard = wizardBehind();
        ASSERT_NE(wizard, nullptr);
        for (QTimer *timer : wizard->findChildren<QTimer *>())
            timer->blockSignals(timer == &wizard->progressTimer());
    }
    /// Lets the clock of the installation run out at once.
    void finishInstallation() const
    {
        WelcomeViewModel *wizard = wizardBehind();
        ASSERT_NE(wizard, nullptr);
        while (wizard->progressTimer().isActive())
            wizard->advance();
    }
    static void goToInstallation(const Person &person)
    {
        ASSERT_TRUE(person.click(Button, u"Next"_qs));
        ASSERT_TRUE(person.sees(Heading, u"Privacy Policy"_qs));
        ASSERT_TRUE(person.click(Button, u"Next"_qs));
        ASSERT_TRUE(person.sees(Heading, u"Conditions, Rules, and Disclaimers"_qs));
        ASSERT_TRUE(person.click(Button, u"Install"_qs));
        ASSERT_TRUE(person.sees(Heading, u"Installing Application..."_qs));
    }
    [[nodiscard]] static QString descriptionOf(const Person &person, const QString &button)
    {
        QAccessibleInterface *const found = person.find(Button, button);
        return found ? found->text(QAccessible::Description) : QString();
    }
    /// What the step of that heading scrolls in.
    [[nodiscard]] static QQuickItem *scrollerOf(const Person &person, const QString &heading)
    {
        QAccessibleInterface *const found = person.find(Heading, heading);
        auto *item = found ? qobject_cast<QQuickItem *>(found->object()) : nullptr;
        while (item && !item->property("contentY").isValid())
            item = item->parentItem();
        return item;
    }
    [[nodiscard]] bool isCompleted() const { return machine.defaults->boolean(u"hasSeenWelcome"_qs); }

    const QString title = u"Quillmere Setup Wizard"_qs;
};

} // namespace

TEST_F(WelcomeScreenTest, LiesOverEverythingOnAFirstStart)
{
    const Person person = open();

    EXPECT_TRUE(person.sees(Dialog, title));
    EXPECT_TRUE(person.sees(Heading, title));
    EXPECT_TRUE(person.reads(u"This wizard will install the application on your computer."_qs));
    EXPECT_TRUE(person.reads(u"Select language and settings"_qs));
    EXPECT_TRUE(person.reads(u"Step 1 / 5"_qs));
    EXPECT_TRUE(person.sees(RadioButton, u"English"_qs));
    EXPECT_TRUE(person.seesNo(RadioButton, u"System"_qs));
    EXPECT_TRUE(person.seesNo(Button, u"Back"_qs));
}

TEST_F(WelcomeScreenTest, IsACardOfOneSizeOverADarkLayer)
{
    const Person person = open();
    ASSERT_TRUE(person.sees(Dialog, title));

    EXPECT_TRUE(QTest::qWaitFor([&] {
        return showsItem([](const QQuickItem &item) {
            return item.property("step") == 1 && item.property("title").isValid() && item.size() == QSizeF(580, 480);
        });
    }));
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return showsItem([](const QQuickItem &item) {
            const auto color = item.property("color").value<QColor>();
            return item.size() == QSizeF(1100, 700) && color.rgb() == qRgb(0, 0, 0)
                && qAbs(color.alphaF() - 0.4) < 0.01;
        });
    }));
}

TEST_F(WelcomeScreenTest, ScrollsItsThirdStepByTheKeyboard)
{
    const Person person = open();
    ASSERT_TRUE(person.click(RadioButton, u"Русский"_qs));
    ASSERT_TRUE(person.click(Button, u"Далее"_qs));
    ASSERT_TRUE(person.click(Button, u"Далее"_qs));
    ASSERT_TRUE(person.isGivenTheKeyboardAt(u"Установить"_qs));
    const QQuickItem *const scroller = scrollerOf(person, u"Условия, правила и отказ от ответственности"_qs);
    ASSERT_NE(scroller, nullptr);
    // The text of the step is laid out with the next frame.
    const auto end = [scroller] { return scroller->property("contentHeight").toDouble() - scroller->height(); };
    ASSERT_TRUE(QTest::qWaitFor([&] { return end() > 0; }));

    person.press(Qt::Key_PageDown);
    person.press(Qt::Key_PageDown);
    EXPECT_TRUE(QTest::qWaitFor([&] { return scroller->property("contentY").toDouble() >= end(); }));

    person.press(Qt::Key_Home);
    const double top = -scroller->property("topMargin").toDouble();
    EXPECT_TRUE(QTest::qWaitFor([&] { return scroller->property("contentY").toDouble() <= top; }));
}

TEST_F(WelcomeScreenTest, DoesNotComeWhereThisVersionIsSetUp)
{
    machine.completeSetup();
    const Person person = open();

    EXPECT_TRUE(person.seesNo(Dialog, title));
}

TEST_F(WelcomeScreenTest, WalksThroughItsStepsByThePointer)
{
    const Person person = open();
    ASSERT_NO_FATAL_FAILURE(holdTheClock());
    ASSERT_NO_FATAL_FAILURE(goToInstallation(person));
    EXPECT_TRUE(person.seesNo(Button, u"Install"_qs));
    EXPECT_TRUE(person.seesNo(Button, u"Back"_qs));
    EXPECT_TRUE(person.reads(u"Copying bundle..."_qs));
    EXPECT_TRUE(person.sees(ProgressBar, u"Preparing installation..., 0%"_qs));

    finishInstallation();

    EXPECT_TRUE(person.sees(Heading, u"Installation Completed!"_qs));
    EXPECT_TRUE(person.reads(u"Quillmere was installed to: /Applications/Quillmere.app. The conditions, rules, and "
                             u"disclaimers file was saved in Application Support."_qs));
    EXPECT_TRUE(app->mainWindow()->property("showingWelcome").toBool());
    ASSERT_TRUE(person.click(Button, u"Launch"_qs));
    EXPECT_TRUE(person.seesNo(Dialog, title));
    EXPECT_FALSE(app->mainWindow()->property("showingWelcome").toBool());
    EXPECT_TRUE(isCompleted());
    EXPECT_TRUE(person.click(ListItem, u"History"_qs));
    EXPECT_EQ(app->appState().selectedTab(), SidebarTab::History);
}

TEST_F(WelcomeScreenTest, WalksThroughItsStepsByTheKeyboardAlone)
{
    const Person person = open();
    for (const QString &button : {u"Next"_qs, u"Next"_qs, u"Install"_qs}) {
        ASSERT_TRUE(person.isGivenTheKeyboardAt(button)) << button.toStdString();
        person.press(Qt::Key_Return);
        QCoreApplication::processEvents();
    }
    ASSERT_TRUE(person.sees(Heading, u"Installing Application..."_qs));

    finishInstallation();

    ASSERT_TRUE(person.isGivenTheKeyboardAt(u"Launch"_qs));
    person.press(Qt::Key_Space);
    EXPECT_TRUE(person.seesNo(Dialog, title));
    EXPECT_TRUE(isCompleted());
}

TEST_F(WelcomeScreenTest, GoesOneStepOnForTwoQuickClicks)
{
    const Person person = open();
    for (const QString &heading : {u"Privacy Policy"_qs, u"Conditions, Rules, and Disclaimers"_qs}) {
        const QPoint next = person.placeOf(Button, u"Next"_qs).center();
        QTest::mouseDClick(app->mainWindow(), Qt::LeftButton, Qt::NoModifier, next);

        ASSERT_TRUE(person.sees(Heading, heading));
        // The next two clicks are not the rest of four.
        QTest::qWait(QGuiApplication::styleHints()->mouseDoubleClickInterval() + 50);
    }
    EXPECT_TRUE(person.sees(Button, u"Install"_qs));
}

TEST_F(WelcomeScreenTest, GoesOneStepOnForAKeyThatIsHeld)
{
    const Person person = open();
    ASSERT_TRUE(person.isGivenTheKeyboardAt(u"Next"_qs));

    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        person.press(key);
        for (int i = 0; i < 5; ++i) {
            QKeyEvent again(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
            QCoreApplication::sendEvent(app->mainWindow(), &again);
            QCoreApplication::processEvents();
        }
    }

    EXPECT_TRUE(person.sees(Heading, u"Conditions, Rules, and Disclaimers"_qs));
    EXPECT_TRUE(person.sees(Button, u"Install"_qs));
}

TEST_F(WelcomeScreenTest, TellsEachStepToThoseWhoHearIt)
{
    const Person person = open();
    EXPECT_TRUE(descriptionOf(person, u"Next"_qs)
                    .startsWith(u"Quillmere Setup Wizard. This wizard will install the application"_qs));

    ASSERT_TRUE(person.click(Button, u"Next"_qs));
    ASSERT_TRUE(person.sees(Heading, u"Privacy Policy"_qs));
    EXPECT_TRUE(descriptionOf(person, u"Next"_qs).startsWith(u"Privacy Policy. We do not collect any user data."_qs));

    ASSERT_TRUE(person.click(Button, u"Next"_qs));
    EXPECT_TRUE(descriptionOf(person, u"Install"_qs)
                    .startsWith(u"Conditions, Rules, and Disclaimers. Quillmere works locally"_qs));

    ASSERT_TRUE(person.click(Button, u"Install"_qs));
    // The clock goes on meanwhile.
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return person.focusedName().contains(u"..., "_qs) && person.focusedName().endsWith(u'%'); }));
    finishInstallation();
    EXPECT_TRUE(descriptionOf(person, u"Launch"_qs)
                    .startsWith(u"Installation Completed! Quillmere was installed to: /Applications"_qs));
}

TEST_F(WelcomeScreenTest, BeginsEachStepAtItsTop)
{
    const Person person = open();
    ASSERT_TRUE(person.click(Button, u"Next"_qs));
    QQuickItem *const scroller = scrollerOf(person, u"Privacy Policy"_qs);
    ASSERT_NE(scroller, nullptr);
    const QVariant top = scroller->property("contentY");
    ASSERT_TRUE(scroller->setProperty("contentY", 20));

    ASSERT_TRUE(person.click(Button, u"Next"_qs));

    ASSERT_EQ(scrollerOf(person, u"Conditions, Rules, and Disclaimers"_qs), scroller);
    EXPECT_EQ(scroller->property("contentY"), top);
}

TEST_F(WelcomeScreenTest, KeepsTheKeyboardInside)
{
    const Person person = open();
    ASSERT_TRUE(person.isGivenTheKeyboardAt(u"Next"_qs));
    QStringList stops;
    for (int i = 0; i < 20; ++i) {
        person.press(Qt::Key_Tab);
        stops.append(person.focusedName());
    }

    EXPECT_TRUE(stops.contains(u"Language: English"_qs));
    EXPECT_TRUE(stops.contains(u"Install FUSE & NTFS Drivers"_qs));
    EXPECT_TRUE(stops.contains(u"Run without installing (one-time run)"_qs));
    EXPECT_TRUE(stops.contains(u"Next"_qs));
    EXPECT_FALSE(stops.contains(u"Dashboard"_qs));
    EXPECT_FALSE(stops.contains(QString()));
}

TEST_F(WelcomeScreenTest, EndsByNothingButItsOwnButtons)
{
    const Person person = open();
    ASSERT_TRUE(person.sees(Dialog, title));

    person.press(Qt::Key_Escape);
    person.press(Qt::Key_5, Qt::ControlModifier);
    QTest::mouseClick(app->mainWindow(), Qt::LeftButton, Qt::NoModifier, QPoint(60, 300));

    EXPECT_TRUE(person.sees(Dialog, title));
    EXPECT_EQ(app->appState().selectedTab(), SidebarTab::Dashboard);
}

TEST_F(WelcomeScreenTest, HidesTheWindowByKeyAndComesBackWithIt)
{
    const Person person = open();
    ASSERT_TRUE(person.sees(Dialog, title));

    person.press(Qt::Key_W, Qt::ControlModifier);

    EXPECT_FALSE(app->mainWindow()->isVisible());
    app->showMainWindow();
    EXPECT_TRUE(person.sees(Dialog, title));
}

TEST_F(WelcomeScreenTest, EndsTheProgramByKey)
{
    const Person person = open();
    ASSERT_TRUE(person.sees(Dialog, title));
    QTimer::singleShot(0, app.get(), [&] { person.press(Qt::Key_Q, Qt::ControlModifier); });
    QTimer::singleShot(10'000, app.get(), [] { QCoreApplication::exit(1); });

    EXPECT_EQ(QCoreApplication::exec(), 0);
    EXPECT_FALSE(isCompleted());
}

TEST_F(WelcomeScreenTest, GoesBackFromStepToStep)
{
    const Person person = open();
    ASSERT_TRUE(person.click(Button, u"Next"_qs));
    ASSERT_TRUE(person.click(Button, u"Next"_qs));

    ASSERT_TRUE(person.click(Button, u"Back"_qs));
    EXPECT_TRUE(person.sees(Heading, u"Privacy Policy"_qs));
    ASSERT_TRUE(person.click(Button, u"Back"_qs));
    EXPECT_TRUE(person.sees(Heading, title));
}

TEST_F(WelcomeScreenTest, TurnsItselfAndWhatLiesUnderItToAnotherLanguage)
{
    const Person person = open();

    ASSERT_TRUE(person.click(RadioButton, u"Español"_qs));

    EXPECT_TRUE(person.sees(Dialog, u"Asistente de instalación de Quillmere"_qs));
    EXPECT_TRUE(person.sees(Heading, u"Asistente de instalación de Quillmere"_qs));
    EXPECT_TRUE(person.sees(Button, u"Siguiente"_qs));
    EXPECT_TRUE(person.sees(ListItem, Localizer::shared().localized(u"nav.history"_qs)));
    EXPECT_EQ(app->localizer().language(), Language::Spanish);
}

TEST_F(WelcomeScreenTest, LeavesTheReceiptAloneWhenTheProgramIsRunOnce)
{
    const Person person = open();

    ASSERT_TRUE(person.click(Button, u"Run without installing (one-time run)"_qs));

    EXPECT_TRUE(person.seesNo(Dialog, title));
    EXPECT_FALSE(isCompleted());
}

TEST_F(WelcomeScreenTest, GoesOnFromWhereItIsWhenItCannotBeCopied)
{
    machine.bundles->main = FilePath("/home/ada/Downloads/Quillmere.app");
    machine.processes->answer(u"/usr/bin/osascript"_qs, [](const Command &) { return ProcessOutcome{1, {}}; });
    const Person person = open();
    ASSERT_NO_FATAL_FAILURE(goToInstallation(person));

    finishInstallation();

    EXPECT_TRUE(person.reads(u"Could not copy the app. Starting in portable mode..."_qs));
    EXPECT_TRUE(person.sees(Dialog, title));
    EXPECT_TRUE(person.seesNo(Dialog, title));
    EXPECT_FALSE(isCompleted());
}

TEST_F(WelcomeScreenTest, OpensTheTwoPagesFromItsLaterSteps)
{
    const Person person = open();
    ASSERT_TRUE(person.click(Button, u"Next"_qs));

    ASSERT_TRUE(person.click(Button, u"Developer's website"_qs));
    EXPECT_TRUE(QTest::qWaitFor([&] { return machine.workspace->opened().size() == 1; }, 10'000));
    ASSERT_TRUE(person.click(Button, u"Farhop website"_qs));
    EXPECT_TRUE(QTest::qWaitFor([&] { return machine.workspace->opened().size() == 2; }, 10'000));

    EXPECT_EQ(machine.workspace->opened().last(), QUrl(u"https://farhop.example/en/"_qs));
    EXPECT_TRUE(person.seesNo(Button, u"Run without installing (one-time run)"_qs));
}

TEST_F(WelcomeScreenTest, InstallsTheDriversWithoutStandingStill)
{
    const Gate gate;
    machine.processes->onEnd([gate] { gate.wait(); });
    const Person person = open();

    ASSERT_TRUE(person.click(Button, u"Install FUSE & NTFS Drivers"_qs));

    EXPECT_TRUE(person.reads(u"Installing drivers in the background..."_qs));
    EXPECT_FALSE(person.canUse(Button, u"Install FUSE & NTFS Drivers"_qs));
    machine.files->addFile(FilePath("/usr/local/bin/ntfs-3g"), 1);
    gate.open();
    EXPECT_TRUE(person.reads(u"FUSE & NTFS drivers are installed"_qs));
    EXPECT_TRUE(person.seesNo(Button, u"Install FUSE & NTFS Drivers"_qs));
}
