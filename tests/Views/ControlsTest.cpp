#include "Views/ViewsFixture.h"

#include <QTest>

using namespace Quillmere;

namespace {

/// A control that can be pressed: how to write it, and what it tells when it is.
struct PressableCase
{
    const char *name;
    const char *qml; ///< With the objectName "control" and the accessible name "Do it"; notes "pressed".
    QAccessible::Role role;
};

const PressableCase pressables[] = {
    {"ActionButton", "ActionButton { objectName: 'control'; text: 'Do it'; onClicked: window.note('pressed') }",
     QAccessible::Button},
    {"PrimaryButton",
     "ActionButton { objectName: 'control'; kind: ActionButton.Primary; text: 'Do it'; onClicked: "
     "window.note('pressed') }",
     QAccessible::Button},
    {"IconButton",
     "IconButton { objectName: 'control'; symbol: 'clear'; accessibleName: 'Do it'; onClicked: window.note('pressed') "
     "}",
     QAccessible::Button},
    {"Toggle", "Toggle { objectName: 'control'; accessibleName: 'Do it'; onSwitched: on => window.note('pressed') }",
     QAccessible::CheckBox},
    {"QuickActionCard",
     "QuickActionCard { objectName: 'control'; title: 'Do it'; symbol: 'globe'; onClicked: window.note('pressed') }",
     QAccessible::Button},
    {"HeroButton", "HeroButton { objectName: 'control'; width: 200; text: 'Do it'; onClicked: window.note('pressed') }",
     QAccessible::Button},
    {"SidebarRow", "SidebarRow { objectName: 'control'; text: 'Do it'; onClicked: window.note('pressed') }",
     QAccessible::ListItem},
    {"PromotionCard",
     "PromotionCard { objectName: 'control'; accessibleName: 'Do it'; onClicked: window.note('pressed') }",
     QAccessible::Button},
    {"ListRow",
     "ListRow { objectName: 'control'; width: 300; accessibleName: 'Do it'; onClicked: window.note('pressed') }",
     QAccessible::ListItem},
    {"SortableTableHeader",
     "TableHeader { objectName: 'control'; width: 90; text: 'Do it'; onClicked: window.note('pressed') "
     "}",
     QAccessible::Button},
};

} // namespace

class PressableTest : public ViewsFixture, public testing::WithParamInterface<PressableCase>
{
protected:
    void SetUp() override
    {
        show(QByteArray("Item { x: 60; y: 60; width: 400; height: 300; ") + GetParam().qml + " }");
    }

    const QStringList once{u"pressed"_qs};
};

TEST_P(PressableTest, IsPressedByAClick)
{
    click(u"control"_qs);

    EXPECT_EQ(log(), once);
}

TEST_P(PressableTest, IsPressedBySpaceAndByEnterWhenTabHasReachedIt)
{
    tab();
    press(Qt::Key_Space);
    EXPECT_EQ(log(), once);

    press(Qt::Key_Return);
    press(Qt::Key_Enter);
    EXPECT_EQ(log().size(), 3);
}

TEST_P(PressableTest, IsPressedOnceByEnterThatIsHeld)
{
    tab();

    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        press(key);
        for (int i = 0; i < 3; ++i) {
            QKeyEvent again(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
            QCoreApplication::sendEvent(m_view.get(), &again);
        }
    }

    EXPECT_EQ(log().size(), 2);
}

TEST_P(PressableTest, DoesNothingWhileDisabled)
{
    item(u"control"_qs)->setEnabled(false);

    click(u"control"_qs);
    tab();
    press(Qt::Key_Space);
    press(Qt::Key_Return);
    QAccessibleActionInterface *actions = accessible(u"control"_qs)->actionInterface();
    actions->doAction(QAccessibleActionInterface::pressAction());

    EXPECT_EQ(log(), QStringList());
}

TEST_P(PressableTest, ShowsItsRingToTheKeyboardOnly)
{
    click(u"control"_qs);
    EXPECT_FALSE(hasFocusRing(u"control"_qs));

    item(u"control"_qs)->setFocus(false);
    tab();
    EXPECT_TRUE(hasFocusRing(u"control"_qs));
}

TEST_P(PressableTest, TellsAssistiveToolsItsRoleAndNameAndIsPressedByThemOnce)
{
    QAccessibleInterface *control = accessible(u"control"_qs);
    ASSERT_TRUE(control);
    EXPECT_EQ(control->role(), GetParam().role);
    EXPECT_EQ(control->text(QAccessible::Name), u"Do it"_qs);

    ASSERT_TRUE(control->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
    control->actionInterface()->doAction(QAccessibleActionInterface::pressAction());

    EXPECT_EQ(log(), once);
}

TEST_P(PressableTest, CanBeHitInASquareOf36)
{
    const QQuickItem *control = item(u"control"_qs);
    const QPointF centre(control->width() / 2, control->height() / 2);
    for (const QPointF &corner : {QPointF(-17, -17), QPointF(17, -17), QPointF(-17, 17), QPointF(17, 17)}) {
        // Sidebar rows stand edge to edge, so one cannot reach into the next.
        if (GetParam().role == QAccessible::ListItem && control->height() < 36)
            continue;
        EXPECT_TRUE(control->contains(centre + corner)) << corner.x() << ", " << corner.y();
    }
}

INSTANTIATE_TEST_SUITE_P(Controls, PressableTest, testing::ValuesIn(pressables),
                         [](const auto &info) { return info.param.name; });

class ControlsTest : public ViewsFixture
{
};

TEST_F(ControlsTest, ToggleStandsAsItsOwnerSaysAndAsksForTheOtherState)
{
    show("Toggle { objectName: 'asking'; on: true; onSwitched: on => window.note(on) }");

    click(u"asking"_qs);

    EXPECT_EQ(log(), QStringList{u"false"_qs});
    EXPECT_TRUE(item(u"asking"_qs)->property("on").toBool());
    EXPECT_TRUE(accessible(u"asking"_qs)->state().checked);
}

TEST_F(ControlsTest, ToggleIsSwitchedOnceByTheToggleActionOfAssistiveTools)
{
    show("Toggle { objectName: 'asking'; onSwitched: on => window.note(on) }");

    accessible(u"asking"_qs)->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());

    EXPECT_EQ(log(), QStringList{u"true"_qs});
}

TEST_F(ControlsTest, SegmentedPickerMovesByArrowsWithinItsEnds)
{
    show("SegmentedPicker { id: picker; model: ['One', 'Two', 'Three']; onPicked: index => { picker.currentIndex = "
         "index; "
         "window.note(index) } }");

    tab();
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Right, Qt::Key_Right, Qt::Key_Left})
        press(key);

    EXPECT_EQ(log(), (QStringList{u"1"_qs, u"2"_qs, u"1"_qs}));
}

TEST_F(ControlsTest, SegmentedPickerTellsItsChoiceWithItsName)
{
    show("SegmentedPicker { objectName: 'plain'; accessibleName: 'Theme'; model: ['Light', 'Dark']; currentIndex: 1 }\n"
         "SegmentedPicker { objectName: 'colon'; accessibleName: 'Theme:'; model: ['Light', 'Dark'] }\n"
         "SegmentedPicker { objectName: 'empty'; accessibleName: 'Theme' }");

    EXPECT_EQ(accessibleName(u"plain"_qs), u"Theme, Dark"_qs);
    EXPECT_EQ(accessibleName(u"colon"_qs), u"Theme: Light"_qs);
    EXPECT_EQ(accessibleName(u"empty"_qs), u"Theme"_qs);
    item(u"plain"_qs)->setProperty("currentIndex", 0);
    EXPECT_EQ(accessibleName(u"plain"_qs), u"Theme, Light"_qs);
}

TEST_F(ControlsTest, SegmentedPickerIsSetByAClickAndByAssistiveToolsAsRadioButtons)
{
    show("SegmentedPicker { objectName: 'picker'; model: ['One', 'Two', 'Three']; onPicked: index => "
         "window.note(index) }");
    const auto middleOfTheLast = QPoint(static_cast<int>(item(u"picker"_qs)->width()) - 20, 16);

    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, middleOfTheLast);
    QAccessibleInterface *second = accessible(u"picker"_qs)->child(1);
    ASSERT_TRUE(second);
    second->actionInterface()->doAction(QAccessibleActionInterface::pressAction());

    EXPECT_EQ(log(), (QStringList{u"2"_qs, u"1"_qs}));
    EXPECT_EQ(second->role(), QAccessible::RadioButton);
    EXPECT_EQ(second->text(QAccessible::Name), u"Two"_qs);
    EXPECT_TRUE(accessible(u"picker"_qs)->child(0)->state().checked);
    EXPECT_FALSE(second->state().checked);
}

TEST_F(ControlsTest, SegmentedPickerTakesItsOwnWidthAndSharesWhatItIsGiven)
{
    show("SegmentedPicker { objectName: 'own'; model: ['One', 'A longer one'] }\n"
         "SegmentedPicker { objectName: 'wide'; y: 60; width: 400; model: ['One', 'A longer one'] }");

    EXPECT_GT(item(u"own"_qs)->width(), 100);
    EXPECT_LT(item(u"own"_qs)->width(), 220);
    EXPECT_EQ(item(u"wide"_qs)->width(), 400);
}

TEST_F(ControlsTest, MenuPickerOpensByClickAndTellsWhatWasChosen)
{
    show("MenuPicker { objectName: 'picker'; model: ['First', 'Second']; onActivated: index => window.note(index) }");

    click(u"picker"_qs);
    press(Qt::Key_Down);
    press(Qt::Key_Return);

    EXPECT_EQ(log(), QStringList{u"1"_qs});
    EXPECT_EQ(accessible(u"picker"_qs)->role(), QAccessible::ComboBox);
    EXPECT_EQ(accessibleName(u"picker"_qs), u"Second"_qs);
}

TEST_F(ControlsTest, MenuPickerOpensByThePressOfAssistiveTools)
{
    show("MenuPicker { objectName: 'picker'; model: ['First', 'Second'] }");

    accessible(u"picker"_qs)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());

    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return item(u"picker"_qs)->property("popup").value<QObject *>()->property("visible").toBool(); }));
}

TEST_F(ControlsTest, MenuButtonOpensItsMenuWhoseItemIsTriggeredByEnter)
{
    show("MenuButton { objectName: 'button'; text: 'More'; menu: ContextMenu { ContextMenuItem { text: 'Reveal'; "
         "onTriggered: window.note('revealed') } ContextMenuItem { text: 'Remove'; "
         "destructive: true; symbol: 'trash' } } }");

    click(u"button"_qs);
    press(Qt::Key_Down);
    press(Qt::Key_Return);

    EXPECT_EQ(log(), QStringList{u"revealed"_qs});
}

TEST_F(ControlsTest, SearchFieldIsClearedByItsButtonAndByEscape)
{
    show("SearchField { objectName: 'field'; placeholderText: 'Find'; onTextChanged: window.note(text) }");
    item(u"field"_qs)->forceActiveFocus();

    type("ab");
    press(Qt::Key_Escape);
    EXPECT_EQ(item(u"field"_qs)->property("text").toString(), QString());

    press(Qt::Key_C);
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, QPoint(204, 16));
    EXPECT_EQ(log(), (QStringList{u"a"_qs, u"ab"_qs, u""_qs, u"c"_qs, u""_qs}));
    EXPECT_TRUE(item(u"field"_qs)->hasActiveFocus());
    EXPECT_EQ(accessibleName(u"field"_qs), u"Find"_qs);
}

TEST_F(ControlsTest, TextEntryIsNamedByItsLabelAndAcceptsByEnter)
{
    show("TextEntry { objectName: 'entry'; label: 'Type it'; onAccepted: window.note(text) }");

    item(u"entry"_qs)->forceActiveFocus();
    type("ERASE");
    press(Qt::Key_Return);

    EXPECT_EQ(log(), QStringList{u"ERASE"_qs});
    EXPECT_TRUE(hasFocusRing(u"entry"_qs));
}

TEST_F(ControlsTest, FigureGivesEveryDigitTheSameCell)
{
    show("Figure { objectName: 'narrow'; text: '111.1 GB' }\nFigure { objectName: 'wide'; text: '888.8 GB' }");

    EXPECT_DOUBLE_EQ(item(u"narrow"_qs)->implicitWidth(), item(u"wide"_qs)->implicitWidth());
    EXPECT_GT(item(u"narrow"_qs)->implicitWidth(), 30);
    EXPECT_EQ(accessibleName(u"narrow"_qs), u"111.1 GB"_qs);
}

TEST_F(ControlsTest, TextsAreRenderedAnewWhenTheLanguageChanges)
{
    show("BodyText { objectName: 'label'; text: Texts.localized('control.close') }");
    EXPECT_EQ(item(u"label"_qs)->property("text").toString(), u"Close window"_qs);

    m_localizer.setLanguage(Language::Russian);

    EXPECT_EQ(item(u"label"_qs)->property("text").toString(), u"Закрыть окно"_qs);
    EXPECT_EQ(accessibleName(u"label"_qs), u"Закрыть окно"_qs);
}

TEST_F(ControlsTest, AKeyWithoutATextShowsAsItself)
{
    show("BodyText { objectName: 'label'; text: Texts.localized('no.such.key') }");

    EXPECT_EQ(item(u"label"_qs)->property("text").toString(), u"no.such.key"_qs);
}
