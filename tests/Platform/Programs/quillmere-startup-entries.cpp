#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Startup/LinuxStartupEntries.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstring>

using namespace Quillmere;

/// `quillmere-startup-entries` prints what starts at login, one a line: "on" or "off", a tab and the file.
/// `quillmere-startup-entries on FILE` and `off FILE` switch one.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const auto files = std::make_shared<LinuxFileManager>();
    const LinuxStartupEntries startup(files);
    if (argc == 3) {
        const Result<void> done = startup.setEnabled(FilePath(argv[2]), std::strcmp(argv[1], "on") == 0);
        if (!done)
            std::fprintf(stderr, "%s\n", done.failure().detail.toUtf8().constData());
        return done ? 0 : 1;
    }
    for (const StartupEntry &entry : startup.entries())
        std::printf("%s\t%s\n", entry.isEnabled ? "on" : "off", entry.path.bytes().constData());
    return 0;
}
