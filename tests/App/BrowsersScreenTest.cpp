#include "App/ScreensFixture.h"
#include "Fakes/Gate.h"

#include <QTest>

using namespace Quillmere;
using enum QAccessible::Role;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const FilePath chromeCache = pretendHome.appending("Library/Caches/Google/Chrome");

class BrowsersScreenTest : public ScreensFixture
{
protected:
    void install(const char *identifier) { machine.workspace->install(QString::fromLatin1(identifier)); }

    void installChrome()
    {
        install("com.google.Chrome");
        machine.files->addFile(chromeCache.appending("data"), 1'500'000);
    }

    void runChrome()
    {
        RunningApplication application;
        application.processIdentifier = 7;
        application.bundleIdentifier = u"com.google.Chrome"_qs;
        machine.workspace->start(application);
    }

    /// Opens the screen and waits until it has detected what there is.
    Person openDetected()
    {
        Person person = open(SidebarTab::Browsers);
        EXPECT_TRUE(person.reads(u"Google Chrome, Cache Size 1.5 MB"_qs));
        EXPECT_TRUE(person.seesNo(Dialog, u"Loading..."_qs));
        return person;
    }

    QList<OperationLog> records() { return HistoryService(machine.files).loadHistory(); }
};

const QString warning
    = u"Browser cache cleanup may close some sessions or make websites load slower the first time after cleaning. "
      "Passwords and bookmarks will not be deleted."_qs;
const QString cookies = u"Cookies (Will sign you out of websites)"_qs;

} // namespace

TEST_F(BrowsersScreenTest, SaysSoWhereNoBrowserIsInstalled)
{
    const Person person = open(SidebarTab::Browsers);

    EXPECT_TRUE(person.sees(StaticText, u"No browsers detected"_qs));
    EXPECT_TRUE(person.readsNo(u"Cleanup Scope"_qs));
    EXPECT_TRUE(person.readsNo(u"Browsers Detected"_qs));
    EXPECT_TRUE(person.canUse(Button, u"Scan"_qs));
}

TEST_F(BrowsersScreenTest, DetectsByItselfAndShowsWhatItFound)
{
    installChrome();
    install("com.operasoftware.Opera");
    const Person person = open(SidebarTab::Browsers);

    EXPECT_TRUE(person.sees(Heading, u"Cleanup Scope"_qs));
    EXPECT_TRUE(person.sees(Heading, u"Browsers Detected"_qs));
    EXPECT_TRUE(person.sees(ListItem, u"Google Chrome, Cache Size 1.5 MB"_qs));
    EXPECT_TRUE(person.sees(ListItem, u"Opera, Cache Size Zero KB"_qs));
    EXPECT_TRUE(person.readsNo(u"No browsers detected"_qs));
    EXPECT_TRUE(person.find(CheckBox, u"Cache (Recommended)"_qs)->state().checked);
    EXPECT_FALSE(person.find(CheckBox, cookies)->state().checked);
    EXPECT_FALSE(person.find(CheckBox, u"History"_qs)->state().checked);
}

TEST_F(BrowsersScreenTest, DetectsAgainOnRequest)
{
    const Person person = open(SidebarTab::Browsers);
    EXPECT_TRUE(person.sees(StaticText, u"No browsers detected"_qs));
    installChrome();

    ASSERT_TRUE(person.click(Button, u"Scan"_qs));

    EXPECT_TRUE(person.sees(ListItem, u"Google Chrome, Cache Size 1.5 MB"_qs));
}

TEST_F(BrowsersScreenTest, CoversTheScreenWhileItDetectsAndOffersNoWayToStop)
{
    installChrome();
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const Person person = open(SidebarTab::Browsers);

    EXPECT_TRUE(person.sees(Dialog, u"Loading..."_qs));
    EXPECT_TRUE(person.sees(StaticText, u"Detecting browsers..."_qs));
    EXPECT_TRUE(person.reads(u"10%"_qs));
    EXPECT_TRUE(person.sees(Button, u"Cancel"_qs));
    EXPECT_FALSE(person.canUse(Button, u"Cancel"_qs));
    person.press(Qt::Key_Escape);
    EXPECT_TRUE(person.sees(Dialog, u"Loading..."_qs));

    gate.open();
    EXPECT_TRUE(person.seesNo(Dialog, u"Loading..."_qs));
    EXPECT_TRUE(person.sees(ListItem, u"Google Chrome, Cache Size 1.5 MB"_qs));
}

TEST_F(BrowsersScreenTest, CleansAtOnceWithTheCacheAloneChosen)
{
    installChrome();
    const Person person = openDetected();

    ASSERT_TRUE(person.click(Button, u"Clean"_qs));

    EXPECT_TRUE(person.sees(ListItem, u"Google Chrome, Cache Size Zero KB"_qs));
    EXPECT_TRUE(person.readsNo(u"Confirm Browser Cleanup"_qs));
    EXPECT_THAT(machine.files->removed(), ElementsAre(chromeCache));
    EXPECT_EQ(records().size(), 1);
}

TEST_F(BrowsersScreenTest, SaysThatItCleansFromTheFirstToTheLastAndOffersNoWayToStop)
{
    installChrome();
    const Person person = openDetected();
    const Gate gate;
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });

    ASSERT_TRUE(person.click(Button, u"Clean"_qs));

    EXPECT_TRUE(person.sees(Dialog, u"Cleaning..."_qs));
    EXPECT_TRUE(person.sees(StaticText, u"Cleaning browser data..."_qs));
    EXPECT_TRUE(person.reads(u"50%"_qs));
    EXPECT_TRUE(person.sees(Button, u"Cancel"_qs));
    EXPECT_FALSE(person.canUse(Button, u"Cancel"_qs));
    person.press(Qt::Key_Escape);
    EXPECT_TRUE(person.sees(Dialog, u"Cleaning..."_qs));
    gate.open();
    EXPECT_TRUE(person.seesNo(Dialog, u"Cleaning..."_qs));
}

TEST_F(BrowsersScreenTest, WarnsAsLongAsMoreThanTheCacheIsChosen)
{
    installChrome();
    const Person person = openDetected();
    EXPECT_TRUE(person.readsNo(warning));

    ASSERT_TRUE(person.click(CheckBox, u"History"_qs));
    EXPECT_TRUE(person.reads(warning));
    ASSERT_TRUE(person.click(CheckBox, u"History"_qs));
    EXPECT_TRUE(person.readsNo(warning));
    ASSERT_TRUE(person.click(CheckBox, cookies));
    EXPECT_TRUE(person.reads(warning));
}

TEST_F(BrowsersScreenTest, AsksFirstWithTheHistoryChosenAndCleansOnlyWhenThatIsConfirmed)
{
    installChrome();
    const FilePath visits = pretendHome.appending("Library/Application Support/Google/Chrome/History");
    machine.files->addFile(visits, 40'000);
    const Person person = openDetected();
    ASSERT_TRUE(person.click(CheckBox, u"History"_qs));

    ASSERT_TRUE(person.click(Button, u"Clean"_qs));
    EXPECT_TRUE(person.sees(Dialog, u"Confirm Browser Cleanup"_qs));
    EXPECT_TRUE(person.isGivenTheKeyboardAt(u"Cancel"_qs));
    ASSERT_TRUE(person.click(Button, u"Cancel"_qs));
    EXPECT_TRUE(person.seesNo(Dialog, u"Confirm Browser Cleanup"_qs));
    EXPECT_THAT(machine.files->removed(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());

    ASSERT_TRUE(person.click(Button, u"Clean"_qs));
    ASSERT_TRUE(person.click(Button, u"Confirm Deletion"_qs));
    EXPECT_TRUE(person.sees(ListItem, u"Google Chrome, Cache Size Zero KB"_qs));
    EXPECT_TRUE(person.seesNo(Dialog, u"Confirm Browser Cleanup"_qs));
    EXPECT_TRUE(machine.files->contains(visits));
    EXPECT_EQ(records().value(0).filesSkipped, 1);
}

TEST_F(BrowsersScreenTest, PutsTheQuestionAwayByEscape)
{
    installChrome();
    const Person person = openDetected();
    ASSERT_TRUE(person.click(CheckBox, cookies));
    ASSERT_TRUE(person.click(Button, u"Clean"_qs));
    EXPECT_TRUE(person.isGivenTheKeyboardAt(u"Cancel"_qs));

    person.press(Qt::Key_Escape);

    EXPECT_TRUE(person.seesNo(Dialog, u"Confirm Browser Cleanup"_qs));
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(BrowsersScreenTest, OffersToQuitABrowserThatRunsAndToCleanItOnlyThen)
{
    installChrome();
    runChrome();
    const Person person = openDetected();
    EXPECT_TRUE(person.sees(ListItem, u"Google Chrome, Cache Size 1.5 MB, Running"_qs));
    EXPECT_TRUE(person.sees(StaticText, u"Running"_qs));
    EXPECT_TRUE(person.seesNo(Button, u"Clean"_qs));

    ASSERT_TRUE(person.click(Button, u"Quit Browser"_qs));

    EXPECT_TRUE(person.sees(Button, u"Clean"_qs));
    EXPECT_THAT(machine.workspace->askedToQuit(), ElementsAre(7));
    EXPECT_TRUE(person.seesNo(Button, u"Quit Browser"_qs));
    EXPECT_TRUE(person.readsNo(u"Running"_qs));
}

TEST_F(BrowsersScreenTest, IsUsedWithTheKeyboardAlone)
{
    installChrome();
    const Person person = openDetected();
    EXPECT_TRUE(person.sees(Button, u"Clean"_qs));

    ASSERT_TRUE(person.tabTo(u"Cache (Recommended)"_qs));
    person.press(Qt::Key_Space);
    EXPECT_FALSE(person.find(CheckBox, u"Cache (Recommended)"_qs)->state().checked);
    ASSERT_TRUE(person.tabTo(u"Clean"_qs));
    person.press(Qt::Key_Return);

    EXPECT_TRUE(QTest::qWaitFor([this] { return records().size() == 1; }));
    EXPECT_TRUE(person.seesNo(Dialog, u"Cleaning..."_qs));
    EXPECT_EQ(records().value(0).filesRemoved, 0);
    EXPECT_TRUE(machine.files->contains(chromeCache));
    ASSERT_TRUE(person.tabTo(u"Cache (Recommended)"_qs)) << "The keyboard outlives the row that it was in.";
    person.press(Qt::Key_Space);
    ASSERT_TRUE(person.tabTo(u"Clean"_qs));
    person.press(Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([this] { return records().size() == 2; }));
    EXPECT_TRUE(person.seesNo(Dialog, u"Cleaning..."_qs));
    EXPECT_FALSE(machine.files->contains(chromeCache));
    EXPECT_TRUE(person.tabTo(u"Clean"_qs));
}

TEST_F(BrowsersScreenTest, SwitchesByItsWordsToo)
{
    installChrome();
    const Person person = openDetected();
    const QRect toggle = person.placeOf(CheckBox, u"History"_qs);
    ASSERT_FALSE(toggle.isEmpty());

    QTest::mouseClick(app->mainWindow(), Qt::LeftButton, {}, QPoint(toggle.right() + 30, toggle.center().y()));

    EXPECT_TRUE(person.find(CheckBox, u"History"_qs)->state().checked);
}

TEST_F(BrowsersScreenTest, ForgetsTheSwitchesWithTheScreen)
{
    installChrome();
    const Person person = openDetected();
    ASSERT_TRUE(person.click(CheckBox, u"History"_qs));

    ASSERT_TRUE(person.click(ListItem, u"History"_qs));
    ASSERT_TRUE(person.click(ListItem, u"Browsers"_qs));
    EXPECT_TRUE(person.reads(u"Google Chrome, Cache Size 1.5 MB"_qs));

    EXPECT_FALSE(person.find(CheckBox, u"History"_qs)->state().checked);
}
