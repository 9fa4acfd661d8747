#include "Services/StartupService.h"
#include "Fakes/PretendMachine.h"
#include "Utilities/PropertyList.h"

#include <gmock/gmock.h>

using namespace Quillmere;

namespace {

class StartupServiceTest : public testing::Test
{
protected:
    static QByteArray xml(const QByteArray &pairs)
    {
        return "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>" + pairs + "</dict></plist>";
    }

    FilePath add(const QByteArray &path, const QByteArray &pairs = {}) const
    {
        const FilePath file(path);
        machine.files->addFile(file, 100, xml(pairs));
        return file;
    }
    FilePath addAgent(const QByteArray &name, const QByteArray &pairs = {}) const { return add(agents + name, pairs); }

    [[nodiscard]] StartupItem only() const
    {
        const QList<StartupItem> items = service.loadStartupItems();
        EXPECT_EQ(items.size(), 1);
        return items.value(0);
    }

    [[nodiscard]] PropertyList read(const FilePath &path) const
    {
        return PropertyList::read(machine.files->contentsOfFile(path).valueOr({})).value();
    }

    const QByteArray agents = "/home/ada/Library/LaunchAgents/";
    PretendMachine machine;
    StartupService service{machine.files, machine.startupEntries};
};

struct FolderCase
{
    const char *name;
    const char *folder;
    const char *label;
    StartupItemType type;
    RiskLevel riskLevel;
    bool isSystemItem;
};

class StartupFolderTest : public StartupServiceTest, public testing::WithParamInterface<FolderCase>
{
};

struct DisabledCase
{
    const char *name;
    const char *value;
    bool isEnabled;
    bool runsAtLogin;
};

class StartupValueTest : public StartupServiceTest, public testing::WithParamInterface<DisabledCase>
{
};

} // namespace

TEST_P(StartupFolderTest, GivesItsItemsTheirTypeRiskAndSystemFlag)
{
    const FilePath file = add(QByteArray(GetParam().folder) + "/a.plist",
                              "<key>Label</key><string>" + QByteArray(GetParam().label) + "</string>");

    const StartupItem item = only();

    EXPECT_EQ(item.path, file);
    EXPECT_EQ(item.name, QString::fromLatin1(GetParam().label));
    EXPECT_EQ(item.type, GetParam().type);
    EXPECT_EQ(item.riskLevel, GetParam().riskLevel);
    EXPECT_EQ(item.isSystemItem, GetParam().isSystemItem);
    EXPECT_EQ(item.developer, std::nullopt);
    EXPECT_EQ(item.signedStatus, SignedStatus::Unknown);
    EXPECT_EQ(item.explanation, QString());
}

INSTANTIATE_TEST_SUITE_P(Folders, StartupFolderTest,
                         testing::Values(FolderCase{"OwnAgent", "/home/ada/Library/LaunchAgents", "org.example.a",
                                                    StartupItemType::LaunchAgent, RiskLevel::Safe, false},
                                         FolderCase{"Agent", "/Library/LaunchAgents", "org.example.a",
                                                    StartupItemType::LaunchAgent, RiskLevel::Medium, false},
                                         FolderCase{"Daemon", "/Library/LaunchDaemons", "org.example.a",
                                                    StartupItemType::LaunchDaemon, RiskLevel::High, true},
                                         FolderCase{"OwnAgentOfTheSystemsMaker", "/home/ada/Library/LaunchAgents",
                                                    "com.apple.a", StartupItemType::LaunchAgent, RiskLevel::Safe, true},
                                         FolderCase{"AgentOfTheSystemsMaker", "/Library/LaunchAgents", "com.apple.a",
                                                    StartupItemType::LaunchAgent, RiskLevel::Safe, true},
                                         FolderCase{"DaemonOfTheSystemsMaker", "/Library/LaunchDaemons", "com.apple.a",
                                                    StartupItemType::LaunchDaemon, RiskLevel::Safe, true},
                                         FolderCase{"DaemonThatOnlySoundsLikeIt", "/Library/LaunchDaemons",
                                                    "com.applesauce.a", StartupItemType::LaunchDaemon, RiskLevel::High,
                                                    true}),
                         [](const auto &info) { return info.param.name; });

TEST_P(StartupValueTest, CountsOnlyAsABoolean)
{
    const QByteArray value = GetParam().value;
    addAgent("a.plist",
             value.isEmpty() ? QByteArray() : "<key>Disabled</key>" + value + "<key>RunAtLoad</key>" + value);

    const StartupItem item = only();

    EXPECT_EQ(item.isEnabled, GetParam().isEnabled);
    EXPECT_EQ(item.runsAtLogin, GetParam().runsAtLogin);
}

INSTANTIATE_TEST_SUITE_P(Values, StartupValueTest,
                         testing::Values(DisabledCase{"True", "<true/>", false, true},
                                         DisabledCase{"False", "<false/>", true, false},
                                         DisabledCase{"Absent", "", true, false},
                                         DisabledCase{"One", "<integer>1</integer>", true, false},
                                         DisabledCase{"RealOne", "<real>1</real>", true, false},
                                         DisabledCase{"Yes", "<string>YES</string>", true, false},
                                         DisabledCase{"Array", "<array><true/></array>", true, false}),
                         [](const auto &info) { return info.param.name; });

TEST_F(StartupServiceTest, FollowsTheOrderOfTheFoldersAndOfTheirListingsAndThePlatformComesLast)
{
    machine.startupEntries->add({FilePath("/etc/xdg/autostart/a.desktop"), u"a"_qs, {}, true});
    add("/Library/LaunchDaemons/a.plist");
    add("/Library/LaunchAgents/b.plist");
    addAgent("z.plist");
    addAgent("c.plist");

    QStringList paths;
    for (const StartupItem &item : service.loadStartupItems())
        paths.append(item.path.displayText());

    EXPECT_EQ(paths,
              (QStringList{u"/home/ada/Library/LaunchAgents/z.plist"_qs, u"/home/ada/Library/LaunchAgents/c.plist"_qs,
                           u"/Library/LaunchAgents/b.plist"_qs, u"/Library/LaunchDaemons/a.plist"_qs,
                           u"/etc/xdg/autostart/a.desktop"_qs}));
}

TEST_F(StartupServiceTest, PassesOverAFileWhoseExtensionIsWrittenInCapitals)
{
    addAgent("a.PLIST");
    addAgent("b.Plist");
    addAgent("plist");
    addAgent(".hidden.plist");

    EXPECT_TRUE(service.loadStartupItems().isEmpty());
}

TEST_F(StartupServiceTest, TakesTheNameFromTheFileWhereTheLabelIsANumber)
{
    addAgent("a number.plist", "<key>Label</key><integer>7</integer>");

    EXPECT_EQ(only().name, u"a number"_qs);
}

TEST_F(StartupServiceTest, ListsADictionaryWithoutAnyKeyUnderTheNameOfItsFile)
{
    addAgent("two.points.plist");

    const StartupItem item = only();

    EXPECT_EQ(item.name, u"two.points"_qs);
    EXPECT_TRUE(item.isEnabled);
    EXPECT_FALSE(item.runsAtLogin);
}

TEST_F(StartupServiceTest, PassesOverWhatIsNoDictionary)
{
    machine.files->addFile(FilePath(agents + "array.plist"), 10, "<plist version=\"1.0\"><array/></plist>");
    machine.files->addFile(FilePath(agents + "broken.plist"), 10, "<plist version=\"1.0\"><dict>");
    machine.files->addFile(FilePath(agents + "empty.plist"), 0);
    machine.files->addFolder(FilePath(agents + "folder.plist"));
    machine.files->addSocket(FilePath(agents + "socket.plist"));
    machine.files->lock(addAgent("locked.plist"));
    addAgent("sound.plist");

    EXPECT_EQ(only().name, u"sound"_qs);
}

TEST_F(StartupServiceTest, PassesOverAFolderThatCannotBeListed)
{
    addAgent("a.plist");
    add("/Library/LaunchDaemons/b.plist");
    machine.files->lock(FilePath(agents));

    EXPECT_EQ(only().name, u"b"_qs);
}

TEST_F(StartupServiceTest, ReadsTheBinaryFormAndTheOldStyle)
{
    PropertyList list;
    list.setString(u"Label"_qs, u"org.example.binary"_qs);
    list.setBoolean(u"Disabled"_qs, true);
    machine.files->addFile(FilePath(agents + "a.plist"), 10, list.written(PropertyList::Form::Binary));
    machine.files->addFile(FilePath(agents + "b.plist"), 10, "{ Label = \"org.example.old\"; Disabled = YES; }");

    const QList<StartupItem> items = service.loadStartupItems();

    ASSERT_EQ(items.size(), 2);
    EXPECT_EQ(items.at(0).name, u"org.example.binary"_qs);
    EXPECT_FALSE(items.at(0).isEnabled);
    EXPECT_EQ(items.at(1).name, u"org.example.old"_qs);
    EXPECT_TRUE(items.at(1).isEnabled);
}

TEST_F(StartupServiceTest, GivesEveryItemANewIdentityAtEachLoad)
{
    addAgent("a.plist");

    EXPECT_NE(only().id, only().id);
}

TEST_F(StartupServiceTest, LeavesDisabledFalseInTheFileAfterTurningAnItemOffAndOnAgain)
{
    const FilePath file = addAgent("a.plist", "<key>Label</key><string>a</string>");

    EXPECT_EQ(service.toggleItem(only(), false), std::nullopt);
    EXPECT_EQ(read(file).boolean(u"Disabled"_qs), true);
    EXPECT_FALSE(only().isEnabled);

    EXPECT_EQ(service.toggleItem(only(), true), std::nullopt);
    EXPECT_EQ(read(file).boolean(u"Disabled"_qs), false);
    EXPECT_TRUE(only().isEnabled);
}

TEST_F(StartupServiceTest, ReplacesADisabledOfAnotherTypeByABoolean)
{
    const FilePath file = addAgent("a.plist", "<key>Disabled</key><string>YES</string>");

    EXPECT_EQ(service.toggleItem(only(), false), std::nullopt);

    EXPECT_EQ(read(file).boolean(u"Disabled"_qs), true);
}

TEST_F(StartupServiceTest, LeavesAllOtherKeysAsTheyWereAndWritesXml)
{
    const QByteArray others = "<key>Env</key><dict><key>b</key><data>AAEC</data><key>B</key><date>2024-01-02T03:04:05Z"
                              "</date></dict><key>LABEL</key><real>1.5</real><key>label</key><array><true/></array>";
    const FilePath file = addAgent("a.plist", others);

    EXPECT_EQ(service.toggleItem(only(), false), std::nullopt);

    PropertyList expected = PropertyList::read(xml(others)).value();
    expected.setBoolean(u"Disabled"_qs, true);
    EXPECT_EQ(machine.files->contentsOfFile(file).valueOr({}), expected.written(PropertyList::Form::Xml));
}

TEST_F(StartupServiceTest, FailsWithCodeOneWhereTheFileCanNoLongerBeRead)
{
    const FilePath file = addAgent("a.plist");
    const StartupItem item = only();
    machine.files->vanish(file);

    const std::optional<StartupError> error = service.toggleItem(item, false);

    ASSERT_TRUE(error);
    EXPECT_EQ(int(error->code), 1);
    EXPECT_EQ(error->description, u"Failed to load plist"_qs);
    EXPECT_EQ(StartupError::domain, u"StartupService");
    EXPECT_FALSE(machine.files->contains(file));
}

TEST_F(StartupServiceTest, FailsWithCodeTwoAndThePathWhereTheFileMayNotBeWritten)
{
    const FilePath file = add("/Library/LaunchDaemons/a.plist");
    const QByteArray before = machine.files->contentsOfFile(file).valueOr({});
    machine.files->refuse(file, Failure::Kind::NoPermission);

    const std::optional<StartupError> error = service.toggleItem(only(), false);

    ASSERT_TRUE(error);
    EXPECT_EQ(int(error->code), 2);
    EXPECT_EQ(error->description,
              u"Failed to write plist at /Library/LaunchDaemons/a.plist. You may need administrative "
              u"permissions."_qs);
    EXPECT_EQ(machine.files->contentsOfFile(file).valueOr({}), before);
}

TEST_F(StartupServiceTest, LeavesAFileAloneThatCouldNotBeReadAgainInXml)
{
    PropertyList list;
    list.setString(u"Bell"_qs, u"\a"_qs);
    const QByteArray before = list.written(PropertyList::Form::Binary);
    const FilePath file(agents + "a.plist");
    machine.files->addFile(file, 10, before);

    const std::optional<StartupError> error = service.toggleItem(only(), false);

    ASSERT_TRUE(error);
    EXPECT_EQ(int(error->code), 2);
    EXPECT_EQ(machine.files->contentsOfFile(file).valueOr({}), before);
}

TEST_F(StartupServiceTest, TakesThePlatformsEntriesForAgentsOfTheUserOrOfAllUsers)
{
    machine.startupEntries->add(
        {FilePath("/home/ada/.config/autostart/own.desktop"), u"Own"_qs, StartupEntry::Scope::User, false});
    machine.startupEntries->add(
        {FilePath("/etc/xdg/autostart/all.desktop"), u"All"_qs, StartupEntry::Scope::AllUsers, true});

    const QList<StartupItem> items = service.loadStartupItems();

    ASSERT_EQ(items.size(), 2);
    EXPECT_EQ(items.at(0).name, u"Own"_qs);
    EXPECT_EQ(items.at(0).type, StartupItemType::LaunchAgent);
    EXPECT_EQ(items.at(0).riskLevel, RiskLevel::Safe);
    EXPECT_FALSE(items.at(0).isEnabled);
    EXPECT_TRUE(items.at(0).runsAtLogin);
    EXPECT_EQ(items.at(1).type, StartupItemType::LaunchAgent);
    EXPECT_EQ(items.at(1).riskLevel, RiskLevel::Medium);
    EXPECT_TRUE(items.at(1).isEnabled);
}

TEST_F(StartupServiceTest, HasThePlatformSwitchItsOwnEntries)
{
    const FilePath file("/home/ada/.config/autostart/own.desktop");
    machine.startupEntries->add({file, u"Own"_qs, StartupEntry::Scope::User, true});

    EXPECT_EQ(service.toggleItem(only(), false), std::nullopt);
    EXPECT_FALSE(only().isEnabled);

    machine.startupEntries->refuse(file);
    const std::optional<StartupError> error = service.toggleItem(only(), true);
    ASSERT_TRUE(error);
    EXPECT_EQ(int(error->code), 2);
    EXPECT_FALSE(only().isEnabled);
}
