#include "App/ScreensFixture.h"
#include "Fakes/Gate.h"
#include "Services/HistoryService.h"

#include <QTest>

using namespace Quillmere;
using enum QAccessible::Role;

namespace {

/// What stands over a screen, or beside it, while the language changes.
class LanguageChangeTest : public ScreensFixture
{
protected:
    Person scan()
    {
        machine.files->addFile(FilePath("/home/ada/Library/Caches/browser/data"), 1'500'000);
        const Person person = open(SidebarTab::SafeCleanup);
        EXPECT_TRUE(person.click(Button, u"Start Scan"_qs));
        return person;
    }
};

} // namespace

TEST_F(LanguageChangeTest, TurnsTheSectionsAndRowsOfTheSidebar)
{
    const Person person = open();

    app->localizer().setLanguage(Language::Spanish);

    for (const char *key : {"sidebar.overview", "sidebar.cleanup", "sidebar.analysis", "sidebar.system",
                            "sidebar.maintenance", "sidebar.app"}) {
        const QString header = Localizer::shared().localized(QString::fromLatin1(key));
        EXPECT_TRUE(person.sees(Heading, header)) << header.toStdString();
    }
    EXPECT_TRUE(person.sees(ListItem, u"Historial"_qs));
    EXPECT_TRUE(person.seesNo(Heading, u"Cleanup"_qs));
}

TEST_F(LanguageChangeTest, TurnsAnOpenAlert)
{
    OperationLog log;
    log.date = machine.clock->now();
    HistoryService(machine.files).save(log);
    const Person person = open(SidebarTab::History);
    ASSERT_TRUE(person.click(Button, u"Delete"_qs));
    ASSERT_TRUE(person.sees(Dialog, u"Clear History?"_qs));

    app->localizer().setLanguage(Language::Spanish);

    EXPECT_TRUE(person.sees(Dialog, u"¿Borrar el historial?"_qs));
    EXPECT_TRUE(person.sees(Heading, u"¿Borrar el historial?"_qs));
    EXPECT_TRUE(person.sees(Button, u"Borrar todo"_qs));
    EXPECT_TRUE(person.seesNo(Button, u"Clear All"_qs));
}

TEST_F(LanguageChangeTest, TurnsAnOpenSheet)
{
    const Person person = scan();
    ASSERT_TRUE(person.click(Button, u"Clean"_qs));
    ASSERT_TRUE(person.sees(Dialog, u"Cleanup Report"_qs));

    app->localizer().setLanguage(Language::Spanish);

    EXPECT_TRUE(person.sees(Dialog, u"Informe de limpieza"_qs));
    EXPECT_TRUE(person.reads(u"Espacio liberado: 1,5 MB"_qs));
    EXPECT_TRUE(person.readsNo(u"Cleanup Report"_qs));
}

TEST_F(LanguageChangeTest, TurnsTheWorkThatIsShown)
{
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const Person person = scan();
    ASSERT_TRUE(person.sees(Dialog, u"Scanning..."_qs));

    app->localizer().setLanguage(Language::Spanish);

    EXPECT_TRUE(person.sees(Dialog, u"Analizando..."_qs));
    EXPECT_TRUE(person.sees(Button, u"Cancelar"_qs));
    gate.open();
    EXPECT_TRUE(person.seesNo(Dialog, u"Analizando..."_qs));
}

TEST_F(LanguageChangeTest, TurnsTheSettingsWindowWhoseTitleStays)
{
    (void)open();
    app->showSettings();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app->settingsWindow()));
    const Person person(*app->settingsWindow());
    ASSERT_TRUE(person.sees(Heading, u"Appearance"_qs));

    app->localizer().setLanguage(Language::Spanish);

    EXPECT_TRUE(person.sees(Heading, u"Apariencia"_qs));
    EXPECT_TRUE(person.seesNo(Heading, u"Appearance"_qs));
    EXPECT_EQ(app->settingsWindow()->title(), u"Settings"_qs);
}
