#include "Utilities/PropertyList.h"

#include <QStringEncoder>

#include <gtest/gtest.h>

#include <limits>

using namespace Quillmere;

namespace {

const QByteArray header = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
)";

QByteArray xml(const QByteArray &root)
{
    return header + root + "\n</plist>\n";
}

QByteArray xmlWithValue(const QByteArray &value)
{
    return xml("<dict><key>k</key>" + value + "</dict>");
}

bool isAcceptedAsPropertyList(const QByteArray &bytes)
{
    return PropertyList::read(bytes).isOk();
}

PropertyList read(const QByteArray &bytes)
{
    return PropertyList::read(bytes).value();
}

QByteArray bigEndian(quint64 value, int width)
{
    QByteArray bytes;
    for (int index = width - 1; index >= 0; --index)
        bytes.append(static_cast<char>(value >> (8 * index)));
    return bytes;
}

/// A binary list of the given objects, the first of which is the root. References are one byte wide.
QByteArray binary(const QList<QByteArray> &objects, int referenceWidth = 1)
{
    QByteArray bytes = "bplist00";
    QByteArray offsets;
    for (const QByteArray &object : objects) {
        offsets += bigEndian(static_cast<quint64>(bytes.size()), 4);
        bytes += object;
    }
    const auto table = static_cast<quint64>(bytes.size());
    bytes += offsets + QByteArray(6, '\0') + '\4' + static_cast<char>(referenceWidth);
    bytes += bigEndian(static_cast<quint64>(objects.size()), 8) + bigEndian(0, 8) + bigEndian(table, 8);
    return bytes;
}

/// A dictionary with the key "k" (object 1) and the value in object 2.
QByteArray binaryWithValue(const QList<QByteArray> &valueAndMore)
{
    return binary(QList<QByteArray>{"\xD1\x01\x02", "\x51k"} + valueAndMore);
}

QByteArray nestedXml(int depth)
{
    QByteArray arrays;
    for (int level = 0; level < depth; ++level)
        arrays += "<array>";
    for (int level = 0; level < depth; ++level)
        arrays += "</array>";
    return xmlWithValue(arrays);
}

/// @p depth arrays inside each other below the dictionary.
QByteArray nestedBinary(int depth)
{
    QList<QByteArray> objects = {QByteArray("\xD1\0\1\0\2", 5), "\x51k"};
    for (int level = 0; level < depth - 1; ++level)
        objects.append('\xA1' + bigEndian(static_cast<quint64>(objects.size()) + 1, 2));
    objects.append("\xA0");
    return binary(objects, 2);
}

} // namespace

TEST(PropertyListTest, ReadsEachTypeStrictly)
{
    const PropertyList list = read(xml("<dict>"
                                       "<key>true</key><true/><key>false</key><false/>"
                                       "<key>one</key><integer>1</integer><key>real</key><real>1</real>"
                                       "<key>text</key><string>YES</string><key>data</key><data>AAEC</data>"
                                       "<key>texts</key><array><string>a</string><string>b</string></array>"
                                       "</dict>"));

    EXPECT_EQ(list.boolean(u"true"_qs), true);
    EXPECT_EQ(list.boolean(u"false"_qs), false);
    EXPECT_EQ(list.integer(u"one"_qs), 1);
    EXPECT_EQ(list.real(u"real"_qs), 1.0);
    EXPECT_EQ(list.string(u"text"_qs), u"YES"_qs);
    EXPECT_EQ(list.data(u"data"_qs), QByteArray("\0\1\2", 3));
    EXPECT_EQ(list.stringArray(u"texts"_qs), (QStringList{u"a"_qs, u"b"_qs}));
}

TEST(PropertyListTest, CountsAValueOfAnotherTypeAsAbsent)
{
    const PropertyList list = read(xml("<dict><key>one</key><integer>1</integer><key>real</key><real>1</real>"
                                       "<key>text</key><string>YES</string><key>true</key><true/>"
                                       "<key>mixed</key><array><string>a</string><integer>1</integer></array></dict>"));

    for (const QString &key : {u"one"_qs, u"real"_qs, u"text"_qs, u"mixed"_qs, u"nothing"_qs})
        EXPECT_EQ(list.boolean(key), std::nullopt) << qPrintable(key);
    for (const QString &key : {u"true"_qs, u"real"_qs, u"text"_qs})
        EXPECT_EQ(list.integer(key), std::nullopt) << qPrintable(key);
    EXPECT_EQ(list.string(u"one"_qs), std::nullopt);
    EXPECT_EQ(list.data(u"text"_qs), std::nullopt);
    EXPECT_EQ(list.stringArray(u"mixed"_qs), std::nullopt);
    EXPECT_EQ(list.stringArray(u"text"_qs), std::nullopt);
    EXPECT_EQ(list.type(u"mixed"_qs), PropertyList::Type::Array);
    EXPECT_EQ(list.type(u"nothing"_qs), std::nullopt);
}

TEST(PropertyListTest, WritesEveryTypeInTheCanonicalForm)
{
    PropertyList list;
    list.setBoolean(u"b"_qs, true);
    list.setInteger(u"i"_qs, -5);
    list.setReal(u"r"_qs, 0.1);
    list.setReal(u"r0"_qs, 0.0);
    list.setReal(u"r1"_qs, 1.0);
    list.setString(u"s"_qs, u"<&>\"'é"_qs);
    list.setString(u"e"_qs, QString());
    list.setStringArray(u"a"_qs, {u"x"_qs});
    list.setStringArray(u"a0"_qs, {});
    list.setData(u"d"_qs, QByteArray(70, '\0'));

    EXPECT_EQ(list.written(PropertyList::Form::Xml).toStdString(), header.toStdString() + R"(<dict>
	<key>a</key>
	<array>
		<string>x</string>
	</array>
	<key>a0</key>
	<array/>
	<key>b</key>
	<true/>
	<key>d</key>
	<data>
	AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA
	AAAAAAAAAAAAAAAAAAAAAAAAAA==
	</data>
	<key>e</key>
	<string></string>
	<key>i</key>
	<integer>-5</integer>
	<key>r</key>
	<real>0.10000000000000001</real>
	<key>r0</key>
	<real>0.0</real>
	<key>r1</key>
	<real>1</real>
	<key>s</key>
	<string>&lt;&amp;&gt;"'é</string>
</dict>
</plist>
)");
}

TEST(PropertyListTest, SortsAKeyWithAByteOrderMarkBehindTheOneWithout)
{
    const QByteArray plain = "<key>t</key><integer>1</integer>";
    const QByteArray marked = "<key>\xEF\xBB\xBFt</key><integer>2</integer>";

    const Result<PropertyList> one = PropertyList::read("<plist><dict>" + plain + marked + "</dict></plist>");
    const Result<PropertyList> other = PropertyList::read("<plist><dict>" + marked + plain + "</dict></plist>");

    ASSERT_TRUE(one);
    ASSERT_TRUE(other);
    EXPECT_EQ(one.value().written(PropertyList::Form::Binary), other.value().written(PropertyList::Form::Binary));
    const QByteArray written = one.value().written(PropertyList::Form::Xml);
    EXPECT_LT(written.indexOf("<key>t</key>"), written.indexOf("<key>\xEF\xBB\xBFt</key>"));
}

TEST(PropertyListTest, SortsKeysByCodeUnitAtEveryLevel)
{
    PropertyList list = read(xml("<dict><key>a</key><array><dict><key>2</key><true/><key>10</key><true/></dict></array>"
                                 "<key>B</key><true/><key>2</key><true/><key>10</key><true/></dict>"));

    EXPECT_EQ(list.keys(), (QStringList{u"10"_qs, u"2"_qs, u"B"_qs, u"a"_qs}));
    EXPECT_EQ(list.written(PropertyList::Form::Xml),
              xml("<dict>\n\t<key>10</key>\n\t<true/>\n\t<key>2</key>\n\t<true/>\n\t<key>B</key>\n\t<true/>\n"
                  "\t<key>a</key>\n\t<array>\n\t\t<dict>\n\t\t\t<key>10</key>\n\t\t\t<true/>\n"
                  "\t\t\t<key>2</key>\n\t\t\t<true/>\n\t\t</dict>\n\t</array>\n</dict>"));
}

TEST(PropertyListTest, KeepsWhatItDoesNotKnowWhenOneValueIsChanged)
{
    const QByteArray nested = "<dict><key>d</key><date>2024-01-02T03:04:05Z</date><key>n</key>"
                              "<dict><key>x</key><data>AAEC</data></dict><key>u</key>"
                              "<integer>18446744073709551615</integer><key>z</key><false/></dict>";
    for (const auto form : {PropertyList::Form::Xml, PropertyList::Form::Binary}) {
        PropertyList list = read(read(xml(nested)).written(form));
        list.setBoolean(u"z"_qs, true);

        const PropertyList again = read(list.written(form));

        QByteArray expected = nested;
        expected.replace("<false/>", "<true/>");
        EXPECT_EQ(again.written(PropertyList::Form::Xml), read(xml(expected)).written(PropertyList::Form::Xml));
        EXPECT_EQ(again.type(u"d"_qs), PropertyList::Type::Date);
        EXPECT_EQ(again.type(u"n"_qs), PropertyList::Type::Dictionary);
    }
}

TEST(PropertyListTest, BringsEveryValueBackFromTheBinaryForm)
{
    PropertyList list;
    list.setString(u"ключ"_qs, u"текст 😀"_qs);
    list.setInteger(u"most"_qs, std::numeric_limits<qint64>::max());
    list.setInteger(u"least"_qs, std::numeric_limits<qint64>::min());
    list.setData(u"data"_qs, QByteArray("{\"a\":\0}", 7));
    list.setBoolean(u"no"_qs, false);

    const QByteArray bytes = list.written(PropertyList::Form::Binary);
    const PropertyList again = read(bytes);

    EXPECT_TRUE(bytes.startsWith("bplist00"));
    EXPECT_EQ(again.string(u"ключ"_qs), u"текст 😀"_qs);
    EXPECT_EQ(again.integer(u"most"_qs), std::numeric_limits<qint64>::max());
    EXPECT_EQ(again.integer(u"least"_qs), std::numeric_limits<qint64>::min());
    EXPECT_EQ(again.data(u"data"_qs), QByteArray("{\"a\":\0}", 7));
    EXPECT_EQ(again.boolean(u"no"_qs), false);
}

TEST(PropertyListTest, ReplacesAndRemovesValues)
{
    PropertyList list;
    list.setString(u"a"_qs, u"x"_qs);
    list.setBoolean(u"a"_qs, true);
    list.setBoolean(u"b"_qs, true);
    list.remove(u"b"_qs);
    list.remove(u"nothing"_qs);

    EXPECT_EQ(list.keys(), QStringList{u"a"_qs});
    EXPECT_EQ(list.boolean(u"a"_qs), true);
}

TEST(PropertyListTest, SkipsTheByteOrderMark)
{
    EXPECT_TRUE(isAcceptedAsPropertyList("\xEF\xBB\xBF" + xml("<dict/>")));
}

struct ValueCase
{
    const char *name;
    const char *value;
    bool isAccepted;
};

class XmlValueTest : public testing::TestWithParam<ValueCase>
{
};

TEST_P(XmlValueTest, IsReadOnlyWhenItIsSound)
{
    EXPECT_EQ(isAcceptedAsPropertyList(xmlWithValue(GetParam().value)), GetParam().isAccepted);
}

INSTANTIATE_TEST_SUITE_P(Values, XmlValueTest,
                         testing::Values(ValueCase{"Integer", "<integer> +5 </integer>", true},
                                         ValueCase{"HexadecimalInteger", "<integer>0x1F</integer>", true},
                                         ValueCase{"LargestInteger", "<integer>18446744073709551615</integer>", true},
                                         ValueCase{"LeastInteger", "<integer>-9223372036854775808</integer>", true},
                                         ValueCase{"TooLargeInteger", "<integer>18446744073709551616</integer>", false},
                                         ValueCase{"TooSmallInteger", "<integer>-9223372036854775809</integer>", false},
                                         ValueCase{"EmptyInteger", "<integer></integer>", false},
                                         ValueCase{"WordForInteger", "<integer>one</integer>", false},
                                         ValueCase{"Real", "<real>-1.5e3</real>", true},
                                         ValueCase{"RealNan", "<real>nan</real>", true},
                                         ValueCase{"RealInfinity", "<real>-infinity</real>", true},
                                         ValueCase{"WordForReal", "<real>one</real>", false},
                                         ValueCase{"Date", "<date>2024-01-02T03:04:05Z</date>", true},
                                         ValueCase{"DateWithFraction", "<date>2024-01-02T03:04:05.5Z</date>", false},
                                         ValueCase{"DateWithOffset", "<date>2024-01-02T03:04:05+01:00</date>", false},
                                         ValueCase{"ImpossibleDate", "<date>2024-02-30T03:04:05Z</date>", false},
                                         ValueCase{"Data", "<data>\n\tAAEC\n\tAw==\n</data>", true},
                                         ValueCase{"NoBase64", "<data>!!</data>", false},
                                         ValueCase{"TrueWithText", "<true>x</true>", false},
                                         ValueCase{"Cdata", "<string>a<![CDATA[<b>]]></string>", true},
                                         ValueCase{"CdataInArray", "<array><![CDATA[ ]]></array>", false},
                                         ValueCase{"TextInArray", "<array>x</array>", false},
                                         ValueCase{"Comment", "<array><!-- <array> --></array>", true},
                                         ValueCase{"UnknownElement", "<set/>", false},
                                         ValueCase{"KeyInArray", "<array><key>a</key></array>", false},
                                         ValueCase{"ElementInText", "<string><true/></string>", false},
                                         ValueCase{"Attribute", "<string lang=\"en\">a</string>", false},
                                         ValueCase{"KnownEntity", "<string>&lt;&#233;</string>", true},
                                         ValueCase{"UnknownEntity", "<string>&nbsp;</string>", false},
                                         ValueCase{"ZeroCharacter", "<string>&#0;</string>", false},
                                         ValueCase{"BrokenUtf8", "<string>\xC3</string>", false}),
                         [](const auto &info) { return info.param.name; });

struct ListCase
{
    const char *name;
    QByteArray bytes;
};

class RefusedPropertyListTest : public testing::TestWithParam<ListCase>
{
};

TEST_P(RefusedPropertyListTest, IsMalformed)
{
    const Result<PropertyList> result = PropertyList::read(GetParam().bytes);

    ASSERT_FALSE(result);
    EXPECT_EQ(result.failure().kind, Failure::Kind::Malformed);
}

INSTANTIATE_TEST_SUITE_P(
    Lists, RefusedPropertyListTest,
    testing::Values(
        ListCase{"Nothing", ""}, ListCase{"Rubbish", "rubbish"}, ListCase{"Json", "{\"a\":1}"},
        ListCase{"ArrayAsRoot", xml("<array/>")}, ListCase{"TextAsRoot", xml("<string>a</string>")},
        ListCase{"EmptyRoot", xml("")}, ListCase{"TwoRoots", xml("<dict/><dict/>")},
        ListCase{"ListInList", xml("<plist><dict/></plist>")}, ListCase{"MissingEnd", header + "<dict/>"},
        ListCase{"SomethingBehindTheEnd", xml("<dict/>") + "<dict/>"},
        ListCase{"KeyWithoutValue", xml("<dict><key>a</key></dict>")},
        ListCase{"ValueWithoutKey", xml("<dict><true/></dict>")},
        ListCase{"OwnDefinitions", R"(<!DOCTYPE plist [<!ENTITY a "b">]><plist version="1.0"><dict/></plist>)"},
        ListCase{"TooLarge", xmlWithValue("<string>" + QByteArray(16 * 1024 * 1024, 'a') + "</string>")},
        ListCase{"BinaryHeaderAlone", "bplist00"}, ListCase{"BinaryArrayAsRoot", binary({"\xA0"})},
        ListCase{"BinaryUnknownKind", binaryWithValue({"\x71"})},
        ListCase{"BinaryNull", binaryWithValue({QByteArray("\0", 1)})},
        ListCase{"BinarySet", binaryWithValue({"\xC0"})},
        ListCase{"BinaryTextBeyondTheEnd",
                 binaryWithValue({"\x5E"
                                  "a"})},
        ListCase{"BinaryHugeCount", binaryWithValue({QByteArray("\x5F\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 10)})},
        ListCase{"BinaryHugeDictionary", binaryWithValue({QByteArray("\xDF\x13\x80\0\0\0\0\0\0\0", 10)})},
        ListCase{"BinaryCountOfAnotherKind",
                 binaryWithValue({"\x5F\x51"
                                  "a"})},
        ListCase{"BinaryReferenceToNothing", binaryWithValue({"\xA1\x09"})},
        ListCase{"BinaryArrayHoldingItself", binaryWithValue({"\xA1\x02"})},
        ListCase{"BinaryRootInItself", binaryWithValue({QByteArray("\xA1\0", 2)})},
        ListCase{"BinaryKeyThatIsNoText", binary({"\xD1\x01\x01", "\x09"})},
        ListCase{"BinaryTextThatIsNotAscii", binaryWithValue({"\x51\xFF"})},
        ListCase{"BinaryTextWithAZero",
                 binaryWithValue({QByteArray("\x53"
                                             "a\0b",
                                             4)})},
        ListCase{"BinaryHalfASurrogatePair", binaryWithValue({"\x61\xD8\x3D"})},
        ListCase{"BinaryKeyTwice", binary({"\xD2\x01\x02\x03\x03", "\x51k", QByteArray("\x61\0k", 3), "\x09"})},
        ListCase{"BinaryWideReal", binaryWithValue({QByteArray("\x24", 1) + QByteArray(16, '\0')})}),
    [](const auto &info) { return info.param.name; });

TEST(PropertyListTest, ReadsAHandMadeBinaryList)
{
    EXPECT_EQ(read(binaryWithValue({"\x09"})).boolean(u"k"_qs), true);
    EXPECT_EQ(read(binaryWithValue({"\x53"
                                    "abc"}))
                  .string(u"k"_qs),
              u"abc"_qs);
    EXPECT_EQ(read(binaryWithValue({"\x62\xD8\x3D\xDE\x01"})).string(u"k"_qs), u"😁"_qs);
    EXPECT_EQ(read(binaryWithValue({"\xA2\x03\x03",
                                    "\x51"
                                    "a"}))
                  .stringArray(u"k"_qs),
              (QStringList{u"a"_qs, u"a"_qs}));
}

TEST(PropertyListTest, RefusesTrailersThatPointOutsideTheFile)
{
    const QByteArray sound = binaryWithValue({"\x09"});
    ASSERT_TRUE(isAcceptedAsPropertyList(sound));
    for (qsizetype field : {6, 7, 8, 16, 24}) {
        QByteArray broken = sound;
        broken[sound.size() - 32 + field] = '\x7F';
        EXPECT_FALSE(isAcceptedAsPropertyList(broken)) << field;
    }
}

TEST(PropertyListTest, RefusesEveryBeginningOfAList)
{
    const QByteArray whole = xmlWithValue("<array><string>a</string><integer>1</integer></array>").trimmed();
    const QByteArray packed = read(whole).written(PropertyList::Form::Binary);
    ASSERT_TRUE(isAcceptedAsPropertyList(whole));
    ASSERT_TRUE(isAcceptedAsPropertyList(packed));

    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(isAcceptedAsPropertyList(whole.first(length))) << length;
    for (qsizetype length = 0; length < packed.size(); ++length)
        EXPECT_FALSE(isAcceptedAsPropertyList(packed.first(length))) << length;
}

TEST(PropertyListTest, SurvivesEveryChangedByteOfABinaryList)
{
    const QByteArray sound = read(xmlWithValue("<array><string>a</string><integer>1</integer></array>"))
                                 .written(PropertyList::Form::Binary);
    int accepted = 0;
    for (qsizetype index = 0; index < sound.size(); ++index) {
        for (int value = 0; value < 256; ++value) {
            QByteArray changed = sound;
            changed[index] = static_cast<char>(value);
            const Result<PropertyList> result = PropertyList::read(changed);
            if (result)
                accepted += isAcceptedAsPropertyList(result.value().written(PropertyList::Form::Binary)) ? 1 : 0;
        }
    }
    EXPECT_GT(accepted, 0);
}

TEST(PropertyListTest, NestsFiveHundredAndTwelveContainersAndNoMore)
{
    EXPECT_TRUE(isAcceptedAsPropertyList(nestedXml(511)));
    EXPECT_FALSE(isAcceptedAsPropertyList(nestedXml(512)));
    EXPECT_FALSE(isAcceptedAsPropertyList(nestedXml(200'000)));
    EXPECT_TRUE(isAcceptedAsPropertyList(nestedBinary(511)));
    EXPECT_FALSE(isAcceptedAsPropertyList(nestedBinary(512)));
    EXPECT_FALSE(isAcceptedAsPropertyList(nestedBinary(60'000)));
}

TEST(PropertyListTest, RefusesAListThatDoublesItselfAtEveryLevel)
{
    QList<QByteArray> levels;
    for (char level = 3; level < 60; ++level)
        levels.append(QByteArray("\xA2") + level + level);
    levels.append("\xA0");

    EXPECT_FALSE(isAcceptedAsPropertyList(binaryWithValue(levels)));
}

TEST(PropertyListTest, ReadsTextInUtf16)
{
    const QString text = u"<?xml version=\"1.0\" encoding=\"UTF-16\"?><plist version=\"1.0\"><dict><key>Name</key>"
                         u"<string>\u00dcbung</string></dict></plist>"_qs;
    for (const auto encoding : {QStringEncoder::Utf16LE, QStringEncoder::Utf16BE}) {
        QStringEncoder encoder(encoding, QStringEncoder::Flag::WriteBom);
        const QByteArray bytes = encoder(text);

        const Result<PropertyList> list = PropertyList::read(bytes);

        ASSERT_TRUE(list.isOk());
        EXPECT_EQ(list.value().string(u"Name"_qs), u"\u00dcbung"_qs);
        EXPECT_FALSE(PropertyList::read(bytes.chopped(1)).isOk());
    }
}
