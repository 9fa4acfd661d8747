#include "App/ScreensFixture.h"
#include "Utilities/BackgroundWork.h"

#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

using namespace Quillmere;
using enum QAccessible::Role;

namespace {

class SettingsScreenTest : public ScreensFixture
{
protected:
    ~SettingsScreenTest() override { childProcessPool().waitForDone(); }

    [[nodiscard]] const AppSettings &settings() const { return app->appState().settings(); }
    static bool isOn(const Person &person, const QString &name)
    {
        QAccessibleInterface *found = person.find(CheckBox, name);
        return found && found->state().checked;
    }
    /// Makes the window as tall as all sections together.
    void showAll() const
    {
        app->mainWindow()->resize(1100, 1500);
        EXPECT_TRUE(QTest::qWaitFor([this] { return app->mainWindow()->contentItem()->height() == 1500; }));
    }
    Person openAll()
    {
        Person person = open(SidebarTab::Settings);
        showAll();
        return person;
    }

    static constexpr int sidebarWidth = 220;
    const QString removal = u"Remove App & Residuals (caches/settings)"_qs;
    const QString question = u"Delete App & All Data"_qs;
};

} // namespace

TEST_F(SettingsScreenTest, ShowsItsEightSectionsInTheirOrder)
{
    const Person person = openAll();

    int above = 0;
    for (const QString &name : {u"Language"_qs, u"Appearance"_qs, u"Menu Bar"_qs, u"Keep Awake Mode"_qs, u"Safety"_qs,
                                u"Permissions"_qs, u"About"_qs}) {
        const int heading = person.placeOf(Heading, name).y();
        EXPECT_GT(heading, above) << name.toStdString();
        above = heading;
    }
    const int button = person.placeOf(Button, removal).y();
    // The sidebar has a heading of the same words.
    EXPECT_TRUE(showsItem([&](const QQuickItem &item) {
        const QPointF place = item.mapToScene({});
        return item.property("text") == u"Maintenance"_qs && place.x() > sidebarWidth && place.y() > above
            && place.y() < button;
    }));
}

TEST_F(SettingsScreenTest, ChoosesWhatTheMenuBarShowsFromFourEntriesInTheirOrder)
{
    const Person person = openAll();
    ASSERT_TRUE(person.tabTo(u"Show in menu bar, Icon only"_qs));

    int mode = 0;
    for (const QString &entry : {u"CPU %"_qs, u"Traffic"_qs, u"RAM %"_qs}) {
        person.press(Qt::Key_Down);
        EXPECT_EQ(person.focusedName(), u"Show in menu bar, "_qs + entry);
        EXPECT_EQ(int(settings().menuBarDisplayMode), ++mode) << entry.toStdString();
    }
    person.press(Qt::Key_Down);
    EXPECT_EQ(settings().menuBarDisplayMode, MenuBarDisplayMode::Ram);
}

TEST_F(SettingsScreenTest, ChangesTheLanguageAtOnce)
{
    const Person person = open(SidebarTab::Settings);
    ASSERT_TRUE(person.click(ComboBox, u"Language, English"_qs));

    ASSERT_TRUE(person.click(ListItem, u"Русский"_qs) || person.click(MenuItem, u"Русский"_qs));

    EXPECT_EQ(app->localizer().language(), Language::Russian);
    EXPECT_TRUE(person.sees(Heading, u"Настройки"_qs));
    EXPECT_TRUE(person.readsNo(u"Appearance"_qs));
}

TEST_F(SettingsScreenTest, ChangesTheThemeAtOnce)
{
    const Person person = open(SidebarTab::Settings);

    ASSERT_TRUE(person.click(RadioButton, u"Dark"_qs));
    EXPECT_EQ(settings().theme, AppTheme::Dark);
    EXPECT_EQ(app->colorScheme(), ColorScheme::Dark);
    EXPECT_TRUE(person.find(RadioButton, u"Dark"_qs)->state().checked);

    ASSERT_TRUE(person.click(RadioButton, u"System"_qs));
    EXPECT_EQ(app->colorScheme(), std::nullopt);
}

TEST_F(SettingsScreenTest, SwitchesWhatIsSwitchedByPointerAndKeyboard)
{
    const Person person = openAll();
    ASSERT_TRUE(isOn(person, u"Always confirm dangerous actions"_qs));

    ASSERT_TRUE(person.click(CheckBox, u"Always confirm dangerous actions"_qs));
    EXPECT_FALSE(settings().alwaysConfirmDangerous);
    EXPECT_FALSE(isOn(person, u"Always confirm dangerous actions"_qs));

    ASSERT_TRUE(person.tabTo(u"Keep Awake Mode"_qs));
    person.press(Qt::Key_Space);
    EXPECT_TRUE(settings().keepAwakeEnabled);
    EXPECT_TRUE(isOn(person, u"Keep Awake Mode"_qs));
}

TEST_F(SettingsScreenTest, BringsWhatTheKeyboardComesToIntoSight)
{
    const Person person = open(SidebarTab::Settings);

    for (const QString &name : {removal, u"Theme, System"_qs}) {
        ASSERT_TRUE(person.tabTo(name)) << name.toStdString();
        const auto *focused = app->mainWindow()->activeFocusItem();
        const QRectF place = focused->mapRectToScene(focused->boundingRect());
        EXPECT_TRUE(QRectF(0, 0, 1100, 700).contains(place)) << name.toStdString();
    }
}

TEST_F(SettingsScreenTest, OffersTheWayToFullAccessUntilThereIsSome)
{
    const Person person = openAll();

    ASSERT_TRUE(person.click(Button, u"Open System Settings"_qs));
    EXPECT_TRUE(QTest::qWaitFor([&] { return machine.workspace->opened().size() == 1; }, 10'000));

    machine.files->addFile(FilePath("/home/ada/Library/Safari/Bookmarks.plist"), 1);
    EXPECT_TRUE(person.readsNo(u"Granted"_qs));
    app->appState().setSelectedTab(SidebarTab::History);
    app->appState().setSelectedTab(SidebarTab::Settings);
    EXPECT_TRUE(person.sees(StaticText, u"Granted"_qs));
    EXPECT_TRUE(person.seesNo(Button, u"Open System Settings"_qs));
}

TEST_F(SettingsScreenTest, SaysWhichProgramThisIs)
{
    const Person person = openAll();

    EXPECT_TRUE(person.sees(StaticText, u"Quillmere 1.3.4"_qs));
    EXPECT_TRUE(person.reads(u"Developed by: "_qs));
    EXPECT_TRUE(person.reads(u"Location: "_qs));
    EXPECT_TRUE(person.reads(u"Lead Developer: "_qs));
    EXPECT_TRUE(person.reads(u"This application performs local cleanup only."_qs));
    EXPECT_TRUE(person.click(Button, u"veltrane.example"_qs));
    EXPECT_TRUE(QTest::qWaitFor([&] { return machine.workspace->opened().size() == 1; }, 10'000));
}

TEST_F(SettingsScreenTest, ChangesNothingWhenTheRemovalIsCancelled)
{
    const FilePath history("/home/ada/Library/Application Support/Quillmere/history.json");
    machine.files->addFile(history, 10);
    const Person person = openAll();

    ASSERT_TRUE(person.click(Button, removal));
    ASSERT_TRUE(person.sees(Dialog, question));
    EXPECT_TRUE(person.reads(u"This will completely remove Quillmere and all its cached preferences"_qs));
    ASSERT_TRUE(person.click(Button, u"Cancel"_qs));

    EXPECT_TRUE(person.seesNo(Dialog, question));
    EXPECT_TRUE(machine.files->contains(history));
    EXPECT_TRUE(machine.files->removed().isEmpty());
    EXPECT_TRUE(machine.processes->launches().isEmpty());
}

TEST_F(SettingsScreenTest, RemovesTheProgramWhenAskedToAndHidesAtOnce)
{
    const FilePath history("/home/ada/Library/Application Support/Quillmere/history.json");
    machine.files->addFile(history, 10);
    machine.files->addFolder(FilePath("/tmp"));
    const Person person = openAll();
    ASSERT_TRUE(person.tabTo(removal));
    person.press(Qt::Key_Return);
    ASSERT_TRUE(person.isGivenTheKeyboardAt(u"Cancel"_qs));

    ASSERT_TRUE(person.click(Button, question));

    EXPECT_FALSE(machine.files->contains(history));
    EXPECT_EQ(machine.processes->launches(), (QList<Command>{{u"/bin/bash"_qs, {u"/tmp/uninstall.sh"_qs}}}));
    EXPECT_FALSE(app->mainWindow()->isVisible());
}

TEST_F(SettingsScreenTest, FillsTheSeparateWindowTooAndEachFollowsTheOther)
{
    const Person person = openAll();
    app->showSettings();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app->settingsWindow()));
    const Person other(*app->settingsWindow());
    ASSERT_TRUE(other.sees(Heading, u"Settings"_qs));

    ASSERT_TRUE(other.click(RadioButton, u"Light"_qs));

    EXPECT_EQ(settings().theme, AppTheme::Light);
    EXPECT_TRUE(person.find(RadioButton, u"Light"_qs)->state().checked);
}

TEST_F(SettingsScreenTest, LooksAnewWhenTheSeparateWindowIsOpenedAgain)
{
    open();
    app->showSettings();
    app->settingsWindow()->resize(720, 1500);
    const Person person(*app->settingsWindow());
    ASSERT_TRUE(person.sees(Button, u"Open System Settings"_qs));

    app->settingsWindow()->close();
    machine.files->addFile(FilePath("/home/ada/Library/Safari/Bookmarks.plist"), 1);
    app->showSettings();

    EXPECT_TRUE(person.sees(StaticText, u"Granted"_qs));
}

TEST_F(SettingsScreenTest, InstallsTheDrivers)
{
    const Person person = open(SidebarTab::Settings);
    machine.files->addFile(FilePath("/usr/local/bin/ntfs-3g"), 1);

    ASSERT_TRUE(person.click(Button, u"Install FUSE and NTFS Drivers"_qs));

    EXPECT_TRUE(person.reads(u"FUSE and NTFS drivers are installed"_qs));
    EXPECT_TRUE(person.reads(u"Installation successful!"_qs));
}
