#pragma once

#include <QAccessible>
#include <QQuickWindow>

#include <functional>

namespace Quillmere {

/// Uses a window as a person does: sees what a screen reader would say, clicks where it is, and types.
class Person
{
public:
    explicit Person(QQuickWindow &window);

    /// The visible item with that role and name, waiting for it a while. Null when it does not come.
    [[nodiscard]] QAccessibleInterface *find(QAccessible::Role role, const QString &name) const;
    /// The same for one whose name holds @p text, as things are: it does not wait.
    [[nodiscard]] QAccessibleInterface *findWhatHolds(QAccessible::Role role, const QString &text) const;
    [[nodiscard]] bool sees(QAccessible::Role role, const QString &name) const { return find(role, name) != nullptr; }
    /// True when no such item is visible now, or soon.
    [[nodiscard]] bool seesNo(QAccessible::Role role, const QString &name) const;
    /// Whether any visible item's name holds @p text.
    [[nodiscard]] bool reads(const QString &text) const;
    [[nodiscard]] bool readsNo(const QString &text) const;
    /// What the keyboard is on; empty when on nothing that has a name.
    [[nodiscard]] QString focusedName() const;

    /// Whether it can be used. Asks the item itself: in Qt 6.4 a disabled one does not tell assistive tools so.
    [[nodiscard]] bool canUse(QAccessible::Role role, const QString &name) const;
    /// Where in the window the item is that @p find gives, once the layout stands; nothing when it does not come.
    [[nodiscard]] QRect placeOf(const std::function<QAccessibleInterface *()> &find) const;
    [[nodiscard]] QRect placeOf(QAccessible::Role role, const QString &name) const;
    /// Clicks the middle of the item. False when it is not there or cannot be used.
    [[nodiscard]] bool click(QAccessible::Role role, const QString &name) const;
    /// Away from the person where @p pixels are more than none, as whoever wants to see what is further up.
    void turnWheel(const QPoint &place, int pixels) const;
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;
    void type(const QString &text) const;
    /// Whether the keyboard comes to @p name by itself.
    [[nodiscard]] bool isGivenTheKeyboardAt(const QString &name) const;
    /// Presses Tab until the keyboard is on @p name. False when it never is.
    [[nodiscard]] bool tabTo(const QString &name) const;
    [[nodiscard]] bool tabToWhatHolds(const QString &text) const;

private:
    [[nodiscard]] bool tabUntil(const std::function<bool()> &isThere) const;

    QQuickWindow &m_window;
};

} // namespace Quillmere
