#include "App/QuillmereApp.h"
#include "Fakes/Gate.h"
#include "PretendProgram/PretendApplications.h"
#include "PretendProgram/PretendDesk.h"
#include "PretendProgram/PretendHome.h"
#include "PretendProgram/PretendPromotion.h"
#include "PretendProgram/PretendStartup.h"
#include "PretendProgram/PretendTools.h"
#include "PretendProgram/PretendVolumes.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QQuickItem>
#include <QTimer>

#include <algorithm>

using namespace Quillmere;

namespace {

constexpr std::chrono::milliseconds untilFiguresStand{6500};
constexpr std::chrono::milliseconds untilScreenStands{2500};

/// What the program was told on its command line.
class Wishes
{
public:
    Wishes()
    {
        m_parser.setApplicationDescription(u"Quillmere on a machine that exists only in memory."_qs);
        m_parser.addHelpOption();
        m_parser.addOptions({m_empty, m_dark, m_language, m_processors, m_memory, m_disk, m_noFilter, m_tab, m_size,
                             m_hold, m_press, m_picture, m_wizard, m_drivers, m_refused, m_after, m_promotion});
        m_parser.process(*QCoreApplication::instance());
    }

    [[nodiscard]] bool hasEmptyHome() const { return m_parser.isSet(m_empty); }
    [[nodiscard]] bool isDark() const { return m_parser.isSet(m_dark); }
    [[nodiscard]] bool hasWizard() const { return m_parser.isSet(m_wizard); }
    [[nodiscard]] bool hasDrivers() const { return m_parser.isSet(m_drivers); }
    [[nodiscard]] bool isRefused() const { return m_parser.isSet(m_refused); }
    /// How long the program is left alone before it is used: until the screen stands, unless that was told.
    [[nodiscard]] std::chrono::milliseconds untilUsed() const
    {
        if (m_parser.isSet(m_after))
            return std::chrono::milliseconds(m_parser.value(m_after).toInt());
        return tab().value_or(SidebarTab::Dashboard) == SidebarTab::Dashboard ? untilFiguresStand : untilScreenStands;
    }
    [[nodiscard]] bool hasFilter() const { return !m_parser.isSet(m_noFilter); }
    [[nodiscard]] QString language() const { return m_parser.value(m_language); }
    [[nodiscard]] QStringList presses() const { return m_parser.values(m_press); }
    [[nodiscard]] FilePath held() const { return FilePath(m_parser.value(m_hold).toUtf8()); }
    [[nodiscard]] bool hasPromotion() const { return m_parser.isSet(m_promotion); }
    [[nodiscard]] QString promotion() const { return m_parser.value(m_promotion); }
    [[nodiscard]] QString picture() const { return m_parser.value(m_picture); }
    [[nodiscard]] std::optional<SidebarTab> tab() const { return fromRawValue<SidebarTab>(m_parser.value(m_tab)); }
    [[nodiscard]] PretendLoad load() const
    {
        PretendLoad load;
        load.processors = m_parser.value(m_processors).toULongLong();
        load.memory = m_parser.value(m_memory).toULongLong();
        load.disk = m_parser.value(m_disk).toLongLong();
        return load;
    }
    [[nodiscard]] QSize size() const
    {
        const QStringList sides = m_parser.value(m_size).split(u'x');
        return {sides.value(0).toInt(), sides.value(1).toInt()};
    }

private:
    QCommandLineParser m_parser;
    QCommandLineOption m_empty{u"empty"_qs, u"Starts with a home that holds nothing."_qs};
    QCommandLineOption m_dark{u"dark"_qs, u"Starts on a dark desktop."_qs};
    QCommandLineOption m_language{u"language"_qs, u"Starts in that language: en, es or ru."_qs, u"code"_qs};
    QCommandLineOption m_processors{u"processors"_qs, u"Load of the processors."_qs, u"percent"_qs, u"23"_qs};
    QCommandLineOption m_memory{u"memory"_qs, u"Load of the memory."_qs, u"percent"_qs, u"71"_qs};
    QCommandLineOption m_disk{u"disk"_qs, u"How full the disk is."_qs, u"percent"_qs, u"68"_qs};
    QCommandLineOption m_noFilter{u"no-filter"_qs, u"Starts without the traffic filter."_qs};
    QCommandLineOption m_tab{u"tab"_qs, u"The screen to begin with, such as safeCleanup."_qs, u"name"_qs};
    QCommandLineOption m_size{u"size"_qs, u"Size of the window."_qs, u"WIDTHxHEIGHT"_qs, u"1100x700"_qs};
    QCommandLineOption m_hold{u"hold"_qs, u"Work that comes to that item stands still there."_qs, u"location"_qs};
    QCommandLineOption m_press{
        u"press"_qs,
        u"Presses that button or row as soon as the screen stands. Types, behind a =, where ⇥ ↑ ↓ → are keys."_qs,
        u"name"_qs};
    QCommandLineOption m_wizard{u"wizard"_qs, u"Starts for the first time."_qs};
    QCommandLineOption m_drivers{u"drivers"_qs, u"Starts with the drivers for disks."_qs};
    QCommandLineOption m_refused{u"refused"_qs, u"Every question for the password is dismissed."_qs};
    QCommandLineOption m_after{u"after"_qs, u"How long the program is left alone before it is used."_qs,
                               u"milliseconds"_qs};
    QCommandLineOption m_picture{u"picture"_qs, u"Saves a picture of the window after a while, and ends."_qs,
                                 u"file"_qs};
    QCommandLineOption m_promotion{u"promotion"_qs, u"Promotes something, on that picture or movie."_qs, u"file"_qs};
};

constexpr std::chrono::milliseconds betweenPresses{700};

/// Presses the first visible button of that name in @p item, or row whose spoken text begins with it. False when there
/// is none.
bool press(QQuickItem &item, const QString &name)
{
    if (!item.isVisible())
        return false;
    const QString spoken = item.property("accessibleName").toString();
    if ((spoken == name || spoken.startsWith(name + u", "_qs)) && item.metaObject()->indexOfSignal("clicked()") >= 0)
        return QMetaObject::invokeMethod(&item, "clicked");
    return std::ranges::any_of(item.childItems(), [&](QQuickItem *child) { return press(*child, name); });
}

/// Types @p text where the keyboard is. Arrows stand for the keys that they are drawn on.
void type(QQuickWindow &window, const QString &text)
{
    static const QHash<QChar, Qt::Key> keys
        = {{u'⇥', Qt::Key_Tab}, {u'↑', Qt::Key_Up}, {u'↓', Qt::Key_Down}, {u'→', Qt::Key_Right}};
    for (const QChar character : text) {
        const int key = keys.value(character, Qt::Key(0));
        const QString typed = key == 0 ? QString(character) : QString();
        QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, typed);
        QCoreApplication::sendEvent(&window, &down);
        QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier, typed);
        QCoreApplication::sendEvent(&window, &up);
    }
}

/// Presses what is wished, one after the other, and then takes the picture.
void useAndTakePicture(QuillmereApp &quillmere, QStringList presses, const QString &file)
{
    if (!presses.isEmpty()) {
        const QString wish = presses.takeFirst();
        if (wish.startsWith(u'='))
            type(*quillmere.mainWindow(), wish.sliced(1));
        else
            press(*quillmere.mainWindow()->contentItem(), wish);
        QTimer::singleShot(betweenPresses, &quillmere,
                           [&quillmere, presses, file] { useAndTakePicture(quillmere, presses, file); });
    } else if (!file.isEmpty()) {
        QCoreApplication::exit(quillmere.mainWindow()->grabWindow().save(file) ? 0 : 1);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_MEDIA_BACKEND", "ffmpeg");
    QGuiApplication application(argc, argv);
    const Wishes wishes;

    PretendMachine machine;
    if (!wishes.hasEmptyHome()) {
        fillPretendHome(machine);
        fillPretendStartup(machine);
        fillPretendTools(machine);
        fillPretendApplications(machine);
        fillPretendBrowsers(machine);
    }
    fillPretendDesk(machine, wishes.load());
    fillPretendVolumes(machine);
    if (!wishes.hasFilter()) {
        machine.files->vanish(machine.bundles->main);
        machine.bundles->main = FilePath("/home/ada/Downloads/Quillmere.app");
    }
    if (wishes.hasPromotion())
        fillPretendPromotion(machine, wishes.promotion());
    if (wishes.isDark())
        machine.appearance->set(ColorScheme::Dark, false);
    if (!wishes.language().isEmpty())
        machine.defaults->setString(Localizer::languageKey(), wishes.language());
    if (!wishes.hasWizard())
        machine.completeSetup();
    if (wishes.hasDrivers())
        machine.files->addFile(FilePath("/usr/local/bin/ntfs-3g"), 150'000);
    const Gate gate;
    const auto hold = [gate, held = wishes.held()](const FilePath &path) {
        if (path == held)
            gate.wait();
    };
    if (wishes.isRefused())
        machine.processes->answer(u"/usr/bin/osascript"_qs, [](const Command &) { return ProcessOutcome{1, {}}; });
    const PretendLife life(machine, wishes.load());
    machine.files->onMeasure(hold);
    machine.files->onRemoval(hold);
    machine.processes->onEnd([hold] { hold(FilePath("/usr/bin/osascript")); });
    machine.startupEntries->onListing([hold] { hold(FilePath("/etc/xdg/autostart")); });

    QuillmereApp quillmere(machine.machine());
    if (!quillmere.start())
        return 1;
    quillmere.mainWindow()->resize(wishes.size());
    quillmere.appState().setSelectedTab(wishes.tab().value_or(SidebarTab::Dashboard));
    QTimer::singleShot(wishes.untilUsed(), &quillmere,
                       [&] { useAndTakePicture(quillmere, wishes.presses(), wishes.picture()); });
    const int status = QGuiApplication::exec();
    gate.open();
    return status;
}
