#include <QAccessible>
#include <QGuiApplication>

#include <gmock/gmock.h>

int main(int argc, char *argv[])
{
    // No screen, no graphics card: the same everywhere.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    QGuiApplication application(argc, argv);
    QAccessible::setActive(true);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
