#include "Views/ViewsFixture.h"

#include "Views/ViewsModule.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

namespace Quillmere {

namespace {

QQuickItem *findItem(QQuickItem *parent, const QString &name)
{
    if (parent->objectName() == name)
        return parent;
    for (QQuickItem *child : parent->childItems()) {
        if (QQuickItem *found = findItem(child, name))
            return found;
    }
    return nullptr;
}

} // namespace

ViewsFixture::ViewsFixture()
    : m_localizer(std::make_shared<PretendUserDefaults>(), [] { return u"en"_qs; })
    , m_appearance(nullptr)
{
    // Read when the first window is made: nothing here needs a graphics card.
    qputenv("QT_QUICK_BACKEND", "software");
    QAccessible::setActive(true);
    SharedInstance<Localizer>::install(&m_localizer);
    m_appearance.setReducedMotion(true);
}

ViewsFixture::~ViewsFixture()
{
    m_view.reset();
    EXPECT_EQ(m_warnings, QStringList()) << m_warnings.join(u'\n').toStdString();
}

void ViewsFixture::show(const QByteArray &body, const QSize &size)
{
    m_view = makeView();
    QQmlEngine &engine = *m_view->engine();
    installViews(engine, m_appearance);
    QObject::connect(&engine, &QQmlEngine::warnings, &engine, [this](const QList<QQmlError> &warnings) {
        for (const QQmlError &warning : warnings)
            m_warnings.append(warning.toString());
    });
    auto *component = new QQmlComponent(&engine, m_view.get());
    component->setData("import QtQuick\nimport Quillmere\nItem { id: window; objectName: \"window\"\n"
                       "readonly property QtObject theme: Theme\nproperty var log: []\nfunction note(text) { log = "
                       "log.concat([String(text)]); }\n"
                           + body + "\n}",
                       QUrl());
    QObject *root = component->create();
    ASSERT_TRUE(root) << component->errorString().toStdString();
    m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    m_view->resize(size);
    m_view->setContent(QUrl(), component, root);
    m_view->show();
    m_view->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(m_view.get()));
}

QQuickItem *ViewsFixture::item(const QString &name) const
{
    return findItem(m_view->contentItem(), name);
}

QQuickItem *ViewsFixture::descendant(const char *type, const QQuickItem *from) const
{
    for (QQuickItem *child : (from ? from : m_view->contentItem())->childItems()) {
        if (QByteArray(child->metaObject()->className()).startsWith(type))
            return child;
        if (QQuickItem *found = descendant(type, child))
            return found;
    }
    return nullptr;
}

QPoint ViewsFixture::middle(const QString &name) const
{
    const QQuickItem *wanted = item(name);
    return wanted->mapToScene(QPointF(wanted->width() / 2, wanted->height() / 2)).toPoint();
}

QStringList ViewsFixture::log() const
{
    return m_view->rootObject()->property("log").toStringList();
}

QAccessibleInterface *ViewsFixture::accessible(const QString &name) const
{
    return QAccessible::queryAccessibleInterface(item(name));
}

QString ViewsFixture::accessibleName(const QString &name) const
{
    return accessible(name)->text(QAccessible::Name);
}

bool ViewsFixture::showsRing(const QQuickItem *parent, const QVariant &ringColor)
{
    for (QQuickItem *child : parent->childItems()) {
        QObject *border = child->property("border").value<QObject *>();
        if (child->isVisible() && border && border->property("width").toInt() == 2
            && border->property("color") == ringColor)
            return true;
        if (showsRing(child, ringColor))
            return true;
    }
    return false;
}

bool ViewsFixture::hasFocusRing(const QString &name) const
{
    return showsRing(item(name), theme("focusRing"));
}

QVariant ViewsFixture::theme(const char *property) const
{
    return m_view->rootObject()->property("theme").value<QObject *>()->property(property);
}

void ViewsFixture::click(const QString &name)
{
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, middle(name));
}

void ViewsFixture::type(QByteArrayView letters)
{
    for (const char letter : letters)
        QTest::keyClick(m_view.get(), letter);
}

void ViewsFixture::press(Qt::Key key)
{
    QTest::keyClick(m_view.get(), key);
}

} // namespace Quillmere
