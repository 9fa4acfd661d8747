#include "Platform/Linux/Applications/InstalledApplicationsFixture.h"
#include "Platform/Linux/Applications/UserFlatpaks.h"
#include "Platform/Linux/Need.h"
#include "Platform/Linux/Programs/LinuxProcessRunner.h"

using namespace Quillmere;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

const QByteArray drawAlone = "org.example.Draw\tDraw\t3.1\torg.example.Draw/x86_64/stable\n";
const QByteArray drawAndRead = drawAlone + "org.example.Read\tReader\t\torg.example.Read/x86_64/stable\n";

/// As it is listed, as far as its removal asks for it.
ListedApplication flatpak(const QByteArray &id)
{
    ListedApplication application;
    application.id = id;
    application.location = FilePath("/flatpak/app").appending(id + "/x86_64/stable");
    application.removal = ApplicationRemoval::Command;
    return application;
}

/// Runs a script of the test's in the place of any program, for real.
class ScriptInPlace final : public ProcessRunner
{
public:
    explicit ScriptInPlace(const FilePath &script)
        : m_script(QString::fromUtf8(script.bytes()))
    {
    }

    [[nodiscard]] Result<ProcessOutcome> run(const Command &command) const override
    {
        return m_processes.run({m_script, command.arguments});
    }
    [[nodiscard]] Result<ProcessOutcome> runJoined(const Command &command) const override
    {
        return m_processes.runJoined({m_script, command.arguments});
    }
    [[nodiscard]] Result<std::future<int>> start(const Command &command) const override
    {
        return m_processes.start({m_script, command.arguments});
    }
    [[nodiscard]] Result<std::optional<ProcessOutcome>> runWithin(std::chrono::milliseconds patience,
                                                                  const Command &command) const override
    {
        return m_processes.runWithin(patience, {m_script, command.arguments});
    }
    [[nodiscard]] Result<void> launch(const Command &command) const override
    {
        return m_processes.launch({m_script, command.arguments});
    }
    [[nodiscard]] Result<void> executeScript(const QString &source) const override
    {
        return m_processes.executeScript(source);
    }

private:
    LinuxProcessRunner m_processes{FilePath("/nonexistent")};
    QString m_script;
};

class UserFlatpaksTest : public InstalledApplicationsFixture
{
protected:
    [[nodiscard]] static ListedApplication flatpakOf(const QList<ListedApplication> &applications)
    {
        const auto found = std::ranges::find(applications, ApplicationRemoval::Command, &ListedApplication::removal);
        EXPECT_NE(found, applications.end());
        return found == applications.end() ? ListedApplication() : *found;
    }
};

/// The tool itself, on an installation of its own in the home of the test.
class RealFlatpakTest : public InstalledApplicationsFixture
{
protected:
    void SetUp() override
    {
        QUILLMERE_NEED(itemExists(FilePath("/usr/bin/flatpak")) ? "" : "flatpak is not installed");
        const FilePath script = addProgram("flatpak");
        // Neither a bus nor the repositories of this machine.
        disk.addFile("flatpak",
                     "#!/bin/sh\nexport HOME='" + disk.path("home").bytes() + "' LC_ALL=C.UTF-8\n"
                         + "export XDG_DATA_HOME=\"$HOME/.local/share\" XDG_CACHE_HOME=\"$HOME/.cache\"\n"
                         + "export FLATPAK_SYSTEM_DIR=\"$HOME/none\" DBUS_SYSTEM_BUS_ADDRESS=unix:path=/nonexistent\n"
                         + "unset DBUS_SESSION_BUS_ADDRESS\nexec /usr/bin/flatpak \"$@\"\n");
        tool = std::make_unique<ScriptInPlace>(script);
    }

    void run(const QStringList &arguments) const
    {
        const auto outcome = tool->runJoined({{}, arguments});
        ASSERT_TRUE(outcome.isOk());
        ASSERT_EQ(outcome.value().exitStatus, 0) << outcome.value().standardOutput.toStdString();
    }

    /// Makes an application without a runtime, and installs it from a repository of the test's own.
    void install(const QByteArray &identifier, const QString &branch = u"stable"_qs) const
    {
        const QByteArray folder = "made/" + identifier;
        disk.addFile(folder + "/metadata",
                     "[Application]\nname=" + identifier + "\nruntime=org.example.Platform/x86_64/1\ncommand=run\n");
        addProgram(folder + "/files/bin/run");
        disk.addFile(folder + "/export/share/applications/" + identifier + ".desktop",
                     "[Desktop Entry]\nType=Application\nName=" + identifier + "\nExec=run\n");
        const QString repository = QString::fromUtf8(disk.path("repository").bytes());
        run({u"build-export"_qs, repository, QString::fromUtf8(disk.path(folder).bytes()), branch});
        run({u"remote-add"_qs, u"--user"_qs, u"--if-not-exists"_qs, u"--no-gpg-verify"_qs, u"made"_qs, repository});
        run({u"install"_qs, u"--user"_qs, u"--noninteractive"_qs, u"--no-deps"_qs, u"--no-related"_qs, u"made"_qs,
             QString::fromUtf8(identifier) + u"//"_qs + branch});
    }

    static QList<QByteArray> identifiersOf(const QList<ListedApplication> &applications)
    {
        QList<QByteArray> identifiers;
        for (const ListedApplication &each : applications)
            identifiers.append(each.id);
        std::ranges::sort(identifiers);
        return identifiers;
    }

    const FilePath installation = disk.path("home/.local/share/flatpak");
    std::unique_ptr<ScriptInPlace> tool;
};

} // namespace

TEST_F(UserFlatpaksTest, ListsTheUsersFlatpaksAndHasTheirToolRemoveThem)
{
    answerAsFlatpak(drawAndRead, ProcessOutcome{0, "org.example.Draw\tuser\norg.example.Read\tuser\n"});
    disk.addFile("home/.local/share/flatpak/app/org.example.Draw/x86_64/stable/active/files/draw");
    disk.addFile("home/.var/app/org.example.Draw/data/file");

    const QList<ListedApplication> found = installed().applications();

    ASSERT_EQ(found.size(), 2);
    EXPECT_EQ(found.first().name, u"Draw"_qs);
    EXPECT_EQ(found.first().version, u"3.1"_qs);
    EXPECT_EQ(found.first().removal, ApplicationRemoval::Command);
    EXPECT_EQ(found.first().location, disk.path("home/.local/share/flatpak/app/org.example.Draw/x86_64/stable"));
    EXPECT_THAT(installed().leftoversOf(found.first()), ElementsAre(disk.path("home/.var/app/org.example.Draw")));
    ASSERT_TRUE(installed().uninstall(found.first()).isOk());
    EXPECT_EQ(processes->runs().last(),
              (Command{u"/usr/bin/flatpak"_qs,
                       {u"uninstall"_qs, u"--user"_qs, u"--app"_qs, u"--assumeyes"_qs, u"--noninteractive"_qs,
                        u"app/org.example.Draw/x86_64/stable"_qs}}));
}

TEST_F(UserFlatpaksTest, KeepsTheDataOfAFlatpakThatAllUsersHaveToo)
{
    answerAsFlatpak(drawAndRead,
                    ProcessOutcome{0, "org.example.Draw\tuser\norg.example.Draw\tsystem\norg.example.Read\tuser\n"});
    disk.addFile("home/.var/app/org.example.Draw/data/file");
    disk.addFile("home/.var/app/org.example.Read/data/file");

    EXPECT_THAT(installed().leftoversOf(application("org.example.Draw")), IsEmpty());
    EXPECT_THAT(installed().leftoversOf(application("org.example.Read")),
                ElementsAre(disk.path("home/.var/app/org.example.Read")));
}

TEST_F(UserFlatpaksTest, KeepsTheDataOfFlatpaksWhereItCannotBeToldWhoElseHasThem)
{
    answerAsFlatpak(drawAlone, ProcessOutcome{1, "error: no\n"});
    disk.addFile("home/.var/app/org.example.Draw/data/file");

    EXPECT_THAT(installed().leftoversOf(application("org.example.Draw")), IsEmpty());
}

TEST_F(UserFlatpaksTest, SaysWhatTheFlatpakToolSaidWhenItFails)
{
    const FilePath script
        = disk.addFile("flatpak", "#!/bin/sh\necho 'error: org.example.Draw is pinned' >&2\nexit 1\n");
    ASSERT_EQ(::chmod(script.bytes().constData(), 0755), 0);
    const ScriptInPlace real(script);

    const Result<void> result = uninstallFlatpak(real, flatpak("org.example.Draw"));

    ASSERT_FALSE(result.isOk());
    EXPECT_EQ(result.failure().detail, u"error: org.example.Draw is pinned"_qs);
}

TEST_F(UserFlatpaksTest, AsksNobodyWhereTheUserHasNone)
{
    processes->answer(u"/usr/bin/flatpak"_qs, [](const Command &) {
        return ProcessOutcome{0, "org.example.Draw\tDraw\n"};
    });

    EXPECT_THAT(installed().applications(), IsEmpty());
    EXPECT_THAT(processes->runs(), IsEmpty());
}

TEST_F(RealFlatpakTest, ListsWhatTheRealToolInstalledAndHasItRemoved)
{
    install("org.example.Draw");
    install("org.example.Read");
    const FilePath data = disk.addFile("home/.var/app/org.example.Draw/data/file");

    const QList<ListedApplication> found = userFlatpaks(*files, *tool, installation);

    ASSERT_THAT(identifiersOf(found), ElementsAre("org.example.Draw", "org.example.Read"));
    EXPECT_TRUE(itemExists(found.first().location));
    EXPECT_FALSE(found.first().sharesData);
    const Result<void> result = uninstallFlatpak(*tool, found.first());
    ASSERT_TRUE(result.isOk()) << result.failure().detail.toStdString();
    EXPECT_THAT(identifiersOf(userFlatpaks(*files, *tool, installation)), ElementsAre("org.example.Read"));
    EXPECT_FALSE(itemExists(found.first().location));
    EXPECT_TRUE(itemExists(data)) << "What the user made goes with the leftovers alone, as announced.";
}

TEST_F(RealFlatpakTest, SaysWhatTheRealToolSaysOfAFlatpakThatIsNotThere)
{
    install("org.example.Draw");

    const Result<void> result = uninstallFlatpak(*tool, flatpak("org.example.Missing"));

    ASSERT_FALSE(result.isOk());
    EXPECT_TRUE(result.failure().detail.contains(u"org.example.Missing"_qs)) << result.failure().detail.toStdString();
}

TEST_F(RealFlatpakTest, RemovesTheOneBranchOfTwoThatItIsAskedTo)
{
    install("org.example.Draw", u"stable"_qs);
    install("org.example.Draw", u"beta"_qs);
    QList<ListedApplication> found = userFlatpaks(*files, *tool, installation);
    std::ranges::sort(found, {}, &ListedApplication::name);
    ASSERT_EQ(found.size(), 2);
    EXPECT_EQ(found.first().name, u"Draw (beta)"_qs);
    EXPECT_TRUE(found.first().sharesData);
    EXPECT_TRUE(found.last().sharesData);

    const Result<void> result = uninstallFlatpak(*tool, found.first());

    ASSERT_TRUE(result.isOk()) << result.failure().detail.toStdString();
    EXPECT_FALSE(itemExists(found.first().location));
    const QList<ListedApplication> left = userFlatpaks(*files, *tool, installation);
    ASSERT_EQ(left.size(), 1);
    EXPECT_EQ(left.first().location, found.last().location);
    EXPECT_TRUE(itemExists(left.first().location));
    EXPECT_FALSE(left.first().sharesData);
}

TEST_F(UserFlatpaksTest, TellsTwoBranchesOfOneApart)
{
    const QList<ListedApplication> found
        = parseFlatpaks(drawAndRead + "org.example.Draw\tDraw\t4.0\torg.example.Draw/x86_64/beta\n", FilePath("/f"));

    ASSERT_EQ(found.size(), 3);
    EXPECT_EQ(found.at(0).name, u"Draw (stable)"_qs);
    EXPECT_THAT(found.at(0).parts, ElementsAre(FilePath("/f/app/org.example.Draw/x86_64/stable")));
    EXPECT_TRUE(found.at(0).sharesData);
    EXPECT_EQ(found.at(1).name, u"Reader"_qs);
    EXPECT_FALSE(found.at(1).sharesData);
    EXPECT_EQ(found.at(2).name, u"Draw (beta)"_qs);
    EXPECT_THAT(found.at(2).parts, ElementsAre(FilePath("/f/app/org.example.Draw/x86_64/beta")));
    EXPECT_TRUE(found.at(2).sharesData);
}

TEST_F(UserFlatpaksTest, LeavesAnAppImageOfItsNameWhatThatKeeps)
{
    answerAsFlatpak(drawAlone, ProcessOutcome{0, "org.example.Draw\tuser\n"});
    addProgram("home/Applications/org.example.Draw.AppImage");
    for (const char *folder : {".config", ".local/share", ".local/state", ".cache", ".var/app"})
        disk.addFile(QByteArray("home/") + folder + "/org.example.Draw/file");

    const QList<ListedApplication> found = installed().applications();

    ASSERT_EQ(found.size(), 2);
    EXPECT_THAT(installed().leftoversOf(flatpakOf(found)), ElementsAre(disk.path("home/.var/app/org.example.Draw")));
    EXPECT_THAT(installed().leftoversOf(found.first()), Not(Contains(disk.path("home/.var/app/org.example.Draw"))));
}

TEST_F(UserFlatpaksTest, AreFoundWhereTheFolderOfEntriesIsALink)
{
    answerAsFlatpak(drawAlone, ProcessOutcome{0, "org.example.Draw\tuser\n"});
    disk.addFolder("home/dotfiles/entries");
    disk.addLink("home/.local/share/applications", disk.path("home/dotfiles/entries").bytes());

    EXPECT_EQ(application("org.example.Draw").location,
              disk.path("home/.local/share/flatpak/app/org.example.Draw/x86_64/stable"));
}

TEST_F(UserFlatpaksTest, AreFoundWhereTheUserHasMovedThem)
{
    answerAsFlatpak(drawAlone, ProcessOutcome{0, "org.example.Draw\tuser\n"});
    ASSERT_TRUE(files->removeItem(disk.path("home/.local/share/flatpak")).isOk());
    disk.addFolder("elsewhere/app");
    const auto variables = [folder = disk.path("elsewhere").bytes()](const char *name) {
        return QByteArray(name) == "FLATPAK_USER_DIR" ? folder : QByteArray();
    };

    EXPECT_EQ(flatpakOf(installed(variables).applications()).location,
              disk.path("elsewhere/app/org.example.Draw/x86_64/stable"));
    EXPECT_THAT(installed().applications(), IsEmpty());
}

TEST_F(UserFlatpaksTest, HandsTheFlatpakToolNothingButRefs)
{
    for (const char *id : {"--all", "", "..", "org.example", "org.example.a/b", "org..a", "org.example.a b"})
        EXPECT_FALSE(installed().uninstall(flatpak(id)).isOk()) << id;
    for (const char *place : {"", "/", "/f/app/org.example.b/x86_64/stable", "/f/app/org.example.a/x86_64/--all stable",
                              "/f/app/org.example.a", "/f/org.example.a/x/.y"}) {
        ListedApplication application = flatpak("org.example.a");
        application.location = FilePath(place);
        EXPECT_FALSE(installed().uninstall(application).isOk()) << place;
    }
    EXPECT_THAT(processes->runs(), IsEmpty());
    EXPECT_THAT(parseFlatpaks("--all\tAll\t1\t--all/x/y\norg.example.a\n\n../x.y.z\tX\t1\t../x.y.z/x/y\n"
                              "org.example.c\tC\t1\torg.example.d/x/y\norg.example.e\tE\t1\torg.example.e/../y\n"
                              "org.example.b\t\t\torg.example.b/x/y\n",
                              FilePath("/f")),
                testing::SizeIs(1));
}
