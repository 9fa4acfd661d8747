#include "Views/ViewsFixture.h"

#include <QTest>

using namespace Quillmere;

class ProgressOverlayTest : public ViewsFixture
{
};

TEST_F(ProgressOverlayTest, IsCancelledByEscapeAndByItsButtonAndStays)
{
    show("ProgressOverlay { objectName: 'overlay'; title: 'Scanning'; message: 'a'; onCancelled: "
         "window.note('cancelled') }");

    press(Qt::Key_Escape);
    EXPECT_EQ(log().size(), 1);

    press(Qt::Key_Return);
    EXPECT_EQ(log().size(), 2);
    EXPECT_TRUE(item(u"overlay"_qs)->isVisible());
}

TEST_F(ProgressOverlayTest, KeepsTheKeyboardAndGivesItBack)
{
    show("property bool working: false\n"
         "ActionButton { objectName: 'below'; text: 'Below'; onClicked: window.note('below') }\n"
         "ProgressOverlay { objectName: 'overlay'; visible: window.working; onCancelled: window.note('cancelled') }");
    tab();
    ASSERT_TRUE(item(u"below"_qs)->hasActiveFocus());

    m_view->rootObject()->setProperty("working", true);
    EXPECT_TRUE(hasFocusRing(u"overlay"_qs));
    tab();
    EXPECT_FALSE(item(u"below"_qs)->hasActiveFocus());
    QTest::keyClick(m_view.get(), Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_FALSE(item(u"below"_qs)->hasActiveFocus());
    press(Qt::Key_Space);
    EXPECT_EQ(log(), QStringList{u"cancelled"_qs});

    m_view->rootObject()->setProperty("working", false);
    EXPECT_TRUE(item(u"below"_qs)->hasActiveFocus());
}

TEST_F(ProgressOverlayTest, HandsTheKeyboardOnWhenWhatHadItIsGone)
{
    show("property bool working: false\n"
         "property bool begun: false\n"
         "ActionButton { objectName: 'start'; text: 'Start'; visible: !window.begun }\n"
         "ActionButton { objectName: 'next'; text: 'Next'; visible: window.begun }\n"
         "ProgressOverlay { visible: window.working }");
    tab();
    ASSERT_TRUE(item(u"start"_qs)->hasActiveFocus());

    m_view->rootObject()->setProperty("working", true);
    m_view->rootObject()->setProperty("begun", true);
    m_view->rootObject()->setProperty("working", false);

    EXPECT_TRUE(hasFocusRing(u"next"_qs));
}

TEST_F(ProgressOverlayTest, DimsWhatLiesUnderItByAThird)
{
    show("Rectangle { anchors.fill: parent; color: 'white' }\nProgressOverlay {}");

    const QColor dimmed = m_view->grabWindow().pixelColor(20, 20);

    EXPECT_NEAR(dimmed.redF(), 0.67, 0.005);
    EXPECT_EQ(dimmed, QColor(dimmed.red(), dimmed.red(), dimmed.red()));
}

TEST_F(ProgressOverlayTest, CutsALongNameInTheMiddleOf300PixelsAndFillsABarAsWide)
{
    show("ProgressOverlay { objectName: 'overlay'; message: '/home/ada/a/long/way/down/to/a/folder/with/a/name/that/is/"
         "long/too'; progress: 0.25 }");

    const QQuickItem *message = descendant("ElidingText");
    ASSERT_NE(message, nullptr);
    EXPECT_EQ(message->width(), 300);
    EXPECT_EQ(message->property("elide").toInt(), int(Qt::ElideMiddle));
    EXPECT_TRUE(message->property("truncated").toBool());
    const QQuickItem *bar = descendant("ProgressBar");
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(bar->width(), 300);
    EXPECT_EQ(bar->childItems().first()->width(), 75);
}

TEST_F(ProgressOverlayTest, FillsItsBarAtATotalOfOne)
{
    show("ProgressOverlay { objectName: 'overlay'; progress: 1.0 }");

    EXPECT_EQ(descendant("ProgressBar")->childItems().first()->width(), 300);
}

TEST_F(ProgressOverlayTest, BeginsALaterRunWithAnEmptyBarWhichThenFillsSlowly)
{
    m_appearance.setReducedMotion(false);
    show("property bool working: true\nproperty real done: 1.0\n"
         "ProgressOverlay { visible: window.working; progress: window.done }");
    QQuickItem *window = m_view->rootObject();
    const QQuickItem *fill = descendant("ProgressBar")->childItems().first();
    ASSERT_TRUE(QTest::qWaitFor([&] { return fill->width() == 300; }));

    window->setProperty("working", false);
    window->setProperty("working", true);
    window->setProperty("done", 0.0);
    EXPECT_EQ(fill->width(), 0);

    window->setProperty("done", 0.5);
    EXPECT_LT(fill->width(), 150);
    EXPECT_TRUE(QTest::qWaitFor([&] { return fill->width() == 150; }));
}

TEST_F(ProgressOverlayTest, CastsAShadowOfFourTenthsAtItsFoot)
{
    for (const bool isDark : {false, true}) {
        m_appearance.setDark(isDark);
        show("ProgressOverlay {}");
        const QQuickItem *shadow = descendant("Elevation");
        ASSERT_NE(shadow, nullptr);

        double light = 1;
        for (const QQuickItem *layer : shadow->childItems()) {
            if (layer->property("color").isValid())
                light *= 1 - layer->property("color").value<QColor>().alphaF();
        }

        EXPECT_NEAR(1 - light, 0.4, 0.01);
    }
}

TEST_F(ProgressOverlayTest, LetsNoClickThrough)
{
    show("ActionButton { objectName: 'below'; text: 'Below'; onClicked: window.note('below') }\nProgressOverlay {}");

    click(u"below"_qs);

    EXPECT_EQ(log(), QStringList());
}
