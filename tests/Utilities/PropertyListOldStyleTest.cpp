#include "Utilities/PropertyList.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

bool isAcceptedInOldStyle(const QByteArray &text)
{
    return PropertyList::read(text).isOk();
}

QByteArray xmlOf(const QByteArray &text)
{
    const Result<PropertyList> list = PropertyList::read(text);
    return list ? list.value().written(PropertyList::Form::Xml) : QByteArray();
}

QByteArray xmlWith(const QByteArray &value)
{
    return xmlOf("<plist version=\"1.0\"><dict><key>k</key>" + value + "</dict></plist>");
}

struct OldStyleCase
{
    const char *name;
    QByteArray value;
    QByteArray xml; ///< Empty: refused.
};

class OldStyleValueTest : public testing::TestWithParam<OldStyleCase>
{
};

} // namespace

TEST_P(OldStyleValueTest, IsReadAsTheOldFormMeansIt)
{
    const QByteArray expected = GetParam().xml.isEmpty() ? QByteArray() : xmlWith(GetParam().xml);

    EXPECT_EQ(xmlOf("{ k = " + GetParam().value + "; }"), expected);
    EXPECT_EQ(xmlOf("k = " + GetParam().value + ";"), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Values, OldStyleValueTest,
    testing::Values(OldStyleCase{"Word", "a_$/:.-9", "<string>a_$/:.-9</string>"},
                    OldStyleCase{"NumberIsAText", "1", "<string>1</string>"},
                    OldStyleCase{"YesIsAText", "YES", "<string>YES</string>"},
                    OldStyleCase{"Quoted", "\"y z\"", "<string>y z</string>"},
                    OldStyleCase{"QuotedOnce", "'y \"z'", "<string>y \"z</string>"},
                    OldStyleCase{"QuotedNothing", "\"\"", "<string></string>"},
                    OldStyleCase{"Escapes", R"("a\\\"\t\101\U00e9\Ud83d\ude00")", ""},
                    OldStyleCase{"EscapedLetters", R"("a\\\"\t\101\U00e9\Ud83d\Ude00")", "<string>a\\\"\tAé😀</string>"},
                    OldStyleCase{"HalfASurrogatePair", R"("\Ud83d")", ""}, OldStyleCase{"EscapedZero", R"("\000")", ""},
                    OldStyleCase{"Array", "(x, \"y z\", )", "<array><string>x</string><string>y z</string></array>"},
                    OldStyleCase{"EmptyArray", "()", "<array/>"}, OldStyleCase{"ArrayWithoutComma", "(x y)", ""},
                    OldStyleCase{"Dictionary", "{ b = c; }", "<dict><key>b</key><string>c</string></dict>"},
                    OldStyleCase{"EmptyDictionary", "{}", "<dict/>"},
                    OldStyleCase{"DictionaryWithoutSemicolon", "{ b = c }", ""},
                    OldStyleCase{"KeyForItself", "{ b; }", "<dict><key>b</key><string>b</string></dict>"},
                    OldStyleCase{"LastOfTwo", "{ b = c; b = d; }", "<dict><key>b</key><string>d</string></dict>"},
                    OldStyleCase{"Data", "<0f bD>", "<data>D70=</data>"}, OldStyleCase{"HalfAByte", "<0fb>", ""},
                    OldStyleCase{"DataWithoutEnd", "<0f", ""},
                    OldStyleCase{"Comments", "/* { */ x // }\n", "<string>x</string>"},
                    OldStyleCase{"CommentWithoutEnd", "x /* ", ""}, OldStyleCase{"Nothing", "", ""},
                    OldStyleCase{"BrokenUtf8", "\"\xC3\"", ""}, OldStyleCase{"QuoteWithoutEnd", "\"x", ""}),
    [](const auto &info) { return info.param.name; });

TEST(PropertyListOldStyleTest, ReadsALaunchPropertyList)
{
    const QByteArray text = "// made by hand\n{\n  Label = \"org.example.a\"; /* its name */\n  Disabled = YES;\n"
                            "  ProgramArguments = (/usr/bin/true, \"--quiet now\");\n}\n";

    const PropertyList list = PropertyList::read(text).value();

    EXPECT_EQ(list.string(u"Label"_qs), u"org.example.a"_qs);
    EXPECT_EQ(list.boolean(u"Disabled"_qs), std::nullopt);
    EXPECT_EQ(list.stringArray(u"ProgramArguments"_qs), (QStringList{u"/usr/bin/true"_qs, u"--quiet now"_qs}));
}

TEST(PropertyListOldStyleTest, RefusesWhatIsNoDictionary)
{
    for (const QByteArray text : {"", "  \n", "(a, b)", "\"text\"", "rubbish", "Not a property list.", "{ a = 1; } x",
                                  "{ a = 1; }}", "a = 1; }", "{\"a\":1}", "// nothing", "<0f>"})
        EXPECT_FALSE(isAcceptedInOldStyle(text)) << text.constData();
    EXPECT_FALSE(isAcceptedInOldStyle(QByteArray("{ a = \"b\0c\"; }", 14)));
}

TEST(PropertyListOldStyleTest, RefusesEveryBeginningOfAList)
{
    const QByteArray whole = R"({ a = (x, "y z"); b = <0fbd>; c = { d = e; }; /* f */ })";
    ASSERT_TRUE(isAcceptedInOldStyle(whole));

    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(isAcceptedInOldStyle(whole.first(length))) << length;
}

TEST(PropertyListOldStyleTest, NestsFiveHundredAndTwelveContainersAndNoMore)
{
    const auto nested
        = [](qsizetype depth) { return "{ a = " + QByteArray(depth, '(') + QByteArray(depth, ')') + "; }"; };
    EXPECT_TRUE(isAcceptedInOldStyle(nested(511)));
    EXPECT_FALSE(isAcceptedInOldStyle(nested(512)));
    EXPECT_FALSE(isAcceptedInOldStyle(nested(100'000)));

    QByteArray dictionaries;
    for (int level = 0; level < 100'000; ++level)
        dictionaries += "{ a = ";
    EXPECT_FALSE(isAcceptedInOldStyle(dictionaries));
}

TEST(PropertyListOldStyleTest, RefusesAListOfMoreValuesThanAnybodyMeans)
{
    EXPECT_TRUE(isAcceptedInOldStyle("{ a = (" + QByteArray("x,").repeated(100'000) + "); }"));
    EXPECT_FALSE(isAcceptedInOldStyle("{ a = (" + QByteArray("x,").repeated(1'000'000) + "); }"));
}

TEST(PropertyListOldStyleTest, IsWrittenAsXml)
{
    PropertyList list = PropertyList::read("{ b = (x); a = <00>; }").value();
    list.setBoolean(u"Disabled"_qs, true);

    EXPECT_EQ(PropertyList::read(list.written(PropertyList::Form::Xml)).value().keys(),
              (QStringList{u"Disabled"_qs, u"a"_qs, u"b"_qs}));
}

TEST(PropertyListDuplicateTest, TakesTheLastOfTwoValuesOfAKeyInXml)
{
    const QByteArray xml
        = "<plist version=\"1.0\"><dict><key>Disabled</key><true/><key>Disabled</key><false/></dict></plist>";

    const PropertyList list = PropertyList::read(xml).value();

    EXPECT_EQ(list.boolean(u"Disabled"_qs), false);
    EXPECT_EQ(list.keys(), QStringList{u"Disabled"_qs});
}
