#pragma once

#include "Fakes/PretendUserDefaults.h"
#include "Utilities/LocalizationManager.h"
#include "Views/Support/Appearance.h"

#include <QAccessible>
#include <QQuickItem>
#include <QQuickView>
#include <QStringList>

#include <gtest/gtest.h>

#include <memory>

namespace Quillmere {

/// A window, not on any screen, that shows a piece of QML written in the test, to be used as a person would. A warning
/// from QML fails the test.
class ViewsFixture : public testing::Test
{
protected:
    ViewsFixture();
    ~ViewsFixture() override;

    /// What show() shows it in.
    [[nodiscard]] virtual std::unique_ptr<QQuickView> makeView() const { return std::make_unique<QQuickView>(); }

    /// Shows @p body inside a window-filling item with the id `window` and, in it, `property var log: []`.
    void show(const QByteArray &body, const QSize &size = {640, 480});

    /// The item with that objectName, wherever it is.
    [[nodiscard]] QQuickItem *item(const QString &name) const;
    /// The first item whose type's name begins so, below @p from or anywhere; null where there is none.
    [[nodiscard]] QQuickItem *descendant(const char *type, const QQuickItem *from = nullptr) const;
    [[nodiscard]] QQuickItem *focused() const { return m_view->activeFocusItem(); }
    [[nodiscard]] QString focusedName() const { return focused()->property("accessibleName").toString(); }
    /// Where the middle of an item is in the window.
    [[nodiscard]] QPoint middle(const QString &name) const;
    /// What the QML has put into `log`.
    [[nodiscard]] QStringList log() const;
    [[nodiscard]] QAccessibleInterface *accessible(const QString &name) const;
    [[nodiscard]] QString accessibleName(const QString &name) const;
    /// Whether something in @p parent stands in a ring of that colour.
    [[nodiscard]] static bool showsRing(const QQuickItem *parent, const QVariant &ringColor);
    [[nodiscard]] bool hasFocusRing(const QString &name) const;
    [[nodiscard]] QVariant theme(const char *property) const;

    void click(const QString &name);
    void press(Qt::Key key);
    void type(QByteArrayView letters);
    void tab() { press(Qt::Key_Tab); }

    Localizer m_localizer;
    Appearance m_appearance;
    std::unique_ptr<QQuickView> m_view;
    QStringList m_warnings;
};

} // namespace Quillmere
