#include "App/QuillmereApp.h"
#include "Fakes/PretendMachine.h"
#include "Services/OperationLogCoding.h"

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QQuickItem>
#include <QQuickWindow>

#include <benchmark/benchmark.h>

using namespace Quillmere;

namespace {

const FilePath historyFile("/home/ada/Library/Application Support/Quillmere/history.json");
constexpr double pixelsAFrame = 120; ///< A fast turn of the wheel.

QList<OperationLog> history(qint64 runs)
{
    QList<OperationLog> logs;
    for (qint64 run = 0; run < runs; ++run) {
        OperationLog log;
        log.date = QDateTime({2015, 1, 1}, {0, 0}, Qt::UTC).addSecs(3600 * run);
        log.foundSize = 4'000'000'000 + run;
        log.cleanedSize = 3'000'000'000 + run;
        log.categoriesAffected = {u"User Cache"_qs, u"User Logs"_qs};
        logs.append(log);
    }
    return logs;
}

QQuickItem *listBelow(QQuickItem &item)
{
    if (item.inherits("QQuickListView") && item.property("count").toInt() > 50)
        return &item;
    for (QQuickItem *child : item.childItems()) {
        if (QQuickItem *list = listBelow(*child))
            return list;
    }
    return nullptr;
}

/// The whole program on a pretend machine with so many records, before its history is opened.
class HistoryScreen
{
public:
    explicit HistoryScreen(qint64 records)
    {
        m_machine.completeSetup();
        const QByteArray json = encodeOperationLogs(history(records)).value();
        m_machine.files->addFile(historyFile, json.size(), json);
        m_app = std::make_unique<QuillmereApp>(m_machine.machine());
        m_isOpen = m_app->start();
        if (m_isOpen)
            draw();
    }

    void open()
    {
        m_app->appState().setSelectedTab(SidebarTab::History);
        QCoreApplication::processEvents();
    }

    [[nodiscard]] bool isOpen() const { return m_isOpen; }

    void draw() { benchmark::DoNotOptimize(m_app->mainWindow()->grabWindow()); }

    QQuickItem *list() { return listBelow(*m_app->mainWindow()->contentItem()); }

private:
    PretendMachine m_machine;
    std::unique_ptr<QuillmereApp> m_app;
    bool m_isOpen = false;
};

/// From the click on History until its first frame is drawn.
void show(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto screen = std::make_unique<HistoryScreen>(state.range(0));
        if (!screen->isOpen()) {
            state.SkipWithError("The program does not start.");
            return;
        }
        state.ResumeTiming();
        screen->open();
        screen->draw();
        state.PauseTiming();
        screen.reset();
        state.ResumeTiming();
    }
}

/// One frame of a list that is being scrolled, from its middle.
void scroll(benchmark::State &state)
{
    HistoryScreen screen(state.range(0));
    if (screen.isOpen())
        screen.open();
    QQuickItem *list = screen.isOpen() ? screen.list() : nullptr;
    if (!list) {
        state.SkipWithError("There is no list to scroll.");
        return;
    }
    const double height = list->property("contentHeight").toDouble() - list->height();
    double place = height / 2;
    for (auto _ : state) {
        place = place + pixelsAFrame < height ? place + pixelsAFrame : 0;
        list->setProperty("contentY", place);
        QCoreApplication::processEvents();
        screen.draw();
    }
}

} // namespace

BENCHMARK(show)->Arg(100)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(scroll)->Arg(100)->Arg(100'000)->Unit(benchmark::kMillisecond);

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    QLoggingCategory::setFilterRules(u"default.warning=false"_qs);
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
