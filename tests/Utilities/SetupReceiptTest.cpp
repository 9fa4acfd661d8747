#include "Utilities/SetupReceipt.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

class SetupReceiptTest : public testing::Test
{
protected:
    SetupReceiptTest() { release(u"1.3.4"_qs, u"1"_qs); }

    void release(const std::optional<QString> &version, const std::optional<QString> &build)
    {
        machine.bundles->add({machine.bundles->main, u"com.veltrane.quillmere"_qs, std::nullopt, version, build});
    }

    [[nodiscard]] QString signature() const
    {
        return machine.defaults->string(u"setup.installSignature"_qs).value_or(u"none"_qs);
    }

    InstalledLocalizer localizer;
    PretendMachine machine;
    SetupReceipt receipt{machine.defaults, machine.bundles, machine.clock, InstallerTerms(machine.files)};
};

} // namespace

TEST_F(SetupReceiptTest, ShowsTheWizardOnAFirstStart)
{
    EXPECT_TRUE(receipt.shouldShowWelcome());
    EXPECT_TRUE(receipt.shouldShowWelcome());
}

TEST_F(SetupReceiptTest, ShowsItNoMoreOnceThatVersionIsSetUp)
{
    receipt.markCompleted();

    EXPECT_FALSE(receipt.shouldShowWelcome());
}

TEST_F(SetupReceiptTest, ShowsItAgainForAnotherBuildOfTheSameVersion)
{
    receipt.markCompleted();

    release(u"1.3.4"_qs, u"2"_qs);

    EXPECT_TRUE(receipt.shouldShowWelcome());
}

TEST_F(SetupReceiptTest, ShowsItAgainForAnotherVersion)
{
    receipt.markCompleted();

    release(u"1.3.5"_qs, u"1"_qs);

    EXPECT_TRUE(receipt.shouldShowWelcome());
}

TEST_F(SetupReceiptTest, ShowsItWhereNoVersionIsRemembered)
{
    machine.defaults->setBoolean(u"hasSeenWelcome"_qs, true);

    EXPECT_TRUE(receipt.shouldShowWelcome());
}

TEST_F(SetupReceiptTest, DiscardsTheWishToShowItUnseen)
{
    receipt.markCompleted();
    machine.defaults->setBoolean(u"setup.forceWelcomeAfterInstall"_qs, true);

    EXPECT_FALSE(receipt.shouldShowWelcome());
    EXPECT_FALSE(machine.defaults->boolean(u"setup.forceWelcomeAfterInstall"_qs));
}

TEST_F(SetupReceiptTest, RemembersTheVersionTheDayAndTheConditions)
{
    receipt.markCompleted();

    EXPECT_TRUE(machine.defaults->boolean(u"hasSeenWelcome"_qs));
    EXPECT_EQ(signature(), u"1.3.4|1"_qs);
    EXPECT_EQ(machine.defaults->date(u"setup.completedDate"_qs), machine.clock->now());
    EXPECT_TRUE(machine.files->contains(FilePath("/home/ada/Library/Application Support/Quillmere/"
                                                 "FINAL_INSTALLATION_CONDITIONS_RULES_DISCLAIMER.md")));
}

TEST_F(SetupReceiptTest, RemembersTheVersionOfABundleElsewhere)
{
    const FilePath copy("/home/ada/Applications/Quillmere.app");
    machine.bundles->add({copy, std::nullopt, std::nullopt, u"2.0"_qs, u"7"_qs});

    receipt.markCompleted(copy);

    EXPECT_EQ(signature(), u"2.0|7"_qs);
    EXPECT_TRUE(machine.defaults->boolean(u"hasSeenWelcome"_qs));
}

TEST_F(SetupReceiptTest, TakesWhatABundleDoesNotSayForAVersionInDevelopment)
{
    const auto signatureOf = [&](const std::optional<QString> &version, const std::optional<QString> &build) {
        release(version, build);
        return SetupReceipt::installSignature(machine.bundles->open(machine.bundles->main));
    };

    EXPECT_EQ(signatureOf(std::nullopt, u"5"_qs), u"dev|5"_qs);
    EXPECT_EQ(signatureOf(u"1.0"_qs, std::nullopt), u"1.0|0"_qs);
    EXPECT_EQ(SetupReceipt::installSignature(std::nullopt), u"dev|0"_qs);
}
