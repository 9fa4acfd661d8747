#pragma once

#include "Platform/Linux/MockedService.h"
#include "Tools/KeepAwake.h"
#include "Tools/LockedHolder.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Quillmere {

inline const QString listed = u"sleep:handle-lid-switch|Quillmere|Keep Awake Mode|block"_qs;

/// Programs find the bus by the environment.
class KeepAwakeTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(bus.isRunning());
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().toUtf8());
    }
    void TearDown() override
    {
        EXPECT_TRUE(LockedHolder(program, folder).stop());
        qunsetenv("DBUS_SYSTEM_BUS_ADDRESS");
    }

    KeepAwake keepAwake(std::chrono::milliseconds patience = std::chrono::seconds(20)) const
    {
        return {LidInhibitors(bus.connection()), std::make_unique<LockedHolder>(program, folder), patience};
    }
    void startLogind() { logind = MockedService::logind(bus); }
    void startLogindThatRefuses()
    {
        logind = std::make_unique<MockedService>(bus, u"org.freedesktop.login1"_qs, u"/org/freedesktop/login1"_qs,
                                                 u"org.freedesktop.login1.Manager"_qs);
        logind->addMethod(u"ListInhibitors"_qs, QString(), u"a(ssssuu)"_qs, u"ret = []"_qs);
        logind->addMethod(
            u"Inhibit"_qs, u"ssss"_qs, u"h"_qs,
            u"raise dbus.exceptions.DBusException('not here', name='org.freedesktop.DBus.Error.AccessDenied')"_qs);
    }
    QByteArray numberInFile() const
    {
        QFile file(QFile::decodeName(folder.appending("keepawake.pid").bytes()));
        return file.open(QFile::ReadOnly) ? file.readAll().trimmed() : QByteArray();
    }

    PrivateBus bus;
    std::unique_ptr<MockedService> logind;
    QTemporaryDir temporary;
    const QString program = QStringLiteral(QUILLMERE_KEEPAWAKE);
    const FilePath folder = FilePath(QFile::encodeName(temporary.path())).appending("run");
};

} // namespace Quillmere
