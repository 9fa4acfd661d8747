#include "Fakes/PretendUserDefaults.h"
#include "Utilities/LocalizationManager.h"
#include "Views/Support/Appearance.h"
#include "Views/ViewsModule.h"

#include <QCommandLineParser>
#include <QDir>
#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickView>
#include <QQuickWindow>
#include <QTest>

#include <array>
#include <cstdio>

using namespace Quillmere;

namespace {

struct Page
{
    const char *file;
    QSize size;
};

const std::array<Page, 7> pages = {{
    {"Board", {1100, 700}},
    {"Symbols", {1100, 1190}},
    {"Rows", {1100, 700}},
    {"Screen", {1100, 700}},
    {"Overlay", {1100, 700}},
    {"Sheets", {1100, 700}},
    {"Narrow", {900, 600}},
}};

QUrl address(const Page &page)
{
    return QUrl(u"qrc:/gallery/%1.qml"_qs.arg(QLatin1String(page.file)));
}

QStringList symbolNames()
{
    QStringList names = QDir(u":/symbols"_qs).entryList();
    for (QString &name : names)
        name.chop(4);
    return names;
}

void prepare(QQuickView &view, const Page &page, Appearance &appearance)
{
    installViews(*view.engine(), appearance);
    view.rootContext()->setContextProperty(u"symbolNames"_qs, symbolNames());
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.resize(page.size);
    view.setSource(address(page));
    view.show();
}

/// Saves each page in both themes below @p folder. False when a picture could not be made.
bool shoot(const QDir &folder, Appearance &appearance)
{
    for (const Page &page : pages) {
        for (const bool dark : {false, true}) {
            appearance.setDark(dark);
            QQuickView view;
            prepare(view, page, appearance);
            if (view.status() != QQuickView::Ready || !QTest::qWaitForWindowExposed(&view))
                return false;
            QTest::qWait(700);
            const QString name
                = QString(QLatin1String(page.file)).toLower() + (dark ? u"-dark.png"_qs : u"-light.png"_qs);
            if (!view.grabWindow().save(folder.filePath(name)))
                return false;
        }
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    QCommandLineParser arguments;
    arguments.addHelpOption();
    const QCommandLineOption shot(u"shot"_qs, u"Save every page in both themes below this folder."_qs, u"folder"_qs);
    const QCommandLineOption dark(u"dark"_qs, u"Show the dark theme."_qs);
    const QCommandLineOption language(u"language"_qs, u"en, es or ru."_qs, u"code"_qs, u"en"_qs);
    arguments.addOptions({shot, dark, language});
    arguments.addPositionalArgument(u"page"_qs,
                                    u"Page to show: Board, Symbols, Rows, Screen, Overlay, Sheets or Narrow."_qs);
    arguments.process(application);

    Localizer localizer(std::make_shared<PretendUserDefaults>());
    localizer.setLanguage(fromRawValue<Language>(arguments.value(language)).value_or(Language::English));
    SharedInstance<Localizer>::install(&localizer);
    Appearance appearance(nullptr);

    if (arguments.isSet(shot)) {
        const QDir folder(arguments.value(shot));
        appearance.setReducedMotion(true);
        if (folder.mkpath(u"."_qs) && shoot(folder, appearance))
            return 0;
        std::fputs("the pictures could not be made\n", stderr);
        return 1;
    }

    appearance.setDark(arguments.isSet(dark));
    const QByteArray wanted = arguments.positionalArguments().value(0, u"Board"_qs).toLatin1();
    for (const Page &page : pages) {
        if (wanted != page.file)
            continue;
        QQuickView view;
        prepare(view, page, appearance);
        return QGuiApplication::exec();
    }
    std::fputs("no such page\n", stderr);
    return 1;
}
