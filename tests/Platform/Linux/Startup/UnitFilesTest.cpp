#include "Platform/Linux/Startup/UnitFiles.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

using namespace Quillmere;

TEST(UnitFilesTest, AreTheUsersOwnAndWhatTheFoldersOfLinksStart)
{
    const QByteArray install = "[Install]\nWantedBy=default.target\n";
    const TemporaryHome home;
    const QByteArray own = "home/.config/systemd/user/";
    const FilePath off = home.addFile(own + "off.timer", install);
    const FilePath on = home.addFile(own + "on.service", install);
    home.addFile(own + "static.service", "[Unit]\n");
    home.addFile(own + "each@.service", install);
    home.addFile(own + "notes.txt", install);
    home.addLink(own + "default.target.wants/on.service", on.bytes());
    const FilePath agent = home.addFile("lib/agent.socket", install);
    const FilePath music = home.addFile("lib/music.service", install);
    home.addFile("lib/unlinked.service", install);
    const FilePath changed = home.addFile("etc/changed.service", install);
    home.addFile("lib/changed.service", install);
    for (const char *name : {"agent.socket", "changed.service", "gone.service"})
        home.addLink(QByteArray("etc/sockets.target.wants/") + name, home.path("lib").appending(name).bytes());
    home.addLink("lib/music.target.requires/music.service", "../music.service");
    home.addLink(own + "music.service", "/dev/null");
    const UnitFiles files(std::make_shared<LinuxFileManager>(home.environment()),
                          home.path("home/.config/systemd/user"), {home.path("etc"), home.path("lib")});

    EXPECT_EQ(files.entries(),
              (QList<StartupEntry>{{off, u"off.timer"_qs, StartupEntry::Scope::User, false},
                                   {on, u"on.service"_qs, StartupEntry::Scope::User, true},
                                   {agent, u"agent.socket"_qs, StartupEntry::Scope::AllUsers, true},
                                   {changed, u"changed.service"_qs, StartupEntry::Scope::AllUsers, true},
                                   {music, u"music.service"_qs, StartupEntry::Scope::AllUsers, false}}));
    EXPECT_TRUE(
        UnitFiles(std::make_shared<LinuxFileManager>(home.environment()), home.path("none"), {}).entries().isEmpty());
}
