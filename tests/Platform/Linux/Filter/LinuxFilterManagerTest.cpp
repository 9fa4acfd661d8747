#include "Platform/Linux/Filter/LinuxFilterManager.h"

#include "Platform/Linux/EventWaiting.h"
#include "Platform/Linux/Filter/FilterPolicyRecord.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

FilterProviderConfiguration configuration()
{
    FilterProviderConfiguration made;
    made.filterSockets = true;
    made.filterDataProviderBundleIdentifier = u"com.example.filter"_qs;
    made.vendorConfiguration = {
        {u"blockedBundleIdentifiers"_qs, QStringList{u"com.example.a"_qs}},
        {u"ecoTrafficEnabled"_qs, true},
        {u"ecoAllowedBundleIdentifiers"_qs, QStringList{u"com.example.b"_qs}},
    };
    return made;
}

} // namespace

class LinuxFilterManagerTest : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(folder.isValid()); }

    [[nodiscard]] QString path(const QString &name) const { return folder.filePath(name); }

    void writePolicy(const QByteArray &contents) const
    {
        QFile file(path(u"policy"_qs));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(contents);
    }

    [[nodiscard]] QByteArray contents(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// Stands in for the program that asks for the password: @p script is told how it was called.
    void makeManager(const QByteArray &script)
    {
        QFile file(path(u"pkexec"_qs));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write("#!/bin/sh\ncd \"${0%/*}\"\n" + script + "\n");
        file.close();
        ASSERT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        const QStringList command
            = {file.fileName(), u"--disable-internal-agent"_qs, u"helper"_qs, u"filter-policy"_qs};
        manager = std::make_unique<LinuxFilterManager>(FilePath(path(u"policy"_qs).toUtf8()), command);
    }

    FilterManager::Completion takeAnswer()
    {
        return [this](const std::optional<QString> &error) {
            ++answers;
            answer = error;
        };
    }

    bool load()
    {
        answers = 0;
        manager->loadFromPreferences(takeAnswer());
        EXPECT_EQ(answers, 0);
        return comesTrue([this] { return answers == 1; });
    }

    bool save()
    {
        answers = 0;
        manager->saveToPreferences(takeAnswer());
        EXPECT_EQ(answers, 0);
        return comesTrue([this] { return answers == 1; });
    }

    QTemporaryDir folder;
    std::unique_ptr<LinuxFilterManager> manager;
    int answers = 0;
    std::optional<QString> answer;
};

TEST_F(LinuxFilterManagerTest, LoadsWhatWasSaved)
{
    makeManager("exit 1");
    writePolicy(written({configuration(), u"Sample filter"_qs, true}));

    ASSERT_TRUE(load());

    EXPECT_EQ(answer, std::nullopt);
    EXPECT_EQ(manager->providerConfiguration, configuration());
    EXPECT_EQ(manager->localizedDescription, u"Sample filter"_qs);
    EXPECT_TRUE(manager->isEnabled);
}

TEST_F(LinuxFilterManagerTest, LoadsNothingWhereNothingWasSavedYet)
{
    makeManager("exit 1");
    manager->providerConfiguration = configuration();
    manager->localizedDescription = u"Left from before"_qs;
    manager->isEnabled = true;

    ASSERT_TRUE(load());

    EXPECT_EQ(answer, std::nullopt);
    EXPECT_EQ(manager->providerConfiguration, std::nullopt);
    EXPECT_EQ(manager->localizedDescription, QString());
    EXPECT_FALSE(manager->isEnabled);
}

TEST_F(LinuxFilterManagerTest, TakesARecordThatCannotBeUnderstoodForNone)
{
    makeManager("exit 1");
    writePolicy("{\"enabled\":true}");

    ASSERT_TRUE(load());

    EXPECT_EQ(answer, std::nullopt);
    EXPECT_EQ(manager->providerConfiguration, std::nullopt);
    EXPECT_FALSE(manager->isEnabled);
}

TEST_F(LinuxFilterManagerTest, SaysThatARecordCannotBeReadAndKeepsWhatItHas)
{
    makeManager("exit 1");
    ASSERT_EQ(::mkfifo(path(u"policy"_qs).toUtf8().constData(), 0600), 0);
    manager->providerConfiguration = configuration();

    ASSERT_TRUE(load());

    EXPECT_EQ(answer, u"Not a regular file"_qs);
    EXPECT_EQ(manager->providerConfiguration, configuration());
}

TEST_F(LinuxFilterManagerTest, HandsTheRecordToTheHelperOnItsStandardInput)
{
    makeManager("echo \"$@\" > arguments; cat > input");
    manager->providerConfiguration = configuration();
    manager->localizedDescription = u"Sample filter"_qs;
    manager->isEnabled = true;

    ASSERT_TRUE(save());

    EXPECT_EQ(answer, std::nullopt);
    EXPECT_EQ(contents(u"arguments"_qs), "--disable-internal-agent helper filter-policy\n");
    EXPECT_EQ(contents(u"input"_qs), written({configuration(), u"Sample filter"_qs, true}));
}

TEST_F(LinuxFilterManagerTest, HandsOverTheRecordAsItWasWhenSavingBegan)
{
    makeManager("while ! [ -e go ]; do sleep 0.02; done; cat > input");
    manager->isEnabled = true;
    manager->saveToPreferences(takeAnswer());
    manager->isEnabled = false;
    QFile go(path(u"go"_qs));
    ASSERT_TRUE(go.open(QFile::WriteOnly));

    ASSERT_TRUE(comesTrue([this] { return answers == 1; }));

    EXPECT_EQ(contents(u"input"_qs), written({{}, {}, true}));
}

TEST_F(LinuxFilterManagerTest, SaysThatTheUserDismissedTheDialog)
{
    makeManager("cat > /dev/null; echo 'Error executing command as another user: Request dismissed' >&2; exit 126");

    ASSERT_TRUE(save());

    EXPECT_EQ(answer, u"User canceled. (-128)"_qs);
}

TEST_F(LinuxFilterManagerTest, SaysTheFirstLineOfWhyTheHelperRefused)
{
    makeManager("printf 'Not authorized\\n\\nThis incident has been reported.\\n' >&2; exit 127");

    ASSERT_TRUE(save());

    EXPECT_EQ(answer, u"Not authorized"_qs);
}

TEST_F(LinuxFilterManagerTest, SaysTheStatusWhereTheHelperSaysNothing)
{
    makeManager("cat > /dev/null; exit 3");

    ASSERT_TRUE(save());

    EXPECT_EQ(answer, path(u"pkexec"_qs) + u" ended with status 3."_qs);
}

TEST_F(LinuxFilterManagerTest, SaysThatTheHelperWasKilled)
{
    makeManager("kill -KILL $$");

    ASSERT_TRUE(save());

    EXPECT_EQ(answer, path(u"pkexec"_qs) + u" ended unexpectedly."_qs);
}

TEST_F(LinuxFilterManagerTest, SaysThatThereIsNoHelperAndOnlyLater)
{
    makeManager("exit 0");
    ASSERT_TRUE(QFile::remove(path(u"pkexec"_qs)));

    ASSERT_TRUE(save());

    ASSERT_TRUE(answer.has_value());
    EXPECT_FALSE(answer->isEmpty());
}

TEST_F(LinuxFilterManagerTest, TakesAGreatDealOfComplaintsCalmly)
{
    makeManager("echo refused >&2; head -c 3000000 /dev/zero | tr '\\0' x >&2; exit 1");

    ASSERT_TRUE(save());

    EXPECT_EQ(answer, u"refused"_qs);
}

TEST_F(LinuxFilterManagerTest, LetsTheHelperFinishWhenItGoesItself)
{
    makeManager("while ! [ -e go ]; do sleep 0.02; done; cat > input.part; mv input.part input");
    manager->isEnabled = true;
    manager->saveToPreferences(takeAnswer());
    manager.reset();
    QFile go(path(u"go"_qs));
    ASSERT_TRUE(go.open(QFile::WriteOnly));

    ASSERT_TRUE(comesTrue([this] { return QFile::exists(path(u"input"_qs)); }));

    EXPECT_EQ(contents(u"input"_qs), written({{}, {}, true}));
    EXPECT_EQ(answers, 0);
}

TEST(LinuxFilterManagerPlacesTest, AsksForAPasswordUnlessTheUserIsTheAdministrator)
{
    const QStringList helper = LinuxFilterManager::policyHelper();

    EXPECT_EQ(helper.first() == u"/usr/bin/pkexec"_qs, ::geteuid() != 0);
    EXPECT_EQ(helper.mid(helper.size() - 2),
              (QStringList{u"/usr/libexec/quillmere/quillmere-admin"_qs, u"filter-policy"_qs}));
    EXPECT_EQ(LinuxFilterManager::policyFile(), FilePath("/etc/quillmere/filter-policy.json"));
}
