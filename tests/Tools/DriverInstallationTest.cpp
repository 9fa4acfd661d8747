#include "Tools/DriverInstallation.h"

#include "Platform/Linux/MockedService.h"
#include "Tools/PretendPrograms.h"

using namespace Quillmere;

namespace {

const QString found = u"ntfs-3g;1:2022;amd64;stable"_qs;

/// A PackageKit whose transactions answer as they are told, and a driver that is not there.
class DriverInstallationTest : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(bus.isRunning()); }

    [[nodiscard]] ToolEnd install() const { return DriverInstallation(bus.connection(), driver).run(); }

    /// Python, in which the signals of a transaction are sent by package(), error() and finished().
    void startPackageKit(const QString &resolving, const QString &installing)
    {
        const QString signals_ = u"import os, threading\n"
                                 "from gi.repository import GLib\n"
                                 "I = 'org.freedesktop.PackageKit.Transaction'\n"
                                 "def send(name, signature, values):\n"
                                 "    GLib.timeout_add(20, lambda: self.EmitSignal(I, name, signature, values))\n"
                                 "def package(what, name): send('Package', 'uss', [what, name, 'a summary'])\n"
                                 "def error(text): send('ErrorCode', 'us', [dbus.UInt32(7), text])\n"
                                 "def finished(how): send('Finished', 'uu', [how, dbus.UInt32(1)])\n"
                                 "def leave(): GLib.timeout_add(50, lambda: os._exit(0))\n"
                                 "driver = '%1'\n"_qs.arg(driver);
        packageKit = std::make_unique<MockedService>(
            bus, u"org.freedesktop.PackageKit"_qs, u"/org/freedesktop/PackageKit"_qs, u"org.freedesktop.PackageKit"_qs);
        ASSERT_TRUE(packageKit->isRunning());
        packageKit->addMethod(u"CreateTransaction"_qs, QString(), u"o"_qs,
                              u"ret = '/' + str(len(objects)) + '_transaction'\n"
                              "self.AddObject(ret, 'org.freedesktop.PackageKit.Transaction', {}, [\n"
                              "    ('Resolve', 'tas', '', '''%1'''),\n"
                              "    ('InstallPackages', 'tas', '', '''%2''')])"_qs.arg(
                                  withGlobals(signals_ + resolving), withGlobals(signals_ + installing)));
    }

    PrivateBus bus;
    PretendPrograms programs;
    const QString driver = programs.path(u"ntfs-3g"_qs);
    std::unique_ptr<MockedService> packageKit;

private:
    /// The methods' own names are no globals, which functions inside of them would need.
    static QString withGlobals(const QString &python)
    {
        QString indented = python;
        return u"scope = dict(globals(), self=self, args=args)\nexec(%1, scope)"_qs.arg(
            u"\"\"\""_qs + indented.replace(u'\\', u"\\\\"_qs) + u"\"\"\""_qs);
    }
};

} // namespace

TEST_F(DriverInstallationTest, IsNothingToDoWhereItIsInstalled)
{
    programs.add(u"ntfs-3g"_qs);

    EXPECT_EQ(install(), (ToolEnd{0, {}, u"The driver ntfs-3g is installed already: nothing to do here."_qs}));
    EXPECT_EQ(programs.calls(), "");
}

TEST_F(DriverInstallationTest, SaysThatThereIsNoPackageKit)
{
    const ToolEnd end = install();

    EXPECT_EQ(end.status, 1);
    EXPECT_TRUE(end.message.startsWith(u"PackageKit does not answer on this machine ("_qs)) << qPrintable(end.message);
    EXPECT_TRUE(end.message.endsWith(u"Install the package ntfs-3g with its own tools."_qs));
}

TEST_F(DriverInstallationTest, InstallsThePackageThatWasFound)
{
    startPackageKit(u"assert args[0] == 1 << 18 and list(args[1]) == ['ntfs-3g']\n"
                    "package(dbus.UInt32(2), 'ntfs-3g-dev;1;amd64;stable')\n"
                    "package(dbus.UInt32(2), '%1')\n"
                    "finished(dbus.UInt32(1))"_qs.arg(found),
                    u"assert args[0] == 2 and list(args[1]) == ['%1']\n"
                    "open(driver, 'w').close()\n"
                    "os.chmod(driver, 0o755)\n"
                    "finished(dbus.UInt32(1))"_qs.arg(found));

    EXPECT_EQ(install(), (ToolEnd{0, {}, u"The driver ntfs-3g was installed."_qs}));
}

TEST_F(DriverInstallationTest, SaysThatNoSourceHasIt)
{
    startPackageKit(u"package(dbus.UInt32(1), '%1')\nfinished(dbus.UInt32(1))"_qs.arg(found), u"os._exit(1)"_qs);

    EXPECT_EQ(install(),
              (ToolEnd{1, u"The package ntfs-3g was not installed: No source of packages on this machine has it."_qs}));
}

TEST_F(DriverInstallationTest, SaysWhatPackageKitFailedOf)
{
    startPackageKit(u"package(dbus.UInt32(2), '%1')\nfinished(dbus.UInt32(1))"_qs.arg(found),
                    u"error('There is no network.')\nfinished(dbus.UInt32(2))"_qs);

    EXPECT_EQ(install(), (ToolEnd{1, u"The package ntfs-3g was not installed: There is no network."_qs}));
}

TEST_F(DriverInstallationTest, SaysWhenPackageKitRefusesAtOnce)
{
    startPackageKit(u"raise dbus.exceptions.DBusException('locked', name='org.freedesktop.PackageKit.Failed')"_qs,
                    u"os._exit(1)"_qs);

    EXPECT_EQ(install(), (ToolEnd{1, u"The package ntfs-3g was not installed: locked"_qs}));
}

TEST_F(DriverInstallationTest, SaysWhenPackageKitGoesAwayMeanwhile)
{
    startPackageKit(u"package(dbus.UInt32(2), '%1')\nfinished(dbus.UInt32(1))"_qs.arg(found), u"leave()"_qs);

    EXPECT_EQ(install(),
              (ToolEnd{1, u"The package ntfs-3g was not installed: PackageKit has gone away meanwhile."_qs}));
}

TEST_F(DriverInstallationTest, IsNoSuccessWithoutADriverInTheEnd)
{
    startPackageKit(u"package(dbus.UInt32(2), '%1')\nfinished(dbus.UInt32(1))"_qs.arg(found),
                    u"finished(dbus.UInt32(1))"_qs);

    EXPECT_EQ(install(), (ToolEnd{1, u"PackageKit has ended without a driver at %1."_qs.arg(driver)}));
}
