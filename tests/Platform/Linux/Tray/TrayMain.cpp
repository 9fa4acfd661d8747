#include "Platform/Linux/Tray/TestDesktop.h"

#include <QApplication>

#include <gmock/gmock.h>

#include <cstdio>

int main(int argc, char *argv[])
{
    testing::InitGoogleMock(&argc, argv);
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    const Quillmere::TestDesktop desktop;
    if (!desktop.isRunning()) {
        std::fputs("dbus-daemon or Xvfb did not start\n", stderr);
        return 1;
    }
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
