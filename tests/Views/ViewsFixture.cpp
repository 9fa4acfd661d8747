#include "Views/ViewsFixture.h"

#include "Views/ViewsModule.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlExpression>
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

bool showsRing(QQuickItem *parent, const QVariant &ringColor)
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

} // namespace

ViewsFixture::ViewsFixture()
    : m_localizer(std::make_shared<PretendUserDefaults>(), [] { return u"en"_qs; })
    , m_appearance(nullptr)
{
    SharedInstance<Localizer>::install(&m_localizer);
    SharedInstance<Appearance>::install(&m_appearance);
    m_appearance.setReducedMotion(true);
}

ViewsFixture::~ViewsFixture()
{
    m_view.reset();
    EXPECT_EQ(m_warnings, QStringList()) << m_warnings.join(u'\n').toStdString();
}

void ViewsFixture::show(const QByteArray &body, const QSize &size)
{
    m_view = std::make_unique<QQuickView>();
    QQmlEngine &engine = *m_view->engine();
    installViews(engine);
    QObject::connect(&engine, &QQmlEngine::warnings, &engine, [this](const QList<QQmlError> &warnings) {
        for (const QQmlError &warning : warnings)
            m_warnings.append(warning.toString());
    });
    auto *component = new QQmlComponent(&engine, m_view.get());
    component->setData("import QtQuick\nimport Quillmere\nItem { id: window; objectName: \"window\"\n"
                       "property var log: []\nfunction note(text) { log = log.concat([String(text)]); }\n"
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

bool ViewsFixture::hasFocusRing(const QString &name) const
{
    return showsRing(item(name), theme("focusRing"));
}

QVariant ViewsFixture::theme(const char *property) const
{
    QQmlEngine *engine = m_view->engine();
    const int type = qmlTypeId("Quillmere", 1, 0, "Theme");
    return engine->singletonInstance<QObject *>(type)->property(property);
}

void ViewsFixture::click(const QString &name)
{
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, middle(name));
}

void ViewsFixture::press(Qt::Key key)
{
    QTest::keyClick(m_view.get(), key);
}

} // namespace Quillmere
