#include "App/Person.h"

#include <QQuickItem>
#include <QTest>
#include <QWheelEvent>
#include <QtQuickTest/quicktest.h>

#include <utility>

namespace Quillmere {

namespace {

constexpr int patienceMilliseconds = 3000;
constexpr int mostStopsOfTab = 60;

using Test = std::function<bool(QAccessibleInterface *)>;

QAccessibleInterface *search(QAccessibleInterface *from, const Test &matches)
{
    if (!from || from->state().invisible)
        return nullptr;
    if (matches(from))
        return from;
    for (int i = 0; i < from->childCount(); ++i) {
        if (QAccessibleInterface *found = search(from->child(i), matches))
            return found;
    }
    return nullptr;
}

QAccessibleInterface *searchWindow(QQuickWindow &window, const Test &matches)
{
    return search(QAccessible::queryAccessibleInterface(&window), matches);
}

bool isEnabled(QAccessibleInterface *accessible)
{
    const auto *item = qobject_cast<QQuickItem *>(accessible->object());
    return item && item->isEnabled();
}

Test named(QAccessible::Role role, const QString &name)
{
    return [=](QAccessibleInterface *item) { return item->role() == role && item->text(QAccessible::Name) == name; };
}

Test holding(const QString &text)
{
    return [=](QAccessibleInterface *item) { return item->text(QAccessible::Name).contains(text); };
}

} // namespace

Person::Person(QQuickWindow &window)
    : m_window(window)
{
}

QAccessibleInterface *Person::find(QAccessible::Role role, const QString &name) const
{
    QAccessibleInterface *found = nullptr;
    (void)QTest::qWaitFor([&] { return (found = searchWindow(m_window, named(role, name))) != nullptr; },
                          patienceMilliseconds);
    return found;
}

QAccessibleInterface *Person::findWhatHolds(QAccessible::Role role, const QString &text) const
{
    return searchWindow(m_window, [&](QAccessibleInterface *item) {
        return item->role() == role && item->text(QAccessible::Name).contains(text);
    });
}

bool Person::seesNo(QAccessible::Role role, const QString &name) const
{
    return QTest::qWaitFor([&] { return !searchWindow(m_window, named(role, name)); }, patienceMilliseconds);
}

bool Person::reads(const QString &text) const
{
    return QTest::qWaitFor([&] { return searchWindow(m_window, holding(text)) != nullptr; }, patienceMilliseconds);
}

bool Person::readsNo(const QString &text) const
{
    return QTest::qWaitFor([&] { return !searchWindow(m_window, holding(text)); }, patienceMilliseconds);
}

QString Person::focusedName() const
{
    QQuickItem *item = m_window.activeFocusItem();
    QAccessibleInterface *accessible = item ? QAccessible::queryAccessibleInterface(item) : nullptr;
    return accessible ? accessible->text(QAccessible::Name) : QString();
}

QRect Person::placeOf(const std::function<QAccessibleInterface *()> &find) const
{
    QRect place;
    (void)QTest::qWaitFor(
        [&] {
            QAccessibleInterface *item = find();
            const QRect before = std::exchange(place, item ? item->rect() : QRect());
            return item && place == before && !QQuickTest::qIsPolishScheduled(&m_window);
        },
        patienceMilliseconds);
    return place.translated(-m_window.position());
}

QRect Person::placeOf(QAccessible::Role role, const QString &name) const
{
    return placeOf([&] { return searchWindow(m_window, named(role, name)); });
}

bool Person::click(QAccessible::Role role, const QString &name) const
{
    QAccessibleInterface *item = find(role, name);
    if (!item || !isEnabled(item))
        return false;
    QTest::mouseClick(&m_window, Qt::LeftButton, Qt::NoModifier, placeOf(role, name).center());
    return true;
}

bool Person::canUse(QAccessible::Role role, const QString &name) const
{
    QAccessibleInterface *item = find(role, name);
    return item && isEnabled(item);
}

void Person::turnWheel(const QPoint &place, int pixels) const
{
    QWheelEvent event(place, m_window.mapToGlobal(place), {0, pixels}, {0, pixels}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&m_window, &event);
}

void Person::press(Qt::Key key, Qt::KeyboardModifiers modifiers) const
{
    QTest::keyClick(&m_window, key, modifiers);
}

void Person::type(const QString &text) const
{
    for (const QChar character : text)
        QTest::keyClick(&m_window, character.toLatin1());
}

bool Person::isGivenTheKeyboardAt(const QString &name) const
{
    return QTest::qWaitFor([&] { return focusedName() == name; }, patienceMilliseconds);
}

bool Person::tabTo(const QString &name) const
{
    return tabUntil([&] { return focusedName() == name; });
}

bool Person::tabToWhatHolds(const QString &text) const
{
    return tabUntil([&] { return focusedName().contains(text); });
}

bool Person::tabUntil(const std::function<bool()> &isThere) const
{
    // Focus moves with the next round of events when something that covered the screen has gone.
    QCoreApplication::processEvents();
    for (int i = 0; i < mostStopsOfTab; ++i) {
        if (isThere())
            return true;
        press(Qt::Key_Tab);
    }
    return false;
}

} // namespace Quillmere
