#include "App/ScreensFixture.h"
#include "Fakes/Gate.h"
#include "ViewModels/SafeCleanupViewModel.h"

#include <QTest>

using namespace Quillmere;
using enum QAccessible::Role;

namespace {

class HiddenWindowTest : public ScreensFixture
{
protected:
    HiddenWindowTest()
    {
        machine.files->addFile(FilePath("/home/ada/Library/Caches/browser/data"), 1'500'000);
        machine.files->onMeasure([gate = scanning](const FilePath &) { gate.wait(); });
        machine.files->onRemoval([gate = cleaning](const FilePath &) { gate.wait(); });
    }

    /// Hides the window, and waits until what only a window in sight needs has been let go.
    [[nodiscard]] bool hides() const
    {
        app->mainWindow()->close();
        return QTest::qWaitFor([this] { return *machine.memoryReturns == 1; }, 20'000);
    }
    [[nodiscard]] SafeCleanupViewModel &cleanup() const
    {
        return *app->mainWindow()->findChild<SafeCleanupViewModel *>();
    }

    const Gate scanning;
    const Gate cleaning;
};

} // namespace

TEST_F(HiddenWindowTest, LetsAScanGoOnToItsEndAndShowsWhatItFoundWhenItComesBack)
{
    const Person person = open(SidebarTab::SafeCleanup);
    ASSERT_TRUE(person.click(Button, u"Start Scan"_qs));
    ASSERT_TRUE(person.sees(Dialog, u"Scanning..."_qs));

    ASSERT_TRUE(hides());
    EXPECT_TRUE(cleanup().isScanning());
    scanning.open();
    EXPECT_TRUE(QTest::qWaitFor([this] { return !cleanup().isScanning(); }));
    app->showMainWindow();

    EXPECT_TRUE(person.sees(CheckBox, u"User Cache"_qs));
    EXPECT_TRUE(person.seesNo(Dialog, u"Scanning..."_qs));
}

TEST_F(HiddenWindowTest, LetsACleanupGoOnToItsEndAndShowsItsReportWhenItComesBack)
{
    scanning.open();
    const Person person = open(SidebarTab::SafeCleanup);
    ASSERT_TRUE(person.click(Button, u"Start Scan"_qs));
    ASSERT_TRUE(person.click(Button, u"Clean"_qs));
    ASSERT_TRUE(person.sees(Dialog, u"Cleaning..."_qs));

    ASSERT_TRUE(hides());
    EXPECT_TRUE(cleanup().isCleaning());
    cleaning.open();
    EXPECT_TRUE(QTest::qWaitFor([this] { return !cleanup().isCleaning(); }));
    app->showMainWindow();

    EXPECT_TRUE(person.reads(u"Space Freed: 1.5 MB"_qs));
}

TEST_F(HiddenWindowTest, ComesBackWithTheCleanupThatTheEndOfTheProgramWaitsFor)
{
    scanning.open();
    const Person person = open(SidebarTab::SafeCleanup);
    ASSERT_TRUE(person.click(Button, u"Start Scan"_qs));
    ASSERT_TRUE(person.click(Button, u"Clean"_qs));
    ASSERT_TRUE(person.sees(Dialog, u"Cleaning..."_qs));
    app->mainWindow()->close();

    app->quit();
    EXPECT_TRUE(app->mainWindow()->isVisible());
    EXPECT_TRUE(person.sees(Dialog, u"Cleaning..."_qs));
    cleaning.open();

    EXPECT_TRUE(QTest::qWaitFor([this] { return !app->mainWindow()->isVisible(); }));
    EXPECT_EQ(HistoryService(machine.files).loadHistory().size(), 1);
}
