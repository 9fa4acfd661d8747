#include "Models/RiskLevel.h"
#include "Models/CleanupCategory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Quillmere;

TEST(RiskLevelTest, ComparesByDeclarationAndNotByText)
{
    EXPECT_LT(RiskLevel::Safe, RiskLevel::Medium);
    EXPECT_LT(RiskLevel::Medium, RiskLevel::High);
    EXPECT_LT(RiskLevel::High, RiskLevel::Dangerous);
    EXPECT_LT(rawValue(RiskLevel::High), rawValue(RiskLevel::Medium));
}

TEST(RiskLevelTest, ListsItsCasesInOrderWithTheirStoredTexts)
{
    QStringList texts;
    for (const RiskLevel level : allCases<RiskLevel>())
        texts.append(rawValue(level));

    EXPECT_THAT(texts, testing::ElementsAre(u"safe"_qs, u"medium"_qs, u"high"_qs, u"dangerous"_qs));
}

TEST(RiskLevelTest, ComesBackFromItsTextAndFromNoOther)
{
    EXPECT_EQ(fromRawValue<RiskLevel>(u"dangerous"), RiskLevel::Dangerous);
    EXPECT_EQ(fromRawValue<RiskLevel>(u"Safe"), std::nullopt);
    EXPECT_EQ(fromRawValue<RiskLevel>(u""), std::nullopt);
}

TEST(RiskLevelTest, HasACaseAtEachNumberFromNoneUpAndNoOther)
{
    EXPECT_EQ(caseAt<RiskLevel>(0), RiskLevel::Safe);
    EXPECT_EQ(caseAt<RiskLevel>(3), RiskLevel::Dangerous);
    EXPECT_EQ(caseAt<RiskLevel>(4), std::nullopt);
    EXPECT_EQ(caseAt<RiskLevel>(-1), std::nullopt);
}

TEST(CleanupCategoryTest, HoldsNothingUntilItsScanHasEnded)
{
    const CleanupCategory category;

    EXPECT_EQ(category.totalSize, 0);
    EXPECT_EQ(category.itemCount, 0);
    EXPECT_TRUE(category.items.isEmpty());
    EXPECT_FALSE(category.id.isNull());
    EXPECT_NE(category.id, CleanupCategory().id);
}
