#include "PretendProgram/PretendHome.h"

#include "Fakes/ByteUnits.h"

namespace Quillmere {

namespace {

struct Rubbish
{
    const char *folder;
    qint64 bytes;
};

constexpr Rubbish rubbish[] = {
    {"Library/Caches/com.example.frame-preview-cache-shared-by-all-projects-2026-11-20T18-42-07Z", 1'203 * megabyte},
    {"Library/Caches/org.mozilla.firefox", 684 * megabyte},
    {"Library/Caches/Google/Chrome", 1'864 * megabyte},
    {"Library/Caches/Firefox/Profiles", 742 * megabyte},
    {"Library/Caches/BraveSoftware/Brave-Browser", 318 * megabyte},
    {"Library/Caches/Microsoft Edge", 96 * megabyte},
    {"Library/Developer/Xcode", 48'730 * megabyte},
    {"Documents/Films", 61'180 * megabyte},
    {"Library/Caches/thumbnails", 413 * megabyte},
    {"Library/Caches/fontconfig", 96 * megabyte},
    {"Library/Caches/mesa_shader_cache", 58 * megabyte},
    {"Library/Caches/com.example.player", 21 * megabyte},
    {"Library/Caches/com.example.mail", 12 * megabyte},
    {"Library/Logs/DiagnosticReports", 181 * megabyte},
    {"Library/Logs/backup", 31 * megabyte},
    {"Library/Containers/org.example.office/Data/Library/Caches", 1'102 * megabyte},
    {"Library/Containers/org.example.notes/Data/Library/Caches", 338 * megabyte},
};

constexpr Rubbish elsewhere[] = {
    {"/Applications", 96'420 * megabyte},
    {"/tmp/export-4711", 300 * megabyte},
    {"/tmp/unpacked", 88 * megabyte},
};

struct LargeFile
{
    const char *path;
    qint64 bytes;
    int age; ///< Days since it was changed; negative where nobody knows.
};

constexpr LargeFile largeFiles[] = {
    {"Movies/Summer 2025/The long way along the coast, first part, with sound.mp4", 4'718 * megabyte, 120},
    {"Movies/Summer 2025/The long way along the coast, second part, with sound.mp4", 3'964 * megabyte, 120},
    {"Movies/Concert.mkv", 1'448 * megabyte, 433},
    {"Movies/Birthday.mov", 962 * megabyte, 31},
    {"Downloads/desktop-12-amd64-netinst.iso", 661 * megabyte, 12},
    {"Downloads/desktop-12-live.iso", 3'221 * megabyte, 12},
    {"Downloads/Model Workshop.dmg", 418 * megabyte, 3},
    {"Downloads/Office Suite.pkg", 744 * megabyte, 58},
    {"Downloads/photos-2019.zip", 2'153 * megabyte, 640},
    {"Downloads/dataset.tar.gz", 1'187 * megabyte, 77},
    {"Documents/Archive/letters and scans 2001-2015.7z", 853 * megabyte, 901},
    {"Documents/Virtual machines/old system.img", 21'474 * megabyte, 210},
    {"Documents/thesis-with-all-figures.pdf", 96 * megabyte, 1'460},
    {"Documents/Mail export", 307 * megabyte, -1},
    {"Desktop/Scan of everything.pdf", 155 * megabyte, 2},
    {"Music/Mix 2.flac", 66 * megabyte, 15},
    {"Music/Mix 10.flac", 71 * megabyte, 15},
    {"Pictures/Panorama.heic", 57 * megabyte, 44},
    {"Pictures/Poster, 300 dpi.png", 112 * megabyte, 365},
    {"Documents/just too small.bin", 49 * megabyte, 5},
};

constexpr int smallFiles = 3'000;

void addLargeFiles(PretendMachine &machine)
{
    const QDateTime now = machine.clock->now();
    for (const LargeFile &file : largeFiles) {
        const FilePath path = machine.files->homeDirectory().appending(file.path);
        machine.files->addFile(path, file.bytes);
        if (file.age >= 0)
            machine.files->setTimes(path, now, now.addDays(-file.age));
    }
    for (int i = 1; i <= smallFiles; ++i) {
        const QByteArray name = "Downloads/Invoices/Invoice " + QByteArray::number(i) + ".pdf";
        machine.files->addFile(machine.files->homeDirectory().appending(name), megabyte / 10);
    }
    machine.files->addSparseFile(machine.files->homeDirectory().appending("Documents/sparse.img"), 900 * megabyte, 0);
    machine.files->refuse(machine.files->homeDirectory().appending("Desktop/Scan of everything.pdf"),
                          Failure::Kind::NoPermission);
}

} // namespace

void fillPretendHome(PretendMachine &machine)
{
    for (const Rubbish &heap : rubbish)
        machine.files->addFile(machine.files->homeDirectory().appending(heap.folder).appending("data"), heap.bytes);
    for (const Rubbish &heap : elsewhere)
        machine.files->addFile(FilePath(heap.folder).appending("data"), heap.bytes);
    machine.files->refuse(machine.files->homeDirectory().appending("Library/Logs/backup"), Failure::Kind::NoPermission);
    addLargeFiles(machine);
}

} // namespace Quillmere
