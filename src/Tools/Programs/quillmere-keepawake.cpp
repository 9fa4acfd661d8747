#include "Tools/HeldInhibitor.h"
#include "Tools/ProgramStart.h"

#include <QCoreApplication>

#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

/// Whoever started this waits for the end of its output.
bool sayThatItIsHeld()
{
    const QByteArray text = HeldInhibitor::isHeld();
    const bool said = ::write(STDOUT_FILENO, text.constData(), static_cast<size_t>(text.size())) == text.size();
    const int nothing = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    return said && nothing >= 0 && ::dup2(nothing, STDOUT_FILENO) >= 0;
}

} // namespace

int main(int argc, char *argv[])
{
    startClean();
    const QCoreApplication application(argc, argv);
    if (argc != 2)
        return finish({ToolEnd::wrongUse, u"usage: quillmere-keepawake FOLDER"_qs});
    const auto held = HeldInhibitor::take(FilePath(QByteArray(argv[1])), LidInhibitors(QDBusConnection::systemBus()));
    if (!held) {
        std::puts(held.failure().detail.toUtf8().constData());
        return 1;
    }
    if (!sayThatItIsHeld())
        return 1;
    for (;;)
        ::pause();
}
