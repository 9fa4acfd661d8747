#include "App/ScreensFixture.h"
#include "Services/HistoryService.h"

#include <QGuiApplication>
#include <QStyleHints>
#include <QTest>
#include <QTimer>

#include <array>

using namespace Quillmere;
using enum QAccessible::Role;

namespace {

enum class Cover { Nothing, Alert, Sheet, Wizard };

constexpr std::array coverNames = {"Nothing", "Alert", "Sheet", "Wizard"};

struct Edge
{
    const char *name;
    QPointF share; ///< Of the window's width and height.
    Qt::Edges edges;
    Qt::CursorShape cursor;
};

const std::array edgesOfTheWindow = {
    Edge{"Top", {0.5, 0}, Qt::TopEdge, Qt::SizeVerCursor},
    Edge{"Bottom", {0.5, 1}, Qt::BottomEdge, Qt::SizeVerCursor},
    Edge{"Left", {0, 0.5}, Qt::LeftEdge, Qt::SizeHorCursor},
    Edge{"Right", {1, 0.5}, Qt::RightEdge, Qt::SizeHorCursor},
    Edge{"TopLeft", {0, 0}, Qt::TopEdge | Qt::LeftEdge, Qt::SizeFDiagCursor},
    Edge{"TopRight", {1, 0}, Qt::TopEdge | Qt::RightEdge, Qt::SizeBDiagCursor},
    Edge{"BottomLeft", {0, 1}, Qt::BottomEdge | Qt::LeftEdge, Qt::SizeBDiagCursor},
    Edge{"BottomRight", {1, 1}, Qt::BottomEdge | Qt::RightEdge, Qt::SizeFDiagCursor},
};

void collectPressedGrips(const QQuickItem &item, QList<const QQuickItem *> &grips)
{
    if (item.property("edges").isValid() && item.property("pressed").toBool())
        grips.append(&item);
    for (const QQuickItem *child : item.childItems())
        collectPressedGrips(*child, grips);
}

/// The main window's own controls, with each kind of thing over its content that has to be answered first.
class WindowTest : public ScreensFixture, public testing::WithParamInterface<Cover>
{
protected:
    WindowTest() { machine.defaults->setBoolean(u"hasSeenWelcome"_qs, GetParam() != Cover::Wizard); }

    Person openCovered()
    {
        switch (GetParam()) {
        case Cover::Nothing:
        case Cover::Wizard:
            return open();
        case Cover::Alert:
            return openAlert();
        case Cover::Sheet:
            return openSheet();
        }
        Q_UNREACHABLE();
    }
    [[nodiscard]] static bool isCovered(const Person &person)
    {
        static const QStringList titles
            = {{}, u"Clear History?"_qs, u"Cleanup Report"_qs, u"Quillmere Setup Wizard"_qs};
        return GetParam() == Cover::Nothing || person.sees(Dialog, titles.at(int(GetParam())));
    }
    /// What takes a press at that edge.
    [[nodiscard]] QList<const QQuickItem *> gripsPressedAt(const Edge &edge) const
    {
        QQuickWindow *window = app->mainWindow();
        const QPointF place(1 + edge.share.x() * (window->width() - 3), 1 + edge.share.y() * (window->height() - 3));
        QList<const QQuickItem *> grips;
        QTest::mousePress(window, Qt::LeftButton, {}, place.toPoint());
        collectPressedGrips(*window->contentItem(), grips);
        QTest::mouseRelease(window, Qt::LeftButton, {}, place.toPoint());
        return grips;
    }
    [[nodiscard]] bool becomes(QWindow::Visibility visibility) const
    {
        return QTest::qWaitFor([&] { return app->mainWindow()->visibility() == visibility; });
    }

private:
    Person openAlert()
    {
        OperationLog log;
        log.date = machine.clock->now();
        HistoryService(machine.files).save(log);
        const Person person = open(SidebarTab::History);
        EXPECT_TRUE(person.click(Button, u"Delete"_qs));
        return person;
    }
    Person openSheet()
    {
        machine.files->addFile(FilePath("/home/ada/Library/Caches/browser/data"), 1000);
        const Person person = open(SidebarTab::SafeCleanup);
        EXPECT_TRUE(person.click(Button, u"Start Scan"_qs));
        EXPECT_TRUE(person.click(Button, u"Clean"_qs));
        return person;
    }
};

} // namespace

TEST_P(WindowTest, IsHiddenByItsKeyAndComesBackAsItWas)
{
    const Person person = openCovered();
    ASSERT_TRUE(isCovered(person));

    person.press(Qt::Key_W, Qt::ControlModifier);

    EXPECT_FALSE(app->mainWindow()->isVisible());
    app->showMainWindow();
    EXPECT_TRUE(app->mainWindow()->isVisible());
    EXPECT_TRUE(isCovered(person));
}

TEST_P(WindowTest, IsHiddenByItsButtonAndComesBackAsItWas)
{
    const Person person = openCovered();
    ASSERT_TRUE(isCovered(person));

    ASSERT_TRUE(person.click(Button, u"Close window"_qs));

    EXPECT_FALSE(app->mainWindow()->isVisible());
    app->showMainWindow();
    EXPECT_TRUE(isCovered(person));
}

TEST_P(WindowTest, EndsTheProgramByItsKey)
{
    const Person person = openCovered();
    ASSERT_TRUE(isCovered(person));
    QTimer::singleShot(0, app.get(), [&] { person.press(Qt::Key_Q, Qt::ControlModifier); });
    QTimer::singleShot(10'000, app.get(), [] { QCoreApplication::exit(1); });

    EXPECT_EQ(QCoreApplication::exec(), 0);
}

TEST_P(WindowTest, OpensTheSettingsWindowByItsKey)
{
    const Person person = openCovered();
    ASSERT_TRUE(isCovered(person));

    person.press(Qt::Key_Comma, Qt::ControlModifier);

    ASSERT_NE(app->settingsWindow(), nullptr);
    EXPECT_TRUE(app->settingsWindow()->isVisible());
}

TEST_P(WindowTest, IsMinimisedByItsButton)
{
    const Person person = openCovered();
    ASSERT_TRUE(isCovered(person));

    ASSERT_TRUE(person.click(Button, Localizer::shared().localized(u"control.minimize"_qs)));

    EXPECT_TRUE(becomes(QWindow::Minimized));
}

TEST_P(WindowTest, IsMaximisedAndRestoredByADoubleClickOnItsTop)
{
    const Person person = openCovered();
    ASSERT_TRUE(isCovered(person));

    QTest::mouseDClick(app->mainWindow(), Qt::LeftButton, {}, QPoint(500, 26));
    EXPECT_TRUE(becomes(QWindow::Maximized));

    // The next two clicks are not the rest of four.
    QTest::qWait(QGuiApplication::styleHints()->mouseDoubleClickInterval() + 50);
    QTest::mouseDClick(app->mainWindow(), Qt::LeftButton, {}, QPoint(500, 26));
    EXPECT_TRUE(becomes(QWindow::Windowed));
}

TEST_P(WindowTest, IsTakenHoldOfByEachOfItsEdgesAndCorners)
{
    const Person person = openCovered();
    ASSERT_TRUE(isCovered(person));

    for (const Edge &edge : edgesOfTheWindow) {
        const QList<const QQuickItem *> grips = gripsPressedAt(edge);
        ASSERT_EQ(grips.size(), 1) << edge.name;
        EXPECT_EQ(grips.first()->property("edges").toInt(), edge.edges.toInt()) << edge.name;
        EXPECT_EQ(grips.first()->property("cursorShape").toInt(), int(edge.cursor)) << edge.name;
    }
}

TEST_P(WindowTest, HasNoEdgesToTakeHoldOfWhileItIsMaximised)
{
    const Person person = openCovered();
    ASSERT_TRUE(isCovered(person));
    app->mainWindow()->showMaximized();
    ASSERT_TRUE(becomes(QWindow::Maximized));

    for (const Edge &edge : edgesOfTheWindow)
        EXPECT_TRUE(gripsPressedAt(edge).isEmpty()) << edge.name;
}

TEST_P(WindowTest, GoesToAnotherScreenByKeyOnlyWhereNothingHasToBeAnsweredFirst)
{
    const Person person = openCovered();
    ASSERT_TRUE(isCovered(person));
    const SidebarTab tab = app->appState().selectedTab();

    person.press(Qt::Key_4, Qt::ControlModifier);

    EXPECT_EQ(app->appState().selectedTab(), GetParam() == Cover::Nothing ? SidebarTab::LargeFiles : tab);
}

INSTANTIATE_TEST_SUITE_P(Covers, WindowTest, testing::Values(Cover::Nothing, Cover::Alert, Cover::Sheet, Cover::Wizard),
                         [](const auto &info) { return std::string(coverNames.at(size_t(info.param))); });
