#include "Models/AppItem.h"

#include <gtest/gtest.h>

using namespace Quillmere;

TEST(AppItemTest, IsMadeWithAnIdentityOfItsOwnAndWithoutWhatNothingFindsOut)
{
    const AppItem first;
    const AppItem second;

    EXPECT_FALSE(first.id.isNull());
    EXPECT_NE(first.id, second.id);
    EXPECT_EQ(first.size, 0);
    EXPECT_EQ(first.version, std::nullopt);
    EXPECT_EQ(first.developer, std::nullopt);
    EXPECT_EQ(first.architecture, Architecture::Unknown);
    EXPECT_EQ(first.signedStatus, SignedStatus::Unknown);
    EXPECT_TRUE(first.relatedFiles.isEmpty());
}

TEST(AppItemTest, IsFoundByItsIdentityWhateverElseChanges)
{
    AppItem item;
    item.name = u"Painter"_qs;
    AppItem changed = item;
    changed.name = u"Writer"_qs;
    changed.size = 5;

    EXPECT_EQ(changed.id, item.id);
    EXPECT_NE(changed, item);
    EXPECT_EQ(qHash(changed), qHash(item));
    changed.id = QUuid::createUuid();
    EXPECT_NE(qHash(changed), qHash(item));
}

TEST(ArchitectureTest, IsStoredUnderTheNamesOfItsCasesInOrder)
{
    QStringList names;
    for (const Architecture architecture : allCases<Architecture>())
        names.append(rawValue(architecture));

    EXPECT_EQ(names, (QStringList{u"appleSilicon"_qs, u"intel"_qs, u"universal"_qs, u"unknown"_qs}));
}
