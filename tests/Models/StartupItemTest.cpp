#include "Models/StartupItem.h"

#include <gtest/gtest.h>

using namespace Quillmere;

TEST(StartupItemTest, IsMadeWithAnIdentityOfItsOwn)
{
    const StartupItem first;
    const StartupItem second;

    EXPECT_FALSE(first.id.isNull());
    EXPECT_NE(first.id, second.id);
}

TEST(StartupItemTypeTest, IsStoredUnderTheNamesOfItsCasesInOrder)
{
    QStringList names;
    for (const StartupItemType type : allCases<StartupItemType>())
        names.append(rawValue(type));

    EXPECT_EQ(names, (QStringList{u"loginItem"_qs, u"launchAgent"_qs, u"launchDaemon"_qs, u"helperTool"_qs}));
    EXPECT_EQ(labelKey(StartupItemType::LaunchDaemon), u"startup.type.launchDaemon"_qs);
}

TEST(SignedStatusTest, IsStoredUnderTheNamesOfItsCasesInOrder)
{
    QStringList names;
    for (const SignedStatus status : allCases<SignedStatus>())
        names.append(rawValue(status));

    EXPECT_EQ(names, (QStringList{u"signed"_qs, u"unsigned"_qs, u"unknown"_qs}));
}
