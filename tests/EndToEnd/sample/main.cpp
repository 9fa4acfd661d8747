#include <QGuiApplication>
#include <QQmlApplicationEngine>

// A small window on which the harness of the end-to-end tests is itself tested.
int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine(QUrl(u"qrc:/sample/Sample.qml"_qs));
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
