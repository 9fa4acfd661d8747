#include "Views/ViewsFixture.h"

#include <QTest>

using namespace Quillmere;

/// A list of twenty rows, four of which are in sight. Its menu tells what it was asked about, and where the keyboard
/// is.
class ListsTest : public ViewsFixture
{
protected:
    void showList()
    {
        show("ListModel { id: things; Component.onCompleted: { for (let i = 0; i < 20; ++i) "
             "append({label: 'thing'}) } }\n"
             "function removeLast() { things.remove(things.count - 1) }\n"
             "KeyedList { id: list; objectName: 'list'; width: 300; height: 240; accessibleName: 'Things'; model: "
             "things; menu: RowMenu { id: rowMenu; list: list; ContextMenuItem { text: 'Show'; onTriggered: "
             "rowMenu.chosen = record => window.note(record + ' ' + list.activeFocus) } } "
             "delegate: MenuListRow { objectName: 'row' + index; width: 300; moreX: 250; menu: rowMenu; record: "
             "'record ' + index; onActivated: window.note('activated ' + index) } }");
    }
    /// The same list; what is chosen from its menu is asked about first, and F5 begins work that covers it.
    void showListWithAQuestion()
    {
        show("property bool asks: false\nproperty bool works: false\n"
             "KeyedList { id: list; width: 300; height: 240; model: 20; menu: RowMenu { id: rowMenu; list: list; "
             "ContextMenuItem { objectName: 'choice'; text: 'Do'; onTriggered: rowMenu.chosen = () => window.asks = "
             "true } } "
             "delegate: MenuListRow { objectName: 'row' + index; width: 300; moreX: 250; menu: rowMenu } }\n"
             "AlertDialog { visible: window.asks; title: 'Sure?'; confirmText: 'Do'; cancelText: 'Cancel'; "
             "onDismissed: window.asks = false }\n"
             "ProgressOverlay { objectName: 'overlay'; visible: window.works }");
    }
    void work(bool works) const { m_view->rootObject()->setProperty("works", works); }
    [[nodiscard]] bool isAsked() const
    {
        return QTest::qWaitFor([this] { return focused() && focusedName() == u"Cancel"_qs; });
    }
    [[nodiscard]] bool comesBackTo(const QString &row) const
    {
        return QTest::qWaitFor([&] { return focused() && focusedRow() == row; });
    }

    /// All of the row that has the keyboard.
    [[nodiscard]] bool isInSight() const
    {
        const QQuickItem *list = descendant("KeyedList");
        return QTest::qWaitFor([&] {
            const QRectF row = focused()->mapRectToItem(list, focused()->boundingRect());
            return row.top() >= 0 && row.bottom() <= list->height();
        });
    }

    [[nodiscard]] QString focusedRow() const { return focused()->objectName(); }
    [[nodiscard]] bool menuIsOpen() const
    {
        const auto *menu = descendant("KeyedList")->property("menu").value<QObject *>();
        return QTest::qWaitFor([menu] { return menu->property("opened").toBool(); });
    }
};

TEST_F(ListsTest, ListIsOneStopForTabWhoseRowsAreReachedByArrowsHomeEndAndPageKeys)
{
    showList();

    tab();
    EXPECT_EQ(focusedRow(), u"row0"_qs);
    press(Qt::Key_Down);
    EXPECT_EQ(focusedRow(), u"row1"_qs);
    press(Qt::Key_PageDown);
    EXPECT_EQ(focusedRow(), u"row4"_qs);
    EXPECT_TRUE(isInSight());
    press(Qt::Key_PageUp);
    EXPECT_EQ(focusedRow(), u"row1"_qs);
    press(Qt::Key_End);
    EXPECT_EQ(focusedRow(), u"row19"_qs);
    EXPECT_TRUE(isInSight());
    press(Qt::Key_Home);
    EXPECT_EQ(focusedRow(), u"row0"_qs);
    EXPECT_TRUE(isInSight());
    tab();
    EXPECT_EQ(focusedRow(), u"row0"_qs) << "There is nothing else that Tab could lead to.";
}

TEST_F(ListsTest, RowWearsTheRingOnlyWhereTheKeyboardCameByKeys)
{
    showList();

    click(u"row1"_qs);
    EXPECT_EQ(focusedRow(), u"row1"_qs);
    EXPECT_FALSE(hasFocusRing(u"row1"_qs));

    press(Qt::Key_Down);
    EXPECT_TRUE(hasFocusRing(u"row2"_qs));
    EXPECT_FALSE(hasFocusRing(u"row1"_qs));
}

TEST_F(ListsTest, RowIsActivatedByReturnSpaceAndAssistiveTools)
{
    showList();
    tab();

    press(Qt::Key_Return);
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    accessible(u"row2"_qs)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());

    EXPECT_EQ(log(), QStringList({u"activated 0"_qs, u"activated 1"_qs, u"activated 2"_qs}));
}

TEST_F(ListsTest, RowIsActivatedOnceByAKeyThatIsHeld)
{
    showList();
    tab();

    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        press(key);
        for (int i = 0; i < 3; ++i) {
            QKeyEvent again(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
            QCoreApplication::sendEvent(m_view.get(), &again);
        }
    }

    EXPECT_EQ(log(), QStringList({u"activated 0"_qs, u"activated 0"_qs, u"activated 0"_qs}));
}

TEST_F(ListsTest, MenuOfARowDoesWhatWasChosenOnceTheKeyboardIsBackInTheList)
{
    showList();
    tab();
    press(Qt::Key_Down);

    press(Qt::Key_Menu);
    ASSERT_TRUE(menuIsOpen());
    EXPECT_EQ(log(), QStringList());
    press(Qt::Key_Return);

    EXPECT_TRUE(QTest::qWaitFor([this] { return log() == QStringList{u"record 1 true"_qs}; }));
    EXPECT_EQ(focusedRow(), u"row1"_qs);
    EXPECT_TRUE(hasFocusRing(u"row1"_qs));
}

TEST_F(ListsTest, MenuOfARowThatIsLeftDoesNothing)
{
    showList();
    QTest::mouseClick(m_view.get(), Qt::RightButton, {}, middle(u"row2"_qs));
    ASSERT_TRUE(menuIsOpen());

    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, {600, 400});

    EXPECT_TRUE(QTest::qWaitFor([this] { return focusedRow() == u"row2"_qs; }));
    EXPECT_FALSE(hasFocusRing(u"row2"_qs));
    EXPECT_EQ(log(), QStringList());
}

TEST_F(ListsTest, KeyboardGoesToTheLastRowWhenItsOwnHasGone)
{
    showList();
    tab();
    press(Qt::Key_End);
    ASSERT_EQ(focusedRow(), u"row19"_qs);

    ASSERT_TRUE(QMetaObject::invokeMethod(m_view->rootObject(), "removeLast"));

    EXPECT_TRUE(QTest::qWaitFor([this] { return focusedRow() == u"row18"_qs; }));
}

TEST_F(ListsTest, QuestionOverAListIsMarkedForWhoeverCameToItByKeys)
{
    showListWithAQuestion();
    tab();
    press(Qt::Key_Down);
    press(Qt::Key_Menu);
    ASSERT_TRUE(menuIsOpen());

    press(Qt::Key_Return);

    ASSERT_TRUE(isAsked());
    EXPECT_TRUE(focused()->property("visualFocus").toBool());
    press(Qt::Key_Escape);
    ASSERT_TRUE(comesBackTo(u"row1"_qs));
    EXPECT_TRUE(hasFocusRing(u"row1"_qs));
}

TEST_F(ListsTest, QuestionOverAListLeavesNoMarkForWhoeverPointedAtIt)
{
    showListWithAQuestion();
    QTest::mouseClick(m_view.get(), Qt::RightButton, {}, middle(u"row2"_qs));
    ASSERT_TRUE(menuIsOpen());

    click(u"choice"_qs);

    ASSERT_TRUE(isAsked());
    EXPECT_FALSE(focused()->property("visualFocus").toBool());
    const QQuickItem *cancel = focused();
    const QPointF onCancel = cancel->mapToScene(QPointF(cancel->width() / 2, cancel->height() / 2));
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, onCancel.toPoint());
    ASSERT_TRUE(comesBackTo(u"row2"_qs));
    EXPECT_FALSE(hasFocusRing(u"row2"_qs));
}

TEST_F(ListsTest, WorkOverAListGivesTheKeyboardBackAsItWas)
{
    showListWithAQuestion();
    tab();
    press(Qt::Key_Down);

    work(true);
    EXPECT_TRUE(hasFocusRing(u"overlay"_qs));
    work(false);
    EXPECT_EQ(focusedRow(), u"row1"_qs);
    EXPECT_TRUE(hasFocusRing(u"row1"_qs));

    click(u"row2"_qs);
    work(true);
    EXPECT_FALSE(hasFocusRing(u"overlay"_qs));
    work(false);
    EXPECT_EQ(focusedRow(), u"row2"_qs);
    EXPECT_FALSE(hasFocusRing(u"row2"_qs));
}
