#include "Platform/Linux/Desktop/LinuxWorkspace.h"
#include "Platform/Linux/Files/LinuxFileManager.h"

#include <QCoreApplication>

#include <cstdio>

using namespace Quillmere;

namespace {

const char *text(const std::optional<bool> &value)
{
    if (!value)
        return "unknown";
    return *value ? "yes" : "no";
}

/// "PLACE name=... internal=... readonly=..."
void describe(const LinuxFileManager &files, const FilePath &place)
{
    const Result<VolumeValues> values = files.valuesOfVolume(place);
    if (!values) {
        std::printf("%s fails\n", place.bytes().constData());
        return;
    }
    std::printf("%s name=%s internal=%s readonly=%s\n", place.bytes().constData(),
                qPrintable(values.value().name.value_or(u"none"_qs)), text(values.value().isInternal),
                text(values.value().isReadOnly));
}

} // namespace

/// Describes the places that it is given, or else all volumes, and then tells of those that are mounted.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const LinuxFileManager files;
    for (int at = 1; at < argc; ++at)
        describe(files, FilePath(QByteArray(argv[at])));
    if (argc > 1)
        return 0;
    for (const FilePath &place : files.mountedVolumes())
        describe(files, place);
    LinuxWorkspace workspace(files.homeDirectory(), {});
    workspace.observeMounts([](const MountNotification &mounted) {
        std::printf("mounted %s\n", mounted.volume ? mounted.volume->bytes().constData() : "nowhere");
        std::fflush(stdout);
    });
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
