#include "App/QuillmereApp.h"
#include "PretendProgram/PretendDesk.h"
#include "PretendProgram/PretendHome.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QTimer>

using namespace Quillmere;

namespace {

/// What the program was told on its command line.
class Wishes
{
public:
    Wishes()
    {
        m_parser.setApplicationDescription(u"Quillmere on a machine that exists only in memory."_qs);
        m_parser.addHelpOption();
        m_parser.addOptions(
            {m_empty, m_dark, m_language, m_processors, m_memory, m_disk, m_noFilter, m_tab, m_size, m_picture});
        m_parser.process(*QCoreApplication::instance());
    }

    [[nodiscard]] bool hasEmptyHome() const { return m_parser.isSet(m_empty); }
    [[nodiscard]] bool isDark() const { return m_parser.isSet(m_dark); }
    [[nodiscard]] bool hasFilter() const { return !m_parser.isSet(m_noFilter); }
    [[nodiscard]] QString language() const { return m_parser.value(m_language); }
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
    QCommandLineOption m_picture{u"picture"_qs, u"Saves a picture of the window after a while, and ends."_qs,
                                 u"file"_qs};
};

void takePicture(QuillmereApp &quillmere, const QString &file)
{
    constexpr std::chrono::milliseconds untilFiguresStand{6500};
    QTimer::singleShot(untilFiguresStand, &quillmere, [&quillmere, file] {
        QCoreApplication::exit(quillmere.mainWindow()->grabWindow().save(file) ? 0 : 1);
    });
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    const Wishes wishes;

    PretendMachine machine;
    if (!wishes.hasEmptyHome())
        fillPretendHome(machine);
    fillPretendDesk(machine, wishes.load());
    if (!wishes.hasFilter())
        machine.bundles->main = FilePath("/home/ada/Downloads/Quillmere.app");
    if (wishes.isDark())
        machine.appearance->set(ColorScheme::Dark, false);
    if (!wishes.language().isEmpty())
        machine.defaults->setString(Localizer::languageKey(), wishes.language());
    const PretendLife life(machine, wishes.load());

    QuillmereApp quillmere(machine.machine());
    if (!quillmere.start())
        return 1;
    quillmere.mainWindow()->resize(wishes.size());
    quillmere.appState().setSelectedTab(wishes.tab().value_or(SidebarTab::Dashboard));
    if (!wishes.picture().isEmpty())
        takePicture(quillmere, wishes.picture());
    return QGuiApplication::exec();
}
