#include "PretendProgram/PretendVolumes.h"

#include "Fakes/ByteUnits.h"
#include "Fakes/PretendScript.h"

namespace Quillmere {

namespace {

struct Volume
{
    const char *mountPoint;
    const char *device;
    const char *fileSystem;
    qint64 gigabytes;
    bool isInternal;
};

constexpr Volume volumes[] = {
    {"/Volumes/STICK", "disk4s2", "MS-DOS FAT32", 64, false},
    {"/Volumes/Photographs and films of the whole family since 1998", "disk5s1", "NTFS", 4'000, false},
    {"/Volumes/Backup", "disk6s2", "APFS", 2'000, false},
    {"/Volumes/Data", "disk1s5", "APFS", 512, true},
    {"/Volumes/share on the server", "", "", 8'000, false},
    {"/private/var/vm", "disk1s4", "APFS", 512, true},
};

struct Printed
{
    const char *program;
    const char *output;
};

constexpr Printed asAdministrator[] = {
    {"/usr/bin/mdutil", "/:\n\tIndexing enabled.\n"},
    {"/usr/sbin/purge", ""},
    {"/usr/bin/killall", ""},
};

Result<ProcessOutcome> osascript(PretendDisks &disks, const Command &command)
{
    const QStringList words = wordsOfScript(command.arguments.value(1));
    if (words.value(0) == u"/usr/sbin/diskutil")
        return disks.diskutil(words.sliced(1), true);
    for (const Printed &each : asAdministrator) {
        if (words.value(0) == QString::fromLatin1(each.program))
            return ProcessOutcome{0, each.output};
    }
    return ProcessOutcome{};
}

} // namespace

void fillPretendVolumes(PretendMachine &machine)
{
    machine.connectDisks();
    machine.processes->answer(u"/usr/bin/osascript"_qs, [files = machine.files](const Command &command) {
        return osascript(files->disks(), command);
    });
    for (const Volume &each : volumes) {
        PretendVolume volume;
        volume.mountPoint = FilePath(each.mountPoint);
        volume.device = QString::fromLatin1(each.device);
        volume.fileSystem = QString::fromLatin1(each.fileSystem);
        volume.values = VolumeValues{{}, !each.isInternal, each.isInternal, false};
        volume.capacity = {each.gigabytes * gigabyte, each.gigabytes * gigabyte / 3, each.gigabytes * gigabyte / 3};
        machine.files->disks().plugIn(volume);
    }
}

} // namespace Quillmere
