#include "App/AppDelegate.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QTest>

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

class AppDelegateTest : public testing::Test
{
protected:
    AppDelegateTest() { delegate.applicationDidFinishLaunching(); }

    static void show(QWindow &window, const QString &title)
    {
        window.setTitle(title);
        window.resize(100, 100);
        window.show();
        window.requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    /// As a window manager does it; true when the window agreed to close.
    static bool clickClose(QWindow &window)
    {
        QCloseEvent event;
        QCoreApplication::sendEvent(&window, &event);
        return event.isAccepted();
    }

    AppDelegate delegate;
};

} // namespace

TEST(AppDelegateLifeTest, IsSharedFromTheEndOfLaunchingToItsOwnEnd)
{
    EXPECT_EQ(AppDelegate::shared(), nullptr);
    {
        AppDelegate delegate;
        EXPECT_EQ(AppDelegate::shared(), nullptr);
        delegate.applicationDidFinishLaunching();
        EXPECT_EQ(AppDelegate::shared(), &delegate);
    }
    EXPECT_EQ(AppDelegate::shared(), nullptr);
}

TEST_F(AppDelegateTest, HidesTheMainWindowInsteadOfClosingIt)
{
    QWindow window;
    show(window, u"Quillmere"_qs);

    EXPECT_FALSE(clickClose(window));

    EXPECT_FALSE(window.isVisible());
    EXPECT_NE(window.handle(), nullptr);
    window.show();
    EXPECT_TRUE(window.isVisible());
}

TEST_F(AppDelegateTest, ClosesTheSettingsWindowInTheOrdinaryWay)
{
    QWindow window;
    show(window, u"Settings"_qs);

    EXPECT_TRUE(clickClose(window));
}

TEST_F(AppDelegateTest, ComparesWithTheEnglishWordWhateverTheLanguage)
{
    QWindow window;
    show(window, u"Ajustes"_qs);

    EXPECT_FALSE(clickClose(window));
}

TEST_F(AppDelegateTest, LeavesAWindowWithoutATitleItsOwnWayOfClosing)
{
    QWindow window;
    show(window, QString());

    EXPECT_TRUE(clickClose(window));
}

TEST_F(AppDelegateTest, MayLookAtTheSameWindowAgain)
{
    QWindow window;
    show(window, u"Quillmere"_qs);
    delegate.windowDidBecomeKey(&window);
    delegate.windowDidBecomeKey(&window);

    EXPECT_FALSE(clickClose(window));
    EXPECT_FALSE(window.isVisible());
}

TEST_F(AppDelegateTest, DoesNothingWithoutAnyWindow)
{
    ASSERT_TRUE(QGuiApplication::topLevelWindows().isEmpty());

    delegate.handleCloseClick();

    EXPECT_TRUE(QGuiApplication::topLevelWindows().isEmpty());
}

TEST_F(AppDelegateTest, HidesTheFirstWindowWhenNoneIsKey)
{
    QWindow first;
    QWindow second;
    for (QWindow *window : {&first, &second}) {
        window->setFlag(Qt::WindowDoesNotAcceptFocus);
        window->show();
    }
    ASSERT_EQ(QGuiApplication::focusWindow(), nullptr);

    delegate.handleCloseClick();

    EXPECT_FALSE(first.isVisible());
    EXPECT_TRUE(second.isVisible());
}

TEST_F(AppDelegateTest, HidesTheKeyWindowWhicheverAskedToBeClosed)
{
    QWindow behind;
    show(behind, u"Quillmere"_qs);
    QWindow front;
    show(front, u"Settings"_qs);

    EXPECT_FALSE(clickClose(behind));

    EXPECT_TRUE(behind.isVisible());
    EXPECT_FALSE(front.isVisible());
}

TEST_F(AppDelegateTest, LeavesAPanelThatBelongsToAWindowItsOwnWayOfClosing)
{
    QWindow window;
    show(window, u"Quillmere"_qs);
    QWindow panel;
    panel.setTransientParent(&window);
    show(panel, u"Save As"_qs);

    EXPECT_TRUE(clickClose(panel));
}
