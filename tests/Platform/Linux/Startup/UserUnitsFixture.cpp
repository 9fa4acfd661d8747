#include "Platform/Linux/Startup/UserUnitsFixture.h"

#include "Platform/Linux/Files/LinuxFileManager.h"

namespace Quillmere {

QString listingOfSeveral()
{
    return uR"(
if not hasattr(self, 'units'):
    self.units = {
        'SYSTEM/music.service': 'enabled',
        'SYSTEM/backup.timer': 'disabled',
        'OWN/own.service': 'enabled',
        'SYSTEM/each@.service': 'disabled',
        'SYSTEM/bus.service': 'static',
        'SYSTEM/never.service': 'masked',
        '/run/user/1000/systemd/generator/app-a@autostart.service': 'generated',
        'SYSTEM/alias.service': 'alias',
        'SYSTEM/agent.socket': 'enabled',
    }
ret = dbus.Array(list(self.units.items()), signature='(ss)')
)"_qs;
}

namespace {

/// Nobody but the administrator disables what is enabled for all users.
QString switching(const char *state)
{
    return uR"(
for path in self.units:
    name = path.rsplit('/', 1)[1]
    if name in args[0] and name != 'agent.socket':
        self.units[path] = '%1'
)"_qs.arg(QLatin1String(state));
}

const QString masking = uR"(
import os
for name in args[0]:
    os.symlink('/dev/null', 'OWN/' + name)
    del self.units['SYSTEM/' + name]
    self.units['OWN/' + name] = 'masked'
)"_qs;

const QString unmasking = uR"(
import os
for name in args[0]:
    os.unlink('OWN/' + name)
    del self.units['OWN/' + name]
    self.units['SYSTEM/' + name] = 'enabled'
)"_qs;

const QString telling = uR"(
ret = ''
for path, state in self.units.items():
    if path.rsplit('/', 1)[1] == args[0]:
        ret = state
if not ret:
    raise dbus.exceptions.DBusException('No such file or directory', name='org.freedesktop.DBus.Error.FileNotFound')
)"_qs;

/// As systemd does it: one that nothing leads to any more is not known.
const QString tellingOfLink = uR"(
import os
state = 'enabled' if getattr(self, 'is_wanted', True) else 'linked'
if not os.path.islink('OWN/linked.service'):
    state = ''
)"_qs;

const QString tellingOfUnit = tellingOfLink + uR"(
if not state:
    raise dbus.exceptions.DBusException('No such file or directory', name='org.freedesktop.DBus.Error.FileNotFound')
ret = state
)"_qs;

} // namespace

void UserUnitsFixture::SetUp()
{
    ASSERT_TRUE(bus.isRunning());
    manager = std::make_unique<MockedService>(bus, u"org.freedesktop.systemd1"_qs, u"/org/freedesktop/systemd1"_qs,
                                              u"org.freedesktop.systemd1.Manager"_qs);
    ASSERT_TRUE(manager->isRunning());
    manager->addProperty(u"UnitPath"_qs, QStringList{textOf(own), textOf(system)});
    home.addFolder("home/.config/systemd/user");
    for (const char *unit : {"agent.socket", "backup.timer", "music.service"})
        home.addFile(QByteArray("system/") + unit, install);
}

void UserUnitsFixture::add(const QString &method, const QString &in, const QString &out, QString python)
{
    python.replace(u"OWN"_qs, textOf(own)).replace(u"SYSTEM"_qs, textOf(system));
    manager->addMethod(method, in, out, python);
}

void UserUnitsFixture::answer()
{
    add(u"ListUnitFiles"_qs, {}, u"a(ss)"_qs, listingOfSeveral());
    add(u"EnableUnitFiles"_qs, u"asbb"_qs, u"ba(sss)"_qs, switching("enabled") + u"ret = (True, %1)"_qs.arg(noChanges));
    add(u"DisableUnitFiles"_qs, u"asb"_qs, u"a(sss)"_qs, switching("disabled") + u"ret = "_qs + noChanges);
    add(u"MaskUnitFiles"_qs, u"asbb"_qs, u"a(sss)"_qs, masking + u"ret = "_qs + noChanges);
    add(u"UnmaskUnitFiles"_qs, u"asb"_qs, u"a(sss)"_qs, unmasking + u"ret = "_qs + noChanges);
    add(u"GetUnitFileState"_qs, u"s"_qs, u"s"_qs, telling);
}

void UserUnitsFixture::answerForLink(const QByteArray &target)
{
    home.addFile("home/dotfiles/linked.service", install);
    home.addLink("home/.config/systemd/user/linked.service", target);
    add(u"ListUnitFiles"_qs, {}, u"a(ss)"_qs,
        tellingOfLink + u"ret = dbus.Array([('OWN/linked.service', state)] if state else [], signature='(ss)')"_qs);
    add(u"GetUnitFileState"_qs, u"s"_qs, u"s"_qs, tellingOfUnit);
    add(u"EnableUnitFiles"_qs, u"asbb"_qs, u"ba(sss)"_qs, u"self.is_wanted = True\nret = (True, %1)"_qs.arg(noChanges));
    add(u"DisableUnitFiles"_qs, u"asb"_qs, u"a(sss)"_qs,
        u"import os\nos.unlink('OWN/linked.service')\nself.is_wanted = False\nret = "_qs + noChanges);
}

QStringList UserUnitsFixture::methodsCalled() const
{
    QStringList methods;
    for (const QString &call : manager->calls())
        methods.append(call.section(u' ', 0, 0));
    methods.removeAll(u"GetUnitFileState"_qs);
    return methods;
}

UserUnits UserUnitsFixture::unitsOn(const QDBusConnection &connection) const
{
    const auto files = std::make_shared<LinuxFileManager>(home.environment());
    return {{files, own, {system}}, home.path("home"), connection};
}

bool UserUnitsFixture::isEnabled(const FilePath &path) const
{
    for (const StartupEntry &entry : units.entries()) {
        if (entry.path == path)
            return entry.isEnabled;
    }
    ADD_FAILURE() << "not listed: " << path.bytes().constData();
    return false;
}

} // namespace Quillmere
