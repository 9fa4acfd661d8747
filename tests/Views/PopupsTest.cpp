#include "Views/ViewsFixture.h"

#include <QTest>

using namespace Quillmere;

class PopupsTest : public ViewsFixture
{
};

TEST_F(PopupsTest, SheetIsDismissedByEscapeAndItsButtonAndKeepsTheKeyboardInside)
{
    show("property bool open: false\n"
         "ActionButton { objectName: 'below'; text: 'Below'; onClicked: window.open = true }\n"
         "Sheet { id: sheet; visible: window.open; title: 'Report'; onDismissed: { window.note('dismissed'); "
         "window.open = false } ActionButton { text: 'Inside'; onClicked: window.note('inside') } }");
    tab();
    press(Qt::Key_Space);
    ASSERT_TRUE(QTest::qWaitFor([this] { return focused() && focused()->property("text").toString() != u"Below"_qs; }));

    for (int i = 0; i < 5; ++i) {
        tab();
        EXPECT_NE(focused()->property("text").toString(), u"Below"_qs);
        EXPECT_TRUE(focused()->property("visualFocus").toBool());
    }
    press(Qt::Key_Escape);

    EXPECT_EQ(log(), QStringList{u"dismissed"_qs});
    EXPECT_TRUE(QTest::qWaitFor([this] { return item(u"below"_qs)->hasActiveFocus(); }));
}

TEST_F(PopupsTest, SheetStays22FromTheEdgeOfASmallWindowAndScrollsInside)
{
    show("Sheet { visible: true; title: 'Long'; Rectangle { objectName: 'inside'; width: 10; height: 2000 } }");
    const QQuickItem *surface = item(u"inside"_qs);
    while (surface && QAccessible::queryAccessibleInterface(const_cast<QQuickItem *>(surface)) == nullptr)
        surface = surface->parentItem();
    ASSERT_NE(surface, nullptr);

    EXPECT_EQ(surface->mapRectToScene(surface->boundingRect()), QRectF(22, 22, 640 - 44, 480 - 44));
}

TEST_F(PopupsTest, WindowButtonsBesideASheetWearTheRingThatStandsOutFromADimmedGround)
{
    show("Sheet { visible: true; title: 'Report'; ActionButton { text: 'Inside' } }");
    const auto isOnAWindowButton
        = [this] { return focused() && focused()->property("symbol").toString().startsWith(u"window."_qs); };
    for (int i = 0; i < 6 && !isOnAWindowButton(); ++i)
        tab();
    ASSERT_TRUE(isOnAWindowButton());

    for (const bool dark : {false, true}) {
        m_appearance.setDark(dark);
        EXPECT_TRUE(showsRing(focused(), theme("dimmedFocusRing"))) << (dark ? "dark" : "light");
        EXPECT_EQ(focused()->property("color"), theme("dimmedSymbol")) << (dark ? "dark" : "light");
    }
}

TEST_F(PopupsTest, AlertIsConfirmedByItsRightButtonAndDismissedByEscape)
{
    show("AlertDialog { objectName: 'alert'; visible: true; destructive: true; title: 'Sure?'; message: 'No way back'; "
         "cancelText: 'Cancel'; confirmText: 'Erase'; onConfirmed: window.note('confirmed'); "
         "onDismissed: window.note('dismissed') }");
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return focused() && focused()->property("text").toString() == u"Cancel"_qs; }));

    press(Qt::Key_Escape);
    tab();
    EXPECT_EQ(focused()->property("text").toString(), u"Erase"_qs);
    EXPECT_GT(focused()->x(), 100);
    press(Qt::Key_Return);

    EXPECT_EQ(log(), (QStringList{u"dismissed"_qs, u"confirmed"_qs}));
}

TEST_F(PopupsTest, AlertPutsItsButtonsInAColumnWhenTheirTextsAreLong)
{
    show("AlertDialog { objectName: 'alert'; visible: true; title: 'Sure?'; cancelText: 'Leave everything as it is "
         "now'; "
         "confirmText: 'Erase everything on this drive' }");

    QObject *alert = m_view->rootObject()->findChild<QObject *>(u"alert"_qs);
    EXPECT_TRUE(alert->property("stacked").toBool());
}

TEST_F(PopupsTest, ButtonBarBecomesAColumnWhenItIsTooNarrow)
{
    const QByteArray buttons = "ActionButton { text: 'Select All' } ActionButton { text: 'Deselect All' } "
                               "trailing: ActionButton { text: 'Clean'; kind: ActionButton.Primary } }\n";
    show("ButtonBar { objectName: 'wide'; width: 600; " + buttons
         + "ButtonBar { objectName: 'narrow'; y: 200; width: 300; " + buttons);

    EXPECT_EQ(item(u"wide"_qs)->implicitHeight(), 64);
    EXPECT_GT(item(u"narrow"_qs)->implicitHeight(), 90);
}
