#include "Platform/Linux/SpawnedProgram.h"
#include "Platform/Linux/Startup/UserUnitsFixture.h"

#include <gmock/gmock.h>

#include <filesystem>

using namespace Quillmere;
using testing::ElementsAre;
using testing::SizeIs;

namespace {

const QByteArray target = "../../../dotfiles/linked.service";

/// A link that the user has in the place of a unit, which a real manager takes away as it switches the unit off.
class UserUnitsLinkTest : public UserUnitsFixture
{
protected:
    void SetUp() override
    {
        UserUnitsFixture::SetUp();
        answerForLink(target);
    }
    /// Lets another process switch the unit off, which the manager kills once it has done @p python.
    void switchOffAndKill(const QString &python)
    {
        const QString kill = u"os.kill(int(open('%1').read()), 9)"_qs.arg(textOf(home.path("process")));
        add(u"DisableUnitFiles"_qs, u"asb"_qs, u"a(sss)"_qs,
            u"import os\n%1\n%2\nret = %3"_qs.arg(python, kill, noChanges));
        const int end
            = runProgram(u"env"_qs,
                         {u"HOME="_qs + textOf(home.path("home")), u"XDG_CONFIG_HOME="_qs,
                          u"DBUS_SESSION_BUS_ADDRESS="_qs + bus.address(), u"sh"_qs, u"-c"_qs,
                          u"echo $$ >\"$1\"; exec \"$2\" off \"$3\""_qs, u"sh"_qs, textOf(home.path("process")),
                          QStringLiteral(QUILLMERE_STARTUP_ENTRIES), textOf(linked)});
        EXPECT_LT(end, 0) << "was not killed";
    }
    [[nodiscard]] std::string linkTarget() const
    {
        return std::filesystem::read_symlink(linked.bytes().constData()).string();
    }
    [[nodiscard]] QList<QByteArray> ownNames() const { return home.names("home/.config/systemd/user"); }
};

} // namespace

TEST_F(UserUnitsLinkTest, StaysWhenTheUnitIsSwitchedOff)
{
    ASSERT_TRUE(isEnabled(linked));

    EXPECT_TRUE(units.setEnabled(linked, false));
    EXPECT_EQ(linkTarget(), target.constData());
    EXPECT_FALSE(isEnabled(linked));
    EXPECT_THAT(ownNames(), ElementsAre("linked.service"));

    EXPECT_TRUE(units.setEnabled(linked, true));
    EXPECT_TRUE(isEnabled(linked));
}

TEST_F(UserUnitsLinkTest, StaysWhereTheManagerFailsHalfway)
{
    add(u"DisableUnitFiles"_qs, u"asb"_qs, u"a(sss)"_qs,
        u"import os\nos.unlink('OWN/linked.service')\nraise Exception('No.')"_qs);

    EXPECT_FALSE(units.setEnabled(linked, false));

    EXPECT_EQ(linkTarget(), target.constData());
    EXPECT_THAT(ownNames(), ElementsAre("linked.service"));
}

TEST_F(UserUnitsLinkTest, ComesBackAtTheNextListingAfterAKillThatFollowsItsRemoval)
{
    switchOffAndKill(u"os.unlink('OWN/linked.service')\nself.is_wanted = False"_qs);
    ASSERT_FALSE(home.exists("home/.config/systemd/user/linked.service"));

    EXPECT_FALSE(isEnabled(linked));

    EXPECT_EQ(linkTarget(), target.constData());
    EXPECT_THAT(ownNames(), ElementsAre("linked.service"));
}

TEST_F(UserUnitsLinkTest, IsAllThatIsLeftAfterAKillThatComesBeforeItsRemoval)
{
    switchOffAndKill({});
    ASSERT_THAT(ownNames(), SizeIs(2));

    EXPECT_TRUE(isEnabled(linked));

    EXPECT_EQ(linkTarget(), target.constData());
    EXPECT_THAT(ownNames(), ElementsAre("linked.service"));
}

TEST_F(UserUnitsLinkTest, IsNotOwedToALaterOneOfTheUsers)
{
    switchOffAndKill(u"os.unlink('OWN/linked.service')\nself.is_wanted = False"_qs);
    home.addLink("home/.config/systemd/user/linked.service", "/somewhere/else");

    (void)units.entries();

    EXPECT_EQ(linkTarget(), "/somewhere/else");
    EXPECT_THAT(ownNames(), ElementsAre("linked.service"));
}

TEST_F(UserUnitsLinkTest, IsLeftOwedToWhomeverIsAtWork)
{
    add(u"DisableUnitFiles"_qs, u"asb"_qs, u"a(sss)"_qs,
        u"import os, subprocess\nos.unlink('OWN/linked.service')\n"
        "environment = {**os.environ, 'HOME': '%1', 'XDG_CONFIG_HOME': '', 'DBUS_SESSION_BUS_ADDRESS': 'none:'}\n"
        "subprocess.run(['%2'], env=environment, stdout=subprocess.DEVNULL)\n"
        "self.is_wanted = False\n"
        "open('%1/seen', 'w').write(' '.join(os.listdir('OWN')))\nret = "_qs.arg(
            textOf(home.path("home")), QStringLiteral(QUILLMERE_STARTUP_ENTRIES))
            + noChanges);

    EXPECT_TRUE(units.setEnabled(linked, false));

    EXPECT_EQ(home.contents("home/seen"), ".quillmere-linked.service.owed");
    EXPECT_THAT(ownNames(), ElementsAre("linked.service"));
}
