#include "PretendProgram/PretendDesk.h"

#include <chrono>
#include <utility>

namespace Quillmere {

namespace {

struct Application
{
    const char *name;
    const char *identifier;
    const char *icon;
    double cpu;
    quint64 megabytes;
};

constexpr Application applications[] = {
    {"Firefox", "org.mozilla.firefox", "firefox-esr", 12.8, 1240},
    {"Model Workshop", "org.example.workshop", "applications-graphics", 6.3, 2870},
    {"Mail", "org.example.mail", "internet-mail", 3.1, 412},
    {"Office Writer", "org.example.writer", "x-office-document", 2.4, 286},
    {"An Image Manipulation Program of Uncommon Length", "org.example.image", "applications-graphics", 1.7, 358},
    {"Drawing", "org.example.drawing", "applications-graphics", 0.9, 241},
    {"Cloud Folder", "org.example.cloud", "folder-remote", 0.4, 118},
    {"Document Reader", "org.example.reader", "x-office-document", 0.1, 74},
    {"System Indexer", "com.apple.indexer", "", 0.0, 52},
};

constexpr const char *browsers[] = {
    "com.google.Chrome", "org.mozilla.firefox", "com.brave.Browser", "com.microsoft.edgemac", "com.operasoftware.Opera",
};

constexpr qint64 bytesOfDisk = 512'110'000'000;

} // namespace

void fillPretendDesk(PretendMachine &machine, const PretendLoad &load)
{
    QByteArray figures = "  PID %CPU   RSS\n";
    qint32 pid = 2001;
    for (const Application &each : applications) {
        RunningApplication running;
        running.processIdentifier = pid;
        running.launchTime = 1;
        running.localizedName = QString::fromUtf8(each.name);
        running.bundleIdentifier = QString::fromLatin1(each.identifier);
        running.icon = QString::fromLatin1(each.icon);
        machine.workspace->start(running);
        figures += QByteArray::number(pid) + ' ' + QByteArray::number(each.cpu) + ' '
            + QByteArray::number(each.megabytes * 1000) + '\n';
        ++pid;
    }
    machine.processes->answer(u"/bin/ps"_qs, figures);

    const quint64 pages = machine.host->bytesOfMemory / machine.host->bytesPerPage;
    machine.host->memory = VmStatistics{pages * (100 - load.memory) / 100, 0, 0};
    const qint64 free = bytesOfDisk * (100 - load.disk) / 100;
    machine.files->setCapacity(VolumeCapacity{bytesOfDisk, free, free});
    machine.installTrafficFilter();
}

PretendLife::PretendLife(PretendMachine machine, const PretendLoad &load)
    : m_machine(std::move(machine))
    , m_load(load)
{
    connect(&m_timer, &QTimer::timeout, this, &PretendLife::passASecond);
    m_timer.start(std::chrono::seconds(1));
}

void PretendLife::passASecond()
{
    m_machine.host->spend(1000, m_load.processors);
    m_machine.host->move(1'834'000, 124'000);
    m_machine.clock->letPass(std::chrono::seconds(1));
}

void fillPretendBrowsers(PretendMachine &machine)
{
    for (const char *browser : browsers)
        machine.workspace->install(QString::fromLatin1(browser));
}

} // namespace Quillmere
