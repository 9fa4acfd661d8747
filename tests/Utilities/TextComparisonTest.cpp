#include "Utilities/TextComparison.h"

#include "Utilities/LocalizedSortKey.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

const QLocale english = collationLocale(Language::English);
const QLocale spanish = collationLocale(Language::Spanish);
const QLocale russian = collationLocale(Language::Russian);

int sign(int order)
{
    return (order > 0) - (order < 0);
}

struct Pair
{
    const char *name;
    QString less;
    QString more;
    QLocale locale;
};

class StandardOrderTest : public testing::TestWithParam<Pair>
{
};

} // namespace

TEST_P(StandardOrderTest, PutsOneBeforeTheOther)
{
    const Pair &pair = GetParam();

    EXPECT_EQ(sign(localizedStandardCompare(pair.less, pair.more, pair.locale)), -1);
    EXPECT_EQ(sign(localizedStandardCompare(pair.more, pair.less, pair.locale)), 1);
    EXPECT_EQ(localizedStandardCompare(pair.less, pair.less, pair.locale), 0);

    const LocalizedSortKey less(pair.less, pair.locale);
    const LocalizedSortKey more(pair.more, pair.locale);
    EXPECT_EQ(sign(less.compare(more)), -1);
    EXPECT_EQ(sign(more.compare(less)), 1);
    EXPECT_EQ(less.compare(LocalizedSortKey(pair.less, pair.locale)), 0);
}

INSTANTIATE_TEST_SUITE_P(Pairs, StandardOrderTest,
                         testing::Values(Pair{"NumbersByValue", u"file2"_qs, u"file10"_qs, english},
                                         Pair{"NumbersBeforeCase", u"File2"_qs, u"file10"_qs, english},
                                         Pair{"NumbersBehindAccents", u"café2"_qs, u"cafe10"_qs, english},
                                         Pair{"FewerDigitsFirst", u"file1"_qs, u"file01"_qs, english},
                                         Pair{"FewerDigitsFirstOfThree", u"file1"_qs, u"file001"_qs, english},
                                         Pair{"LowerBeforeUpper", u"a"_qs, u"A"_qs, english},
                                         Pair{"LowerBeforeUpperInWords", u"file1"_qs, u"File1"_qs, english},
                                         Pair{"LettersBeforeCase", u"a"_qs, u"B"_qs, english},
                                         Pair{"AccentsLast", u"a"_qs, u"á"_qs, english},
                                         Pair{"AccentsOnlyWhereAllElseIsEqual", u"áa"_qs, u"ab"_qs, english},
                                         Pair{"RussianYo", u"е"_qs, u"ё"_qs, russian},
                                         Pair{"PunctuationBeforeDigits", u"_x"_qs, u"1"_qs, english},
                                         Pair{"DigitsBeforeLetters", u"1"_qs, u"a"_qs, english},
                                         Pair{"BlankBeforeLetters", u"a b"_qs, u"ab"_qs, english},
                                         Pair{"EnieAmongTheNs", u"ña"_qs, u"nz"_qs, english},
                                         Pair{"EnieBehindTheNs", u"nz"_qs, u"ña"_qs, spanish},
                                         Pair{"LatinFirst", u"z"_qs, u"а"_qs, english},
                                         Pair{"CyrillicFirst", u"а"_qs, u"z"_qs, russian}),
                         [](const auto &info) { return info.param.name; });

TEST(CaseInsensitiveContainsTest, MindsAccentsButNotCaseOrWayOfWriting)
{
    EXPECT_TRUE(localizedCaseInsensitiveContains(u"Éclair"_qs, u"é"_qs));
    EXPECT_TRUE(localizedCaseInsensitiveContains(u"cafe\u0301"_qs, u"é"_qs));
    EXPECT_FALSE(localizedCaseInsensitiveContains(u"café"_qs, u"cafe"_qs));
    EXPECT_FALSE(localizedCaseInsensitiveContains(u"cafe\u0301"_qs, u"cafe"_qs));
    EXPECT_TRUE(localizedCaseInsensitiveContains(u"Почта"_qs, u"ПОЧ"_qs));
}

TEST(CaseInsensitiveContainsTest, FindsNothingEmpty)
{
    EXPECT_FALSE(localizedCaseInsensitiveContains(u"anything"_qs, QString()));
}
