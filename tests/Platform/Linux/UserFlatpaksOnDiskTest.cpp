#include "Platform/Linux/InstalledApplicationsFixture.h"
#include "Platform/Linux/LinuxProcessRunner.h"
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
