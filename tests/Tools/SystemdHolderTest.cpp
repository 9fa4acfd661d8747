#include "Tools/SystemdHolder.h"

#include "Tools/KeepAwakeFixture.h"

#include <gmock/gmock.h>

#include <fstream>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Systemd's three programs, of which systemd-inhibit is the real one; a unit is a process group.
class SystemdHolderTest : public KeepAwakeTest
{
protected:
    void SetUp() override
    {
        KeepAwakeTest::SetUp();
        programs.run = makeProgram(u"systemd-run"_qs,
                                   u"while [ \"$1\" != -- ]; do shift; done; shift\n"
                                   "setsid \"$@\" >/dev/null 2>&1 </dev/null & echo $! >\"$unit\"\n"_qs);
        programs.control = makeProgram(u"systemctl"_qs,
                                       u"case $1 in\n"
                                       "is-active) [ -f \"$unit\" ] && kill -0 \"$(cat \"$unit\")\" 2>/dev/null ;;\n"
                                       "stop) kill -- \"-$(cat \"$unit\")\"; rm \"$unit\" ;;\n"
                                       "esac\n"_qs);
    }
    void TearDown() override
    {
        EXPECT_TRUE(SystemdHolder(programs).stop());
        KeepAwakeTest::TearDown();
    }

    QString makeProgram(const QString &name, const QString &body) const
    {
        QFile file(temporary.filePath(name));
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        file.write(u"#!/bin/bash\nunit='%1'\necho \"${0##*/} $*\" >>'%2'\n"_qs
                       .arg(temporary.filePath(u"unit"_qs), temporary.filePath(u"record"_qs))
                       .toUtf8());
        file.write(body.toUtf8());
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return file.fileName();
    }
    std::vector<std::string> started() const
    {
        std::vector<std::string> lines;
        std::ifstream file(temporary.filePath(u"record"_qs).toStdString());
        for (std::string line; std::getline(file, line);)
            lines.push_back(line);
        return lines;
    }
    KeepAwake ofUnits() const
    {
        return {LidInhibitors(bus.connection()), std::make_unique<SystemdHolder>(programs), std::chrono::seconds(20)};
    }

    SystemdPrograms programs;
};

} // namespace

TEST_F(SystemdHolderTest, IsAUnitThatIsListedFromOnToOff)
{
    startLogind();

    ASSERT_TRUE(ofUnits().switchOn());

    EXPECT_THAT(inhibitorsOn(bus), ElementsAre(listed));
    EXPECT_THAT(started(),
                testing::Contains("systemd-run --quiet --collect --unit=quillmere-keepawake.service -- "
                                  "/usr/bin/systemd-inhibit --what=sleep:handle-lid-switch --who=Quillmere "
                                  "--why=Keep Awake Mode --mode=block /usr/bin/sleep infinity"));

    ASSERT_TRUE(ofUnits().switchOff());

    EXPECT_THAT(started(), testing::Contains("systemctl stop quillmere-keepawake.service"));
    EXPECT_THAT(inhibitorsOn(bus), IsEmpty());
}

TEST_F(SystemdHolderTest, KeepsTheUnitThatRunsAndStopsNoneThatDoesNot)
{
    startLogind();
    ASSERT_TRUE(ofUnits().switchOff());
    EXPECT_THAT(started(), testing::Not(testing::Contains("systemctl stop quillmere-keepawake.service")));

    ASSERT_TRUE(ofUnits().switchOn());
    ASSERT_TRUE(ofUnits().switchOn());

    EXPECT_THAT(inhibitorsOn(bus), ElementsAre(listed));
    EXPECT_THAT(started(), testing::Contains(testing::StartsWith("systemd-run")).Times(1));
}

TEST_F(SystemdHolderTest, TellsWhatSystemdFailedOf)
{
    startLogind();
    programs.run = makeProgram(u"systemd-run-2"_qs, u"echo 'No room.' >&2; exit 1\n"_qs);

    const auto done = ofUnits().switchOn();

    ASSERT_FALSE(done);
    EXPECT_EQ(done.failure().detail, u"No room.");
}
