#include "Platform/Linux/Programs/HelperPrograms.h"

#include <algorithm>
#include <array>

namespace Quillmere {

namespace {

struct Row
{
    QStringView launchPath;
    const char *helper;
};

// What stands at these paths on Linux, if anything, knows other arguments or prints other lines.
// Some are named by scripts alone, which osascript carries out itself; each does the same for whoever runs it alone.
constexpr std::array<Row, 10> helpers = {{
    {u"/bin/ps", "ps"},
    {u"/usr/bin/ditto", "ditto"},
    {u"/usr/bin/dscacheutil", "dscacheutil"},
    {u"/usr/bin/killall", "killall"},
    {u"/usr/bin/mdutil", "mdutil"},
    {u"/usr/bin/osascript", "osascript"},
    {u"/usr/bin/pmset", "pmset"},
    {u"/usr/sbin/diskutil", "diskutil"},
    {u"/usr/sbin/purge", "purge"},
    {u"/System/Library/Frameworks/CoreServices.framework/Frameworks/LaunchServices.framework/Support/lsregister",
     "lsregister"},
}};

} // namespace

QByteArray helperProgramFor(QStringView launchPath)
{
    const auto row = std::ranges::find(helpers, launchPath, &Row::launchPath);
    return row == helpers.end() ? QByteArray() : QByteArray(row->helper);
}

} // namespace Quillmere
