#include "App/ScreensFixture.h"

#include <QTest>

#include <algorithm>

namespace Quillmere {

namespace {

QStringList qmlWarnings;

void collectWarnings(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtDebugMsg || type == QtInfoMsg || text.contains(u"does not support"))
        return;
    // Qt's own, of a second window in one process.
    if (!text.startsWith(u"QUnifiedTimer::stopAnimationDriver"))
        qmlWarnings.append(text);
}

bool isOfType(const QQuickItem &item, const QByteArray &type)
{
    return QByteArray(item.metaObject()->className()).startsWith(type);
}

bool isInSidebar(const QQuickItem &item)
{
    const QQuickItem *above = &item;
    while (above && !isOfType(*above, "SidebarView"))
        above = above->parentItem();
    return above != nullptr;
}

bool holds(const QQuickItem &item, const std::function<bool(const QQuickItem &)> &isMeant)
{
    if (!item.isVisible() || item.opacity() == 0)
        return false;
    return isMeant(item)
        || std::ranges::any_of(item.childItems(), [&](const QQuickItem *child) { return holds(*child, isMeant); });
}

} // namespace

ScreensFixture::ScreensFixture()
{
    qmlWarnings.clear();
    qInstallMessageHandler(collectWarnings);
    machine.appearance->set(ColorScheme::Light, true);
    machine.defaults->setString(Localizer::languageKey(), u"en"_qs);
    machine.completeSetup();
    app = std::make_unique<QuillmereApp>(machine.machine());
}

ScreensFixture::~ScreensFixture()
{
    app.reset();
    qInstallMessageHandler(nullptr);
    EXPECT_THAT(qmlWarnings, testing::IsEmpty()) << qmlWarnings.join(u'\n').toStdString();
}

Person ScreensFixture::open(SidebarTab tab)
{
    EXPECT_TRUE(app->start());
    app->appState().setSelectedTab(tab);
    EXPECT_TRUE(QTest::qWaitForWindowExposed(app->mainWindow()));
    return Person(*app->mainWindow());
}

bool ScreensFixture::showsItem(const std::function<bool(const QQuickItem &)> &isMeant) const
{
    return holds(*app->mainWindow()->contentItem(), isMeant);
}

bool ScreensFixture::showsSymbol(const QString &name) const
{
    return showsItem([&](const QQuickItem &item) { return item.property("name") == name && isOfType(item, "Symbol"); });
}

bool ScreensFixture::showsSymbolOnScreen(const QString &name) const
{
    return showsItem([&](const QQuickItem &item) {
        return item.property("name") == name && isOfType(item, "Symbol") && !isInSidebar(item);
    });
}

bool ScreensFixture::showsWhole(const QString &text) const
{
    return showsItem([&](const QQuickItem &item) {
        return item.property("text") == text && item.property("lineCount").isValid()
            && !item.property("truncated").toBool();
    });
}

} // namespace Quillmere
