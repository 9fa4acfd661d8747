#include "Platform/Linux/Desktop/FileViewer.h"

#include "Platform/Linux/Desktop/UrlOpening.h"
#include "Platform/Linux/MockedService.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A session with a desktop of the tests' own, on which folders are opened by a program that writes down what it is
/// given. The desktop is one for all tests, because GIO asks where it is only once.
class FileViewerTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        s_home = std::make_unique<TemporaryHome>();
        const FilePath program = s_home->addFile(
            "opens folders", "#!/bin/sh\nprintf '%s\\n' \"$1\" >>\"" + s_home->path("opened").bytes() + "\"\n");
        ASSERT_EQ(::chmod(program.bytes().constData(), 0755), 0);
        s_home->addFile("data/applications/opener.desktop",
                        "[Desktop Entry]\nType=Application\nName=Opener\nMimeType=inode/directory;"
                        "x-scheme-handler/https;\nExec=\""
                            + program.bytes() + "\" %u\n");
        s_home->addFile("data/applications/gnome-control-center.desktop",
                        "[Desktop Entry]\nType=Application\nName=Elsewhere\nOnlyShowIn=GNOME;\nExec=\""
                            + program.bytes() + "\" elsewhere\n");
        s_home->addFile("data/applications/systemsettings.desktop",
                        "[Desktop Entry]\nType=Application\nName=Settings\nExec=\"" + program.bytes()
                            + "\" settings\n");
        s_home->addFile("config/mimeapps.list",
                        "[Default Applications]\ninode/directory=opener.desktop\n"
                        "x-scheme-handler/https=opener.desktop\n");
        qputenv("XDG_DATA_HOME", s_home->path("data").bytes());
        qputenv("XDG_CONFIG_HOME", s_home->path("config").bytes());
        qputenv("XDG_DATA_DIRS", s_home->path("nothing").bytes());
    }
    static void TearDownTestSuite()
    {
        for (const char *variable : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_DATA_DIRS"})
            qunsetenv(variable);
        s_home.reset();
    }

    void SetUp() override
    {
        ASSERT_TRUE(bus.isRunning());
        ::unlink(s_home->path("opened").bytes().constData());
    }

    std::unique_ptr<MockedService> startFileManager(const QString &python)
    {
        auto service
            = std::make_unique<MockedService>(bus, u"org.freedesktop.FileManager1"_qs,
                                              u"/org/freedesktop/FileManager1"_qs, u"org.freedesktop.FileManager1"_qs);
        EXPECT_TRUE(service->isRunning());
        service->addMethod(u"ShowItems"_qs, u"ass"_qs, QString(), python);
        return service;
    }

    static QList<QByteArray> opened()
    {
        QList<QByteArray> lines = s_home->contents("opened").split('\n');
        lines.removeAll(QByteArray());
        return lines;
    }

    static inline std::unique_ptr<TemporaryHome> s_home;
    PrivateBus bus;
};

} // namespace

TEST_F(FileViewerTest, AsksTheFileManagerForTheFilesThemselvesByteForByte)
{
    const auto manager = startFileManager(u"open('%1', 'a').write(' '.join(args[0]) + '|' + args[1] + '|')"_qs.arg(
        QString::fromUtf8(s_home->path("asked").bytes())));

    revealInFileViewer({FilePath("/home/ada/Down loads/50%.mkv"), FilePath("/home/ada/\xff")}, bus.connection());

    EXPECT_EQ(s_home->contents("asked"), "file:///home/ada/Down%20loads/50%25.mkv file:///home/ada/%FF||");
    EXPECT_THAT(opened(), IsEmpty());
}

TEST_F(FileViewerTest, OpensTheFolderWhereTheFileManagerRefuses)
{
    const auto manager = startFileManager(u"raise dbus.exceptions.DBusException('No', name='com.example.No')"_qs);
    const FilePath file = s_home->addFile("folder/a");

    revealInFileViewer({file}, bus.connection());

    EXPECT_TRUE(comesTrueSoon([] { return !opened().isEmpty(); }));
    EXPECT_THAT(opened(), ElementsAre(s_home->path("folder").bytes()));
}

TEST_F(FileViewerTest, OpensTheFolderOfEachFileOnceWhereThereIsNoFileManager)
{
    const QList<FilePath> files
        = {s_home->addFile("folder/a"), s_home->addFile("folder/b"), s_home->addFile("other one/c")};

    revealInFileViewer(files, QDBusConnection(u"a connection that nobody made"_qs));

    const QByteArray root = s_home->path().bytes();
    EXPECT_TRUE(comesTrueSoon([] { return opened().size() == 2; }));
    EXPECT_THAT(opened(), testing::UnorderedElementsAre(root + "/folder", root + "/other one"));
}

TEST_F(FileViewerTest, HandsAnAddressToTheProgramThatTheUserHasChosen)
{
    openURL(QUrl(u"https://veltrane.example/es/?a=b%20c"_qs));

    EXPECT_TRUE(comesTrueSoon([] { return !opened().isEmpty(); }));
    EXPECT_THAT(opened(), ElementsAre("https://veltrane.example/es/?a=b%20c"));
}

TEST_F(FileViewerTest, OpensTheSettingsOfThisDesktopForThoseOfAnotherSystem)
{
    openURL(QUrl(u"x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"_qs));

    EXPECT_TRUE(comesTrueSoon([] { return !opened().isEmpty(); }));
    EXPECT_THAT(opened(), ElementsAre("settings"));
}
