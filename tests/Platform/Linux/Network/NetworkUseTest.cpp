#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QStringList>

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// The sources of the program in which @p pattern stands, in the order of their names.
QStringList sourcesWith(const QStringList &kinds, const QString &pattern)
{
    const QString top = QStringLiteral(QUILLMERE_SOURCES);
    const QRegularExpression expression(pattern);
    QStringList found;
    QDirIterator files(top, kinds, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
        if (expression.match(QString::fromUtf8(file.readAll())).hasMatch())
            found.append(file.fileName().sliced(top.size() + 1));
    }
    found.sort();
    return found;
}

const QStringList code = {u"*.cpp"_qs, u"*.h"_qs};

} // namespace

// What is watched while the program runs is what a test happens to press. This is all that there is to press.

TEST(NetworkUseTest, IsNamedByTheUrlSessionAlone)
{
    const QString classes = u"\\bQ((Network|Tcp|Udp|Sctp|Ssl|Dtls|Host|Dns|Http|WebSocket)\\w+|AbstractSocket)\\b"_qs;

    EXPECT_THAT(sourcesWith(code, classes),
                ElementsAre(u"Platform/Linux/Network/LinuxUrlSession.cpp"_qs,
                            u"Platform/Linux/Network/LinuxUrlSession.h"_qs,
                            u"Platform/Linux/Network/UrlTransfer.cpp"_qs, u"Platform/Linux/Network/UrlTransfer.h"_qs));
}

TEST(NetworkUseTest, IsLinkedByTheUrlSessionAndForTheSocketOfTheOneInstance)
{
    EXPECT_THAT(sourcesWith({u"CMakeLists.txt"_qs}, u"Qt6::(Network|WebSockets|WebEngine|HttpServer)\\b"_qs),
                ElementsAre(u"App/CMakeLists.txt"_qs, u"Platform/Linux/Network/CMakeLists.txt"_qs));
    EXPECT_THAT(sourcesWith(code, u"\\bQLocal(Socket|Server)\\b"_qs),
                ElementsAre(u"App/SingleInstance.cpp"_qs, u"App/SingleInstance.h"_qs));
}

TEST(NetworkUseTest, HasNoOtherWayAroundTheUrlSession)
{
    // The counters of the interfaces are asked for through a socket of the kind that they count; it is never connected.
    EXPECT_THAT(sourcesWith(code, u"\\b[AP]F_(INET6?|PACKET)\\b"_qs),
                ElementsAre(u"Platform/Linux/System/LinuxHostStatistics.cpp"_qs));
    EXPECT_THAT(sourcesWith(code, u"\\b(socket|socketpair|sendto|sendmmsg|getaddrinfo|gethostby\\w+)\\("_qs),
                ElementsAre(u"Platform/Linux/System/LinuxHostStatistics.cpp"_qs));
    EXPECT_THAT(sourcesWith(code, u"(?<!\\w)::(connect|bind|accept4?|sendmsg)\\("_qs), IsEmpty());
    EXPECT_THAT(sourcesWith(code, u"\\b(curl_|soup_|g_socket_|g_resolver_|libcurl)|/(curl|wget)\\b"_qs), IsEmpty());
}

TEST(NetworkUseTest, IsOutOfReachOfTheScreens)
{
    const QStringList screens = {u"*.qml"_qs, u"*.js"_qs};

    EXPECT_GT(sourcesWith(screens, u"import Quillmere\\b"_qs).size(), 50);
    EXPECT_THAT(sourcesWith(screens, u"XMLHttpRequest|WebSocket|WebEngine|\\b(https?|ftp)://"_qs), IsEmpty());
}
