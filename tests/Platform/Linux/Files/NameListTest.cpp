#include "Platform/Linux/Files/NameList.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Quillmere;

namespace {

NameList listOf(const std::vector<std::string> &names)
{
    NameList list;
    for (const std::string &name : names)
        list.append(name.c_str());
    return list;
}

std::vector<std::string> takeAll(NameList list)
{
    std::vector<std::string> names;
    while (!list.isEmpty())
        names.emplace_back(list.takeFirst());
    return names;
}

} // namespace

TEST(NameListTest, GivesNamesBackInTheirOrder)
{
    EXPECT_EQ(takeAll(listOf({"b", "a", "a name", "\xff\n"})),
              (std::vector<std::string>{"b", "a", "a name", "\xff\n"}));
    EXPECT_TRUE(NameList().isEmpty());
}

TEST(NameListTest, CountsTheBytesThatAreLeft)
{
    NameList list = listOf({"one", "four"});
    EXPECT_EQ(list.byteCount(), 9U);

    EXPECT_STREQ(list.takeFirst(), "one");

    EXPECT_EQ(list.byteCount(), 5U);
}

TEST(NameListTest, KeepsTheFirstHalfAndGivesTheLater)
{
    NameList list = listOf({"a", "b", "c", "d"});

    EXPECT_EQ(takeAll(list.takeLaterHalf()), (std::vector<std::string>{"c", "d"}));
    EXPECT_EQ(takeAll(list), (std::vector<std::string>{"a", "b"}));
}

TEST(NameListTest, GivesNothingOfAListOfOneOrNone)
{
    NameList list = listOf({"gone", "alone"});
    EXPECT_STREQ(list.takeFirst(), "gone");

    EXPECT_TRUE(list.takeLaterHalf().isEmpty());
    EXPECT_TRUE(NameList().takeLaterHalf().isEmpty());
    EXPECT_EQ(takeAll(list), (std::vector<std::string>{"alone"}));
}

TEST(NameListTest, NeverCutsANameAndLosesNone)
{
    const std::vector<std::vector<std::string>> lists = {
        {"a", "a very long name behind a short one"},
        {"a very long name before a short one", "b"},
        {"a", "a very long name between short ones", "b"},
        {"aa", "bb", "cc"},
    };
    for (const auto &names : lists) {
        NameList list = listOf(names);
        const std::vector<std::string> later = takeAll(list.takeLaterHalf());
        std::vector<std::string> all = takeAll(list);
        EXPECT_FALSE(all.empty());
        all.insert(all.end(), later.begin(), later.end());
        EXPECT_EQ(all, names);
    }
}
