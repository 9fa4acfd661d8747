#include "PretendProgram/PretendTools.h"

#include "Fakes/ByteUnits.h"

namespace Quillmere {

namespace {

struct Heap
{
    const char *folder;
    qint64 bytes;
};

struct Tool
{
    const char *program;
    const char *output;
};

constexpr Heap inHome[] = {
    {"Library/Developer/Xcode/DerivedData", 8'214 * megabyte},
    {"Library/Caches/org.swift.swiftpm", 611 * megabyte},
    {"Library/Application Support/Code/Cache", 412 * megabyte},
    {"Library/Application Support/Code/CachedData", 288 * megabyte},
    {"Library/Application Support/Code/Code Cache", 94 * megabyte},
    {"Library/Application Support/Code/GPUCache", 11 * megabyte},
    {"Library/Application Support/Code/logs", 37 * megabyte},
    {"Library/Application Support/Code/CachedExtensionVSIXs", 203 * megabyte},
    {"Library/Application Support/Code/Service Worker/CacheStorage", 46 * megabyte},
    {"Library/Developer/Xcode/iOS DeviceSupport", 5'120 * megabyte},
    {"Library/Developer/Xcode/Archives", 2'044 * megabyte},
    {"Library/Caches/Google/AndroidStudio2026.1", 1'190 * megabyte},
    {"Library/Caches/JetBrains/IntelliJIdea2026.2", 1'304 * megabyte},
    {"Library/Logs/JetBrains/IntelliJIdea2026.2", 93 * megabyte},
    {"Library/Logs/Google/AndroidStudio2026.1", 43 * megabyte},
    {".gradle/caches", 3'411 * megabyte},
    {".gradle/wrapper/dists", 902 * megabyte},
    {".m2/repository", 1'277 * megabyte},
    {".cache/pip", 741 * megabyte},
    {".npm/_cacache", 1'822 * megabyte},
    {"go/pkg/mod/cache", 1'130 * megabyte},
    {".cargo/registry/cache", 934 * megabyte},
    {".cargo/git/db", 655 * megabyte},
    {"Library/Android/sdk/.temp", 128 * megabyte},
    {"Library/Android/sdk/system-images", 9'731 * megabyte},
    {".android/avd", 8'690 * megabyte},
    {"Library/Caches/com.unity3d.UnityEditor5.x", 2'310 * megabyte},
    {"Library/Containers/com.apple.mail/Data/Library/Mail Downloads", 318 * megabyte},
    {".sdkman/candidates/java", 1'421 * megabyte},
    {".pyenv", 2'870 * megabyte},
    {".rustup", 3'266 * megabyte},
    {".nvm", 1'940 * megabyte},
    {"development/flutter", 2'817 * megabyte},
};

constexpr Heap heapsElsewhere[] = {
    {"/Library/Caches", 1'512 * megabyte},
};

constexpr Tool tools[] = {
    {"/usr/bin/python3", "Python 3.13.9\n"},
    {"/usr/bin/java", "openjdk version \"21.0.9\" 2026-10-21\n"},
    {"/usr/local/bin/node", "v24.11.1\n"},
};

} // namespace

void fillPretendTools(PretendMachine &machine)
{
    for (const Heap &heap : inHome)
        machine.files->addFile(machine.files->homeDirectory().appending(heap.folder).appending("data"), heap.bytes);
    for (const Heap &heap : heapsElsewhere)
        machine.files->addFile(FilePath(heap.folder).appending("data"), heap.bytes);
    machine.files->refuse(FilePath("/Library/Caches"), Failure::Kind::NoPermission);
    for (const Tool &tool : tools) {
        machine.files->addFile(FilePath(tool.program), megabyte);
        machine.files->makeExecutable(FilePath(tool.program));
        machine.processes->answer(QString::fromLatin1(tool.program), QByteArray(tool.output));
    }
}

} // namespace Quillmere
