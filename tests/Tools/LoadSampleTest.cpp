#include "Tools/ps/SampleStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

const LoadSample sample = {"a-boot", 123'456'789'000, {{1, {10, 2000, 0.5}}, {4711, {98765, 300, 250.25}}}};

mode_t modeOf(const QString &path)
{
    struct stat status = {};
    EXPECT_EQ(::lstat(qPrintable(path), &status), 0) << qPrintable(path);
    return status.st_mode & 07777;
}

} // namespace

TEST(LoadSampleTest, ReadsWhatItHasWritten)
{
    EXPECT_EQ(LoadSample::read(sample.written()), sample);
    EXPECT_EQ(LoadSample::read(LoadSample{"b", 1, {}}.written()), (LoadSample{"b", 1, {}}));
}

TEST(LoadSampleTest, ReadsNothingOfWhatIsCutAnywhere)
{
    const QByteArray text = sample.written();

    for (qsizetype length = 0; length < text.size(); ++length)
        EXPECT_EQ(LoadSample::read(text.first(length)), std::nullopt) << length;
}

TEST(LoadSampleTest, ReadsNothingOfWhatItWouldNotWrite)
{
    const QByteArray head = "quillmere-ps 1\nboot\n5\n";

    EXPECT_NE(LoadSample::read(head + "1\n1 2 3 4\n"), std::nullopt);
    EXPECT_EQ(LoadSample::read("quillmere-ps 2\nboot\n5\n1\n1 2 3 4\n"), std::nullopt);
    EXPECT_EQ(LoadSample::read(head + "2\n1 2 3 4\n1 2 3 4\n"), std::nullopt);
    EXPECT_EQ(LoadSample::read(head + "2\n1 2 3 4\n"), std::nullopt);
    EXPECT_EQ(LoadSample::read(head + "1\n1 2 3 4\n2 2 3 4\n"), std::nullopt);
    EXPECT_EQ(LoadSample::read(head + "1\n0 2 3 4\n"), std::nullopt);
    EXPECT_EQ(LoadSample::read(head + "1\n99999999999 2 3 4\n"), std::nullopt);
    EXPECT_EQ(LoadSample::read(head + "1\n1 -2 3 4\n"), std::nullopt);
    EXPECT_EQ(LoadSample::read(head + "1\n1 2 3\n"), std::nullopt);
    EXPECT_EQ(LoadSample::read(head + "1\n1 2 nan 4\n"), std::nullopt);
}

TEST(SampleStoreTest, KeepsASampleForThisUserAlone)
{
    const QTemporaryDir runtime;
    const SampleStore store(RuntimeFolder(FilePath(runtime.path().toUtf8())));
    EXPECT_EQ(store.load(), std::nullopt);

    store.keep(sample);

    EXPECT_EQ(store.load(), sample);
    EXPECT_EQ(modeOf(runtime.filePath(u"quillmere"_qs)), 0700u);
    EXPECT_EQ(modeOf(runtime.filePath(u"quillmere/ps.sample"_qs)), 0600u);
    store.keep(LoadSample{"later", 1, {}});
    EXPECT_EQ(store.load(), (LoadSample{"later", 1, {}}));
    EXPECT_EQ(QDir(runtime.filePath(u"quillmere"_qs)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{u"ps.sample"_qs});
}

TEST(SampleStoreTest, KeepsNothingInAFolderThatOthersMayWriteInto)
{
    const QTemporaryDir runtime;
    ASSERT_EQ(::chmod(qPrintable(runtime.path()), 0770), 0);
    const QTemporaryDir elsewhere;

    SampleStore(RuntimeFolder(FilePath(runtime.path().toUtf8()))).keep(sample);
    EXPECT_TRUE(QDir(runtime.path()).isEmpty());

    ASSERT_EQ(::chmod(qPrintable(runtime.path()), 0700), 0);
    ASSERT_EQ(::symlink(qPrintable(elsewhere.path()), qPrintable(runtime.filePath(u"quillmere"_qs))), 0);
    SampleStore(RuntimeFolder(FilePath(runtime.path().toUtf8()))).keep(sample);
    EXPECT_TRUE(QDir(elsewhere.path()).isEmpty());

    SampleStore(RuntimeFolder(FilePath())).keep(sample);
    SampleStore(RuntimeFolder(FilePath("relative"))).keep(sample);
    EXPECT_EQ(SampleStore(RuntimeFolder(FilePath())).load(), std::nullopt);
}

TEST(SampleStoreTest, TrustsNoFileThatOthersMayWriteAndFollowsNoLink)
{
    const QTemporaryDir runtime;
    const SampleStore store(RuntimeFolder(FilePath(runtime.path().toUtf8())));
    store.keep(sample);
    const QString file = runtime.filePath(u"quillmere/ps.sample"_qs);

    ASSERT_EQ(::chmod(qPrintable(file), 0666), 0);
    EXPECT_EQ(store.load(), std::nullopt);
    ASSERT_EQ(::chmod(qPrintable(file), 0600), 0);
    ASSERT_EQ(::rename(qPrintable(file), qPrintable(file + u"2"_qs)), 0);
    ASSERT_EQ(::symlink("ps.sample2", qPrintable(file)), 0);
    EXPECT_EQ(store.load(), std::nullopt);
    store.keep(sample);
    EXPECT_EQ(store.load(), sample);
    EXPECT_FALSE(QFileInfo(file).isSymLink());
}
