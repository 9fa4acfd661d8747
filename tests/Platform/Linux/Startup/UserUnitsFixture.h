#pragma once

#include "Platform/Linux/MockedService.h"
#include "Platform/Linux/Startup/UserUnits.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

namespace Quillmere {

/// What makes a unit one that can be enabled.
inline const QByteArray install = "[Unit]\n[Install]\nWantedBy=default.target\n";

/// A home with a manager of units on a bus of its own, which switches what it tells of, and files, for real.
class UserUnitsFixture : public testing::Test
{
protected:
    void SetUp() override;

    /// Lets the manager do @p python, in which OWN and SYSTEM are its two folders.
    void add(const QString &method, const QString &in, const QString &out, QString python);
    /// A manager of several units.
    void answer();
    /// A manager of one unit, which is a link of the user's to @p target.
    void answerForLink(const QByteArray &target);
    /// Without asking for states, which any method may do.
    [[nodiscard]] QStringList methodsCalled() const;
    [[nodiscard]] UserUnits unitsOn(const QDBusConnection &connection) const;
    /// A failure of the test for one that is not listed.
    [[nodiscard]] bool isEnabled(const FilePath &path) const;
    [[nodiscard]] static QString textOf(const FilePath &path) { return QString::fromUtf8(path.bytes()); }

    PrivateBus bus;
    std::unique_ptr<MockedService> manager;
    TemporaryHome home;
    const FilePath own = home.path("home/.config/systemd/user");
    const FilePath system = home.path("system");
    const UserUnits units = unitsOn(bus.connection());
    const FilePath music = system.appending("music.service");
    const FilePath agent = system.appending("agent.socket");
    const FilePath linked = own.appending("linked.service");
};

/// What a switching answers, in Python's words.
inline const QString noChanges = u"dbus.Array([], signature='(sss)')"_qs;
/// How the manager of several units lists them, in Python's words.
[[nodiscard]] QString listingOfSeveral();

} // namespace Quillmere
