#include "Tools/FilterPolicy.h"

#include "Platform/Linux/Filter/FilterPolicyRecord.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include <gtest/gtest.h>

#include <random>

#include <sys/stat.h>

using namespace Quillmere;

namespace {

const QByteArray sound = R"({"blockedBundleIdentifiers":["org.example.One"],"description":"Traffic",)"
                         R"("ecoAllowedBundleIdentifiers":[],"ecoTrafficEnabled":true,"enabled":true,)"
                         R"("filterSockets":true,"identifier":"com.veltrane.quillmere.filter"})"
                         "\n";

class FilterPolicyTest : public testing::Test
{
protected:
    [[nodiscard]] ToolEnd save(const QByteArray &input, const QStringList &arguments = {}) const
    {
        QTemporaryFile file;
        EXPECT_TRUE(file.open());
        file.write(input);
        file.flush();
        file.seek(0);
        return FilterPolicy(FilePath(QFile::encodeName(place())), file.handle()).run(arguments);
    }
    [[nodiscard]] QString place() const { return folder.filePath(u"quillmere/policy.json"_qs); }
    [[nodiscard]] QByteArray saved() const
    {
        QFile file(place());
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }
    [[nodiscard]] mode_t modeOf(const QString &path) const
    {
        struct stat status = {};
        EXPECT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
        return status.st_mode & 07777;
    }

    QTemporaryDir folder;
};

} // namespace

TEST_F(FilterPolicyTest, IsSavedWhereEverybodyReadsAndNobodyElseWrites)
{
    const mode_t before = ::umask(0);
    EXPECT_EQ(save(sound), ToolEnd());
    ::umask(before);

    EXPECT_EQ(saved(), sound);
    EXPECT_EQ(modeOf(place()), 0644U);
    EXPECT_EQ(modeOf(folder.filePath(u"quillmere"_qs)), 0755U);
    EXPECT_EQ(QDir(folder.filePath(u"quillmere"_qs)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{u"policy.json"_qs});
}

TEST_F(FilterPolicyTest, TakesThePlaceOfTheOneBefore)
{
    ASSERT_EQ(save(sound), ToolEnd());
    const QByteArray other = QByteArray(sound).replace("org.example.One", "org.example.Two");

    EXPECT_EQ(save(other), ToolEnd());
    EXPECT_EQ(saved(), other);
}

TEST_F(FilterPolicyTest, IsWrittenAnewSoThatNothingElseComesIntoTheFile)
{
    EXPECT_EQ(save("   \n" + QByteArray(sound).replace(",", " ,\n")), ToolEnd());
    EXPECT_EQ(saved(), sound);
}

TEST_F(FilterPolicyTest, ChangesNothingForWhatIsNoRecord)
{
    ASSERT_EQ(save(sound), ToolEnd());
    const QByteArray long64 = QByteArray(sound).replace("Traffic", QByteArray(FilterPolicy::mostBytes, 'x'));
    for (const QByteArray &input :
         {QByteArray(), QByteArray("{}"), QByteArray("[]"), sound.left(40), sound + sound, long64,
          QByteArray(sound).replace("true", "1"), QByteArray(sound).replace("[]", "[1]"),
          QByteArray(sound).replace("\"enabled\"", "\"more\":1,\"enabled\""), QByteArray(1 << 20, '\0')}) {
        const ToolEnd end = save(input);
        EXPECT_EQ(end.status, 1);
        EXPECT_TRUE(end.message.startsWith(u"The rules of the filter were not saved: "_qs));
        EXPECT_EQ(saved(), sound);
    }
    EXPECT_EQ(save(sound, {u"now"_qs}).status, ToolEnd::wrongUse);
}

TEST_F(FilterPolicyTest, IsSavedNeitherThroughALinkNorWhereOthersMayWrite)
{
    const QString target = folder.filePath(u"target"_qs);
    ASSERT_TRUE(QDir().mkpath(target));
    ASSERT_TRUE(QFile::link(target, folder.filePath(u"quillmere"_qs)));
    EXPECT_EQ(save(sound).status, 1);
    EXPECT_TRUE(QDir(target).isEmpty());

    ASSERT_TRUE(QFile::remove(folder.filePath(u"quillmere"_qs)));
    ASSERT_TRUE(QDir().mkpath(folder.filePath(u"quillmere"_qs)));
    ASSERT_EQ(::chmod(QFile::encodeName(folder.filePath(u"quillmere"_qs)).constData(), 0777), 0);
    EXPECT_EQ(save(sound).status, 1);
    EXPECT_EQ(saved(), QByteArray());

    // A link in the place of the file goes, and what it leads to stays.
    ASSERT_EQ(::chmod(QFile::encodeName(folder.filePath(u"quillmere"_qs)).constData(), 0755), 0);
    QFile other(target + u"/other"_qs);
    ASSERT_TRUE(other.open(QFile::WriteOnly));
    ASSERT_TRUE(QFile::link(other.fileName(), place()));
    EXPECT_EQ(save(sound), ToolEnd());
    EXPECT_EQ(other.size(), 0);
    EXPECT_FALSE(QFileInfo(place()).isSymLink());
}

TEST_F(FilterPolicyTest, SurvivesAThousandRandomInputs)
{
    ASSERT_EQ(save(sound), ToolEnd());
    std::mt19937 chance(20261121);
    int refused = 0;
    for (int call = 0; call < 1000; ++call) {
        QByteArray input = sound;
        for (auto change = 1 + chance() % 6; change > 0; --change) {
            const auto at = static_cast<qsizetype>(chance() % static_cast<unsigned>(input.size()));
            if (chance() % 2 == 0)
                input[at] = static_cast<char>(chance());
            else
                input.remove(at, static_cast<qsizetype>(chance() % 8));
        }
        const ToolEnd end = save(input);
        ASSERT_TRUE(end.status == 0 || end.status == 1);
        refused += end.status;
        // Whatever came, what stands there is a whole record.
        ASSERT_TRUE(readFilterPolicyRecord(saved())) << input.constData();
    }
    EXPECT_GT(refused, 500);
}
