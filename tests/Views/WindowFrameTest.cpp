#include "Views/ViewsFixture.h"
#include "Views/WatchedView.h"

#include <QGuiApplication>
#include <QStyleHints>
#include <QTest>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;

namespace {

struct FrameCase
{
    const char *name;
    const char *qml;
};

/// The edges and the top of a window, by themselves and over what covers it.
class WindowFrameTest : public ViewsFixture, public testing::WithParamInterface<FrameCase>
{
protected:
    void SetUp() override { show(GetParam().qml); }

    [[nodiscard]] std::unique_ptr<QQuickView> makeView() const override { return std::make_unique<WatchedView>(); }
    [[nodiscard]] const WatchedView &window() const { return static_cast<const WatchedView &>(*m_view); }

    void drag(const QPoint &from)
    {
        QTest::mousePress(m_view.get(), Qt::LeftButton, {}, from);
        for (int step = 10; step <= 40; step += 10)
            QTest::mouseMove(m_view.get(), from + QPoint(step, 0));
        QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, from + QPoint(40, 0));
    }
};

} // namespace

TEST_P(WindowFrameTest, HasTheDesktopResizeTheWindowByTheEdgeThatIsPressed)
{
    for (const QPoint &place : {QPoint(320, 0), QPoint(639, 0), QPoint(639, 240), QPoint(639, 479), QPoint(320, 479),
                                QPoint(0, 479), QPoint(0, 240), QPoint(1, 1)})
        QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, place);

    EXPECT_THAT(window().resizes,
                ElementsAre(Qt::TopEdge, Qt::TopEdge | Qt::RightEdge, Qt::RightEdge, Qt::BottomEdge | Qt::RightEdge,
                            Qt::BottomEdge, Qt::BottomEdge | Qt::LeftEdge, Qt::LeftEdge, Qt::TopEdge | Qt::LeftEdge));
}

TEST_P(WindowFrameTest, HasTheDesktopMoveTheWindowByItsTop)
{
    drag(QPoint(100, 20));
    EXPECT_EQ(window().moves, 1);

    drag(QPoint(100, 60));
    EXPECT_EQ(window().moves, 1);
}

TEST_P(WindowFrameTest, IsMaximisedAndRestoredByADoubleClickOnItsTop)
{
    QTest::mouseDClick(m_view.get(), Qt::LeftButton, {}, QPoint(100, 20));
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_view->visibility() == QWindow::Maximized; }));

    // The next two clicks are not the rest of four.
    QTest::qWait(QGuiApplication::styleHints()->mouseDoubleClickInterval() + 50);
    QTest::mouseDClick(m_view.get(), Qt::LeftButton, {}, QPoint(100, 20));
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_view->visibility() == QWindow::Windowed; }));
}

INSTANTIATE_TEST_SUITE_P(
    Covers, WindowFrameTest,
    testing::Values(
        FrameCase{"Nothing",
                  "WindowDragArea { width: parent.width; height: 52 }\nWindowFrame { anchors.fill: parent }"},
        FrameCase{"Work", "Item { anchors.fill: parent; ProgressOverlay {} }\nWindowFrame { anchors.fill: parent }"},
        FrameCase{"Alert", "AlertDialog { visible: true; title: 'Sure?'; confirmText: 'Yes' }"},
        FrameCase{"Sheet", "Sheet { visible: true; title: 'Report'; sheetWidth: 300; Item { height: 100 } }"}),
    [](const auto &info) { return info.param.name; });
