#include "Platform/Linux/System/LinuxPowerAssertions.h"

#include <QCoreApplication>

#include <cstdio>

#include <unistd.h>

using namespace Quillmere;

/// Holds an assertion by the system bus of the given address until it is killed.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const auto bus = QDBusConnection::connectToBus(QCoreApplication::arguments().value(1), u"system"_qs);
    LinuxPowerAssertions assertions(bus, QDBusConnection(u"none"_qs));
    if (!assertions.create(u"PreventUserIdleSystemSleep"_qs, PowerAssertions::on,
                           u"Quillmere Keep Awake Mode Active"_qs))
        return 1;
    std::puts("held");
    std::fflush(stdout);
    for (;;)
        ::pause();
}
