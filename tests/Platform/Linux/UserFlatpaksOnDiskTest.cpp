#include "Platform/Linux/InstalledApplicationsFixture.h"
#include "Platform/Linux/LinuxProcessRunner.h"
#include "Platform/Linux/Need.h"
#include "Platform/Linux/UserFlatpaks.h"

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

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
    void install(const QByteArray &identifier) const
    {
        const QByteArray folder = "made/" + identifier;
        disk.addFile(folder + "/metadata",
                     "[Application]\nname=" + identifier + "\nruntime=org.example.Platform/x86_64/1\ncommand=run\n");
        addProgram(folder + "/files/bin/run");
        disk.addFile(folder + "/export/share/applications/" + identifier + ".desktop",
                     "[Desktop Entry]\nType=Application\nName=" + identifier + "\nExec=run\n");
        const QString repository = QString::fromUtf8(disk.path("repository").bytes());
        run({u"build-export"_qs, repository, QString::fromUtf8(disk.path(folder).bytes()), u"stable"_qs});
        run({u"remote-add"_qs, u"--user"_qs, u"--if-not-exists"_qs, u"--no-gpg-verify"_qs, u"made"_qs, repository});
        run({u"install"_qs, u"--user"_qs, u"--noninteractive"_qs, u"--no-deps"_qs, u"--no-related"_qs, u"made"_qs,
             QString::fromUtf8(identifier)});
    }

    static QList<QByteArray> identifiersOf(const QList<ListedApplication> &applications)
    {
        QList<QByteArray> identifiers;
        for (const ListedApplication &each : applications)
            identifiers.append(each.id);
        std::ranges::sort(identifiers);
        return identifiers;
    }

    std::unique_ptr<ScriptInPlace> tool;
};

} // namespace

TEST_F(UserFlatpaksTest, ListsTheUsersFlatpaksAndHasTheirToolRemoveThem)
{
    answerAsFlatpak("org.example.Draw\tDraw\t3.1\norg.example.Read\tReader\t\n",
                    ProcessOutcome{0, "org.example.Draw\tuser\norg.example.Read\tuser\n"});
    disk.addFile("home/.local/share/flatpak/app/org.example.Draw/current/files/draw");
    disk.addFile("home/.var/app/org.example.Draw/data/file");

    const QList<ListedApplication> found = installed().applications();

    ASSERT_EQ(found.size(), 2);
    EXPECT_EQ(found.first().name, u"Draw"_qs);
    EXPECT_EQ(found.first().version, u"3.1"_qs);
    EXPECT_EQ(found.first().removal, ApplicationRemoval::Command);
    EXPECT_EQ(found.first().location, disk.path("home/.local/share/flatpak/app/org.example.Draw"));
    EXPECT_THAT(installed().leftoversOf(found.first()), ElementsAre(disk.path("home/.var/app/org.example.Draw")));
    ASSERT_TRUE(installed().uninstall(found.first()).isOk());
    EXPECT_EQ(processes->runs().last(),
              (Command{u"/usr/bin/flatpak"_qs,
                       {u"uninstall"_qs, u"--user"_qs, u"--app"_qs, u"--assumeyes"_qs, u"--noninteractive"_qs,
                        u"org.example.Draw"_qs}}));
}

TEST_F(UserFlatpaksTest, KeepsTheDataOfAFlatpakThatAllUsersHaveToo)
{
    answerAsFlatpak("org.example.Draw\tDraw\t3.1\norg.example.Read\tReader\t\n",
                    ProcessOutcome{0, "org.example.Draw\tuser\norg.example.Draw\tsystem\norg.example.Read\tuser\n"});
    disk.addFile("home/.var/app/org.example.Draw/data/file");
    disk.addFile("home/.var/app/org.example.Read/data/file");

    EXPECT_THAT(installed().leftoversOf(application("org.example.Draw")), IsEmpty());
    EXPECT_THAT(installed().leftoversOf(application("org.example.Read")),
                ElementsAre(disk.path("home/.var/app/org.example.Read")));
}

TEST_F(UserFlatpaksTest, KeepsTheDataOfFlatpaksWhereItCannotBeToldWhoElseHasThem)
{
    answerAsFlatpak("org.example.Draw\tDraw\t3.1\n", ProcessOutcome{1, "error: no\n"});
    disk.addFile("home/.var/app/org.example.Draw/data/file");

    EXPECT_THAT(installed().leftoversOf(application("org.example.Draw")), IsEmpty());
}

TEST_F(UserFlatpaksTest, SaysWhatTheFlatpakToolSaidWhenItFails)
{
    const FilePath script
        = disk.addFile("flatpak", "#!/bin/sh\necho 'error: org.example.Draw is pinned' >&2\nexit 1\n");
    ASSERT_EQ(::chmod(script.bytes().constData(), 0755), 0);
    const ScriptInPlace real(script);
    ListedApplication draw;
    draw.id = "org.example.Draw";

    const Result<void> result = uninstallFlatpak(real, draw);

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
    const FilePath dataHome = disk.path("home/.local/share");
    install("org.example.Draw");
    install("org.example.Read");
    const FilePath data = disk.addFile("home/.var/app/org.example.Draw/data/file");

    const QList<ListedApplication> found = userFlatpaks(*files, *tool, dataHome);

    ASSERT_THAT(identifiersOf(found), ElementsAre("org.example.Draw", "org.example.Read"));
    EXPECT_TRUE(itemExists(found.first().location));
    EXPECT_FALSE(found.first().sharesData);
    const Result<void> result = uninstallFlatpak(*tool, found.first());
    ASSERT_TRUE(result.isOk()) << result.failure().detail.toStdString();
    EXPECT_THAT(identifiersOf(userFlatpaks(*files, *tool, dataHome)), ElementsAre("org.example.Read"));
    EXPECT_FALSE(itemExists(found.first().location));
    EXPECT_TRUE(itemExists(data)) << "What the user made goes with the leftovers alone, as announced.";
}

TEST_F(RealFlatpakTest, SaysWhatTheRealToolSaysOfAFlatpakThatIsNotThere)
{
    install("org.example.Draw");
    ListedApplication application;
    application.id = "org.example.Missing";

    const Result<void> result = uninstallFlatpak(*tool, application);

    ASSERT_FALSE(result.isOk());
    EXPECT_TRUE(result.failure().detail.contains(u"org.example.Missing"_qs)) << result.failure().detail.toStdString();
}

TEST_F(UserFlatpaksTest, HandsTheFlatpakToolNothingButIdentifiers)
{
    for (const char *id : {"--all", "", "..", "org.example", "org.example.a/b", "org..a", "org.example.a b"}) {
        ListedApplication application;
        application.id = id;
        application.removal = ApplicationRemoval::Command;
        EXPECT_FALSE(installed().uninstall(application).isOk()) << id;
    }
    EXPECT_THAT(processes->runs(), IsEmpty());
    EXPECT_THAT(parseFlatpaks("--all\tAll\t1\norg.example.a\n\n../x.y.z\tX\t1\norg.example.b\t\t\n", FilePath("/d")),
                testing::SizeIs(1));
}
