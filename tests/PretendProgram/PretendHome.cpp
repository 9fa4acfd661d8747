#include "PretendProgram/PretendHome.h"

namespace Quillmere {

namespace {

struct Rubbish
{
    const char *folder;
    qint64 bytes;
};

constexpr qint64 megabyte = 1'000'000;

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

} // namespace

void fillPretendHome(PretendMachine &machine)
{
    for (const Rubbish &heap : rubbish)
        machine.files->addFile(machine.files->homeDirectory().appending(heap.folder).appending("data"), heap.bytes);
    for (const Rubbish &heap : elsewhere)
        machine.files->addFile(FilePath(heap.folder).appending("data"), heap.bytes);
    machine.files->refuse(machine.files->homeDirectory().appending("Library/Logs/backup"), Failure::Kind::NoPermission);
}

} // namespace Quillmere
