#include "App/ScreensFixture.h"

#include <QTest>

namespace Quillmere {

namespace {

QStringList qmlWarnings;

void collectWarnings(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type != QtDebugMsg && type != QtInfoMsg && !text.contains(u"does not support"))
        qmlWarnings.append(text);
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

} // namespace Quillmere
