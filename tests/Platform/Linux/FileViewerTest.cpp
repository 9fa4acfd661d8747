#include "Platform/Linux/FileViewer.h"

#include "Platform/Linux/MockedService.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A session with a desktop of the test's own, on which folders are opened by a program that writes down what it is
/// given.
class FileViewerTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(bus.isRunning());
        const FilePath program = home.addFile(
            "opens folders", "#!/bin/sh\nprintf '%s\\n' \"$1\" >>\"" + home.path("opened").bytes() + "\"\n");
        ASSERT_EQ(::chmod(program.bytes().constData(), 0755), 0);
        home.addFile("data/applications/opener.desktop",
                     "[Desktop Entry]\nType=Application\nName=Opener\nMimeType=inode/directory;\nExec=\""
                         + program.bytes() + "\" %u\n");
        home.addFile("config/mimeapps.list", "[Default Applications]\ninode/directory=opener.desktop\n");
    }

    std::unique_ptr<MockedService> startFileManager(const QString &python = {})
    {
        auto service
            = std::make_unique<MockedService>(bus, u"org.freedesktop.FileManager1"_qs,
                                              u"/org/freedesktop/FileManager1"_qs, u"org.freedesktop.FileManager1"_qs);
        EXPECT_TRUE(service->isRunning());
        service->addMethod(u"ShowItems"_qs, u"ass"_qs, QString(), python);
        return service;
    }

    /// In a process of its own, which alone sees the desktop of the test.
    void reveal(const QList<FilePath> &files, const QDBusConnection &connection)
    {
        const auto inAChild = [&] {
            ::setenv("XDG_DATA_HOME", home.path("data").bytes().constData(), 1);
            ::setenv("XDG_CONFIG_HOME", home.path("config").bytes().constData(), 1);
            ::setenv("XDG_DATA_DIRS", home.path("nothing").bytes().constData(), 1);
            revealInFileViewer(files, connection);
            ::_exit(0);
        };
        EXPECT_EXIT(inAChild(), testing::ExitedWithCode(0), "");
    }

    QList<QByteArray> opened() const
    {
        QList<QByteArray> lines = home.contents("opened").split('\n');
        lines.removeAll(QByteArray());
        return lines;
    }

    PrivateBus bus;
    TemporaryHome home;
};

} // namespace

TEST_F(FileViewerTest, AsksTheFileManagerForTheFilesThemselvesByteForByte)
{
    const auto manager = startFileManager(u"open('%1', 'a').write(' '.join(args[0]) + '|' + args[1] + '|')"_qs.arg(
        QString::fromUtf8(home.path("asked").bytes())));

    reveal({FilePath("/home/ada/Down loads/50%.mkv"), FilePath("/home/ada/\xff")}, bus.connection());

    EXPECT_EQ(home.contents("asked"), "file:///home/ada/Down%20loads/50%25.mkv file:///home/ada/%FF||");
    EXPECT_THAT(opened(), IsEmpty());
}

TEST_F(FileViewerTest, OpensTheFolderWhereTheFileManagerRefuses)
{
    const auto manager = startFileManager(u"raise dbus.exceptions.DBusException('No', name='com.example.No')"_qs);
    const FilePath file = home.addFile("folder/a");

    reveal({file}, bus.connection());

    EXPECT_TRUE(comesTrueSoon([this] { return !opened().isEmpty(); }));
    EXPECT_THAT(opened(), ElementsAre(home.path("folder").bytes()));
}

TEST_F(FileViewerTest, OpensTheFolderOfEachFileOnceWhereThereIsNoFileManager)
{
    const QList<FilePath> files = {home.addFile("folder/a"), home.addFile("folder/b"), home.addFile("other one/c")};

    reveal(files, QDBusConnection(u"a connection that nobody made"_qs));

    const QByteArray root = home.path().bytes();
    EXPECT_TRUE(comesTrueSoon([this] { return opened().size() == 2; }));
    EXPECT_THAT(opened(), testing::UnorderedElementsAre(root + "/folder", root + "/other one"));
}
