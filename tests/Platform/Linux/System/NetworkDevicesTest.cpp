#include "Platform/Linux/System/NetworkDevices.h"

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QByteArray headings
    = "Inter-|   Receive                                                |  Transmit\n"
      " face |bytes    packets errs drop fifo frame compressed multicast|bytes    packets errs drop fifo colls carrier "
      "compressed\n";

const QByteArray recordedDevices = headings
    + "    lo:    6586      59    0    0    0     0          0         0     6586      59    0    0    0     0       0 "
      "         0\n"
      "  eth0: 462372996   10926    0    0    0     0          0         0   562999    6596    0    0    0     0       "
      "0          0\n";

} // namespace

TEST(NetworkDevicesTest, ReadsBothCountersOfEachInterface)
{
    EXPECT_THAT(parseNetworkDevices(recordedDevices),
                ElementsAre(NetworkDevice{"lo", true, 6586, 6586}, NetworkDevice{"eth0", true, 462372996, 562999}));
}

TEST(NetworkDevicesTest, ReadsANumberThatFollowsItsNameAtOnce)
{
    EXPECT_THAT(parseNetworkDevices("eth0:4294967296 1 0 0 0 0 0 0 18446744073709551615 1 0 0 0 0 0 0\n"),
                ElementsAre(NetworkDevice{"eth0", true, 4294967296, 18446744073709551615ull}));
}

TEST(NetworkDevicesTest, KeepsANameWithAColonWhole)
{
    EXPECT_THAT(parseNetworkDevices("eth0:1:5 0 0 0 0 0 0 0 6 0 0 0 0 0 0 0\n"),
                ElementsAre(NetworkDevice{"eth0:1", true, 5, 6}));
}

TEST(NetworkDevicesTest, ReadsAHundredInterfaces)
{
    QByteArray text = headings;
    for (int index = 0; index < 100; ++index)
        text += " veth" + QByteArray::number(index) + ": " + QByteArray::number(index) + " 0 0 0 0 0 0 0 7 0\n";

    const QList<NetworkDevice> devices = parseNetworkDevices(text);

    ASSERT_EQ(devices.size(), 100);
    EXPECT_EQ(devices.last(), (NetworkDevice{"veth99", true, 99, 7}));
}

TEST(NetworkDevicesTest, ListsAnInterfaceWithoutCountersAsSuch)
{
    EXPECT_THAT(parseNetworkDevices("dummy0: No statistics available.\n"
                                    "eth0: 5 0 0 0 0 0 0\n"
                                    "eth1: 18446744073709551616 0 0 0 0 0 0 0 1 0\n"),
                ElementsAre(NetworkDevice{"dummy0"}, NetworkDevice{"eth0"}, NetworkDevice{"eth1"}));
}

TEST(NetworkDevicesTest, FindsNothingInOtherText)
{
    EXPECT_THAT(parseNetworkDevices(""), IsEmpty());
    EXPECT_THAT(parseNetworkDevices(headings), IsEmpty());
    EXPECT_THAT(parseNetworkDevices("\xff\xfe\n\n   \n:1 2 3\n"), IsEmpty());
}

TEST(NetworkDevicesTest, NeverReadsHalfANumberWhereverTheTextIsCut)
{
    const QList<NetworkDevice> whole = parseNetworkDevices(recordedDevices);

    for (qsizetype length = 0; length <= recordedDevices.size(); ++length) {
        const QList<NetworkDevice> cut = parseNetworkDevices(QByteArrayView(recordedDevices).first(length));
        ASSERT_LE(cut.size(), whole.size());
        EXPECT_EQ(cut, whole.first(cut.size())) << length;
    }
}
