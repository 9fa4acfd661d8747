#include "App/LinuxMachine.h"
#include "App/QuillmereApp.h"
#include "App/SingleInstance.h"
#include "Platform/Linux/Programs/UserEnvironment.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QStandardPaths>

#include <cstdio>
#include <unistd.h>

using namespace Quillmere;

namespace {

// One instance for each home: a trial home runs beside the user's own.
QString instanceName(const FilePath &home)
{
    const QByteArray hash = QCryptographicHash::hash(home.bytes(), QCryptographicHash::Sha256).toHex();
    return u"quillmere-"_qs + QString::fromLatin1(hash.first(16));
}

void saySoWhenRunningAsRoot()
{
    if (geteuid() == 0) {
        std::puts("Quillmere is running as root: it works on root's own home, and nothing asks for a password.");
        std::fflush(stdout);
    }
}

/// Sees to it that there is a home. Where the user asked for one that is not there, another is not taken instead: it
/// would be cleaned in its place.
bool settleHome()
{
    const UserEnvironment user = UserEnvironment::current();
    if (!user.hasHome()) {
        std::printf("Quillmere cannot start: there is no home folder at %s.\n",
                    qUtf8Printable(user.home.displayText()));
        return false;
    }
    // Qt knows the variable alone, and without it would keep its files below the root.
    qputenv("HOME", user.home.bytes());
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    if (!settleHome())
        return 1;
    // What plays the movies of promotions asks for it once they are loaded. The usual one has none of its plugins here.
    if (!qEnvironmentVariableIsSet("QT_MEDIA_BACKEND"))
        qputenv("QT_MEDIA_BACKEND", "ffmpeg");
    QApplication application(argc, argv);
    QApplication::setApplicationName(u"Quillmere"_qs);
    QApplication::setDesktopFileName(u"com.veltrane.quillmere"_qs);
    saySoWhenRunningAsRoot();

    const Machine machine = makeLinuxMachine();
    SingleInstance instance(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation),
                            instanceName(machine.files->homeDirectory()));
    if (!instance.claim())
        return 0;
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, &instance, &SingleInstance::retire);

    QuillmereApp quillmere(machine);
    QObject::connect(&instance, &SingleInstance::activationRequested, &quillmere, [&](const QString &activationToken) {
        // The compositor lets a window take the focus only with the token that the user's own click produced.
        if (!activationToken.isEmpty())
            qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
        quillmere.showMainWindow();
    });
    if (!quillmere.start())
        return 1;
    return quillmere.exec();
}
