#include "Platform/Linux/Files/LinuxUserDefaults.h"

#include "Platform/Linux/ChildProcess.h"
#include "Utilities/AppSettingsStore.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;
constexpr auto readableByAll
    = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;

const QString key = u"key"_qs;

} // namespace

/// A home of the test's own.
class LinuxUserDefaultsTest : public testing::Test
{
protected:
    [[nodiscard]] FilePath home() const { return FilePath(QFile::encodeName(m_home.path())); }
    [[nodiscard]] FilePath file() const { return LinuxUserDefaults::fileOf(home()); }
    [[nodiscard]] QString fileName() const { return QFile::decodeName(file().bytes()); }
    [[nodiscard]] QString folderName() const { return QFile::decodeName(file().deletingLastPathComponent().bytes()); }
    [[nodiscard]] LinuxUserDefaults opened() const { return LinuxUserDefaults(file()); }

    [[nodiscard]] QByteArray contents() const
    {
        QFile stored(fileName());
        return stored.open(QFile::ReadOnly) ? stored.readAll() : QByteArray();
    }

    void write(const QByteArray &bytes) const
    {
        QDir().mkpath(folderName());
        QFile stored(fileName());
        ASSERT_TRUE(stored.open(QFile::WriteOnly));
        ASSERT_EQ(stored.write(bytes), bytes.size());
    }

    /// Stores a list with one value, written as in XML.
    [[nodiscard]] LinuxUserDefaults openedWith(const QByteArray &value) const
    {
        write(R"(<plist version="1.0"><dict><key>key</key>)" + value + "</dict></plist>");
        return opened();
    }

private:
    QTemporaryDir m_home;
};

TEST_F(LinuxUserDefaultsTest, KnowsNothingInANewHomeAndMakesNoFile)
{
    const LinuxUserDefaults defaults = opened();

    EXPECT_EQ(defaults.data(key), std::nullopt);
    EXPECT_EQ(defaults.string(key), std::nullopt);
    EXPECT_EQ(defaults.stringArray(key), std::nullopt);
    EXPECT_FALSE(defaults.boolean(key));
    EXPECT_FALSE(QDir(folderName()).exists());
}

TEST_F(LinuxUserDefaultsTest, LiesAmongThePreferencesInTheHome)
{
    EXPECT_EQ(LinuxUserDefaults::fileOf(FilePath("/home/ada")),
              FilePath("/home/ada/Library/Preferences/com.veltrane.quillmere.plist"));
}

TEST_F(LinuxUserDefaultsTest, BringsEveryKindOfValueBackAfterARestart)
{
    LinuxUserDefaults defaults = opened();
    defaults.setData(u"data"_qs, QByteArray("{\0}", 3));
    defaults.setString(u"string"_qs, u"ключ"_qs);
    defaults.setBoolean(u"boolean"_qs, true);
    defaults.setStringArray(u"array"_qs, {u"a"_qs, u"b"_qs});
    defaults.setString(u"removed"_qs, u"x"_qs);
    defaults.remove(u"removed"_qs);

    const LinuxUserDefaults again = opened();

    EXPECT_EQ(again.data(u"data"_qs), QByteArray("{\0}", 3));
    EXPECT_EQ(again.string(u"string"_qs), u"ключ"_qs);
    EXPECT_TRUE(again.boolean(u"boolean"_qs));
    EXPECT_EQ(again.stringArray(u"array"_qs), (QStringList{u"a"_qs, u"b"_qs}));
    EXPECT_EQ(again.string(u"removed"_qs), std::nullopt);
}

TEST_F(LinuxUserDefaultsTest, WritesABinaryListThatOnlyTheUserReads)
{
    LinuxUserDefaults defaults = opened();
    defaults.setBoolean(key, true);

    EXPECT_TRUE(contents().startsWith("bplist00"));
    EXPECT_EQ(QFile::permissions(fileName()) & ~(QFile::ReadUser | QFile::WriteUser), ownerOnly);
    EXPECT_EQ(QDir(folderName()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 1);
}

TEST_F(LinuxUserDefaultsTest, KeepsValuesOfOthersWhenItWrites)
{
    LinuxUserDefaults defaults = openedWith("<date>2024-01-02T03:04:05Z</date>"
                                            "<key>other</key><dict><key>a</key><real>1.5</real></dict>");
    defaults.setBoolean(u"mine"_qs, true);

    const PropertyList list = PropertyList::read(contents()).value();

    EXPECT_EQ(list.type(key), PropertyList::Type::Date);
    EXPECT_EQ(list.type(u"other"_qs), PropertyList::Type::Dictionary);
    EXPECT_EQ(list.boolean(u"mine"_qs), true);
}

TEST_F(LinuxUserDefaultsTest, HoldsTheSettingsRecord)
{
    LinuxUserDefaults defaults = opened();
    AppSettings settings;
    settings.theme = AppTheme::Dark;
    settings.excludedPaths = {u"/home/ada/keep"_qs};
    AppSettingsStore::save(settings, defaults);

    EXPECT_EQ(AppSettingsStore::load(opened()), settings);
}

struct ConversionCase
{
    const char *name;
    const char *stored;
    bool boolean;
    std::optional<QString> string;
};

class StoredValueTest : public LinuxUserDefaultsTest, public testing::WithParamInterface<ConversionCase>
{
};

TEST_P(StoredValueTest, IsReadAsABooleanAndAsAText)
{
    const LinuxUserDefaults defaults = openedWith(GetParam().stored);

    EXPECT_EQ(defaults.boolean(key), GetParam().boolean);
    EXPECT_EQ(defaults.string(key), GetParam().string);
}

INSTANTIATE_TEST_SUITE_P(
    Values, StoredValueTest,
    testing::Values(ConversionCase{"True", "<true/>", true, u"1"_qs},
                    ConversionCase{"False", "<false/>", false, u"0"_qs},
                    ConversionCase{"Zero", "<integer>0</integer>", false, u"0"_qs},
                    ConversionCase{"Integer", "<integer>-7</integer>", true, u"-7"_qs},
                    ConversionCase{"ZeroReal", "<real>0.0</real>", false, u"0"_qs},
                    ConversionCase{"Real", "<real>0.5</real>", true, u"0.5"_qs},
                    ConversionCase{"Data", "<data>MQ==</data>", false, std::nullopt},
                    ConversionCase{"Array", "<array><string>1</string></array>", false, std::nullopt},
                    ConversionCase{"Date", "<date>2024-01-02T03:04:05Z</date>", false, std::nullopt},
                    ConversionCase{"Dictionary", "<dict/>", false, std::nullopt},
                    ConversionCase{"Yes", "<string>YES</string>", true, u"YES"_qs},
                    ConversionCase{"One", "<string>1</string>", true, u"1"_qs},
                    ConversionCase{"SmallTrue", "<string>true</string>", true, u"true"_qs},
                    ConversionCase{"SmallYes", "<string>yes</string>", true, u"yes"_qs},
                    ConversionCase{"LetterY", "<string>Y</string>", true, u"Y"_qs},
                    ConversionCase{"LetterT", "<string>t</string>", true, u"t"_qs},
                    ConversionCase{"BlankAndSeven", "<string> 7x</string>", true, u" 7x"_qs},
                    ConversionCase{"SignAndZeros", "<string>-007</string>", true, u"-007"_qs},
                    ConversionCase{"No", "<string>NO</string>", false, u"NO"_qs},
                    ConversionCase{"TextZero", "<string>0</string>", false, u"0"_qs},
                    ConversionCase{"Off", "<string>off</string>", false, u"off"_qs},
                    ConversionCase{"EmptyText", "<string></string>", false, QString()},
                    ConversionCase{"BlanksAlone", "<string>  </string>", false, u"  "_qs},
                    ConversionCase{"ZeroAndLetter", "<string>0x1</string>", false, u"0x1"_qs}),
    [](const auto &info) { return info.param.name; });

TEST_F(LinuxUserDefaultsTest, GivesDataAndArraysOnlyWhereTheyWereStoredAsSuch)
{
    EXPECT_EQ(openedWith("<string>MQ==</string>").data(key), std::nullopt);
    EXPECT_EQ(openedWith("<data>MQ==</data>").data(key), "1");
    EXPECT_EQ(openedWith("<array><string>a</string><integer>1</integer></array>").stringArray(key), std::nullopt);
    EXPECT_EQ(openedWith("<string>a</string>").stringArray(key), std::nullopt);
    EXPECT_EQ(openedWith("<array/>").stringArray(key), QStringList());
}

TEST_F(LinuxUserDefaultsTest, CountsAFileOfAnotherShapeAsEmptyAndReplacesItAtTheNextWriteAlone)
{
    for (const QByteArray &rubbish : {QByteArray("rubbish"), QByteArray(), QByteArray("bplist00"),
                                      QByteArray("<plist version=\"1.0\"><array/></plist>")}) {
        write(rubbish);
        LinuxUserDefaults defaults = opened();
        EXPECT_EQ(defaults.string(key), std::nullopt);
        EXPECT_EQ(contents(), rubbish);

        defaults.setString(key, u"new"_qs);

        EXPECT_EQ(opened().string(key), u"new"_qs);
    }
}

TEST_F(LinuxUserDefaultsTest, IsNotHeldUpByAPipeInPlaceOfTheFile)
{
    QDir().mkpath(folderName());
    ASSERT_EQ(::mkfifo(file().bytes().constData(), 0600), 0);

    LinuxUserDefaults defaults = opened();
    defaults.setString(key, u"new"_qs);

    EXPECT_EQ(opened().string(key), u"new"_qs);
}

TEST_F(LinuxUserDefaultsTest, HoldsValuesInMemoryWhereAFolderStandsInPlaceOfTheFile)
{
    QDir().mkpath(fileName() + u"/inside"_qs);

    LinuxUserDefaults defaults = opened();
    defaults.setString(key, u"new"_qs);

    EXPECT_EQ(defaults.string(key), u"new"_qs);
    EXPECT_TRUE(QDir(fileName() + u"/inside"_qs).exists());
}

TEST_F(LinuxUserDefaultsTest, HoldsValuesInMemoryInAReadOnlyHome)
{
    ASSERT_TRUE(QFile::setPermissions(QFile::decodeName(home().bytes()), readableByAll));

    inUnprivilegedChild({}, [this] {
        LinuxUserDefaults defaults = opened();
        defaults.setString(key, u"new"_qs);
        EXPECT_EQ(defaults.string(key), u"new"_qs);
    });

    EXPECT_FALSE(QDir(folderName()).exists());
    QFile::setPermissions(QFile::decodeName(home().bytes()), readableByAll | QFile::WriteOwner);
}

TEST_F(LinuxUserDefaultsTest, LeavesAFileAloneThatItMayNotRead)
{
    write("<plist version=\"1.0\"><dict/></plist>");
    ASSERT_TRUE(QFile::setPermissions(QFile::decodeName(home().bytes()), readableByAll));
    ASSERT_EQ(::chmod(QFile::encodeName(folderName()).constData(), 0777), 0);
    ASSERT_TRUE(QFile::setPermissions(fileName(), {}));
    const QByteArray before = ::geteuid() == 0 ? contents() : QByteArray();

    inUnprivilegedChild({}, [this] {
        LinuxUserDefaults defaults = opened();
        defaults.setString(key, u"new"_qs);
        EXPECT_EQ(defaults.string(key), u"new"_qs);
    });

    QFile::setPermissions(QFile::decodeName(home().bytes()), readableByAll | QFile::WriteOwner);
    if (::geteuid() != 0)
        QFile::setPermissions(fileName(), ownerOnly);
    EXPECT_EQ(contents(), ::geteuid() == 0 ? before : "<plist version=\"1.0\"><dict/></plist>");
}

TEST_F(LinuxUserDefaultsTest, KeepsTheOldFileAndTheNewValueOnAFullDisk)
{
    QUILLMERE_NEED(whyNoMountNamespace());
    QDir().mkpath(folderName());
    inMountNamespace([this] {
        ASSERT_TRUE(mountTmpfs(file().deletingLastPathComponent(), "size=64k"));
        LinuxUserDefaults defaults = opened();
        defaults.setString(key, u"old"_qs);
        const QByteArray before = contents();
        ASSERT_FALSE(before.isEmpty());

        const QString large(128 * 1024, u'x');
        defaults.setString(key, large);

        EXPECT_EQ(defaults.string(key), large);
        EXPECT_EQ(contents(), before);
        EXPECT_EQ(QDir(folderName()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 1);
        defaults.setString(key, u"newer"_qs);
        EXPECT_EQ(opened().string(key), u"newer"_qs);
    });
}

TEST_F(LinuxUserDefaultsTest, HoldsAnOldOrANewValueWheneverItsWriterIsKilled)
{
    constexpr int rounds = 200;
    constexpr int longestMicroseconds = 8000;
    const auto valueOf = [](int number) { return QString(1 + number % 5000, u'x') + QString::number(number); };
    const auto numberIn = [](const QString &value) { return value.sliced(value.lastIndexOf(u'x') + 1).toInt(); };

    int last = 0;
    for (int round = 0; round < rounds; ++round) {
        const pid_t writer = startChild([&] {
            LinuxUserDefaults defaults = opened();
            for (int number = last + 1;; ++number)
                defaults.setString(key, valueOf(number));
        });
        ::usleep(QRandomGenerator::global()->bounded(1u, static_cast<quint32>(longestMicroseconds)));
        killChild(writer);

        if (last == 0 && !QFile::exists(fileName()))
            continue;
        const Result<PropertyList> stored = PropertyList::read(contents());
        ASSERT_TRUE(stored) << "round " << round;
        const QString value = stored.value().string(key).value_or(QString());
        ASSERT_EQ(value, valueOf(numberIn(value))) << "round " << round;
        ASSERT_GE(numberIn(value), last) << "round " << round;
        last = numberIn(value);
    }
    EXPECT_GT(last, 0);
}
