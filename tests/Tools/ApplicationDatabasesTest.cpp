#include "Tools/ApplicationDatabases.h"

#include "Platform/Linux/Need.h"
#include "Tools/PretendPrograms.h"

#include <QDir>

#include <unistd.h>

using namespace Quillmere;

namespace {

const QStringList words
    = {u"-kill"_qs, u"-r"_qs, u"-domain"_qs, u"local"_qs, u"-domain"_qs, u"system"_qs, u"-domain"_qs, u"user"_qs};

class ApplicationDatabasesTest : public testing::Test
{
protected:
    [[nodiscard]] ToolEnd rebuild(ProgramFolders folders) const
    {
        return runLsregister(words,
                             ApplicationDatabases(std::move(folders), {location(u"user"_qs), location(u"system"_qs)}));
    }
    [[nodiscard]] ToolEnd rebuild() const { return rebuild(programs.folders()); }
    void addAll() const
    {
        for (const char16_t *name : {u"update-desktop-database", u"update-mime-database", u"kbuildsycoca5"})
            programs.add(QString::fromUtf16(name));
    }
    void make(const QString &folder) const { ASSERT_TRUE(QDir().mkpath(data.filePath(folder))); }
    [[nodiscard]] FilePath location(const QString &name) const
    {
        return FilePath(QFile::encodeName(data.filePath(name)));
    }
    [[nodiscard]] QString path(const QString &name) const { return data.filePath(name); }

    QTemporaryDir data;
    PretendPrograms programs;
};

} // namespace

TEST_F(ApplicationDatabasesTest, AreNothingToDoWhereThereIsNone)
{
    const ToolEnd nothing
        = {69, u"This machine keeps no database of applications for this user: nothing to do here."_qs};

    EXPECT_EQ(rebuild(), nothing);
    make(u"user/applications"_qs);
    EXPECT_EQ(rebuild(), nothing);
}

TEST_F(ApplicationDatabasesTest, RebuildsEachThatIsHereInItsFolder)
{
    addAll();
    make(u"user/applications"_qs);
    make(u"user/mime/packages"_qs);
    make(u"system/mime"_qs);

    EXPECT_EQ(
        rebuild(),
        (ToolEnd{
            0,
            {},
            u"The database of applications in %1 was rebuilt.\nThe database of file types in %2 was rebuilt.\n"
            "The service cache of Plasma was rebuilt."_qs.arg(path(u"user/applications"_qs), path(u"user/mime"_qs))}));
    EXPECT_EQ(QString::fromUtf8(programs.calls()),
              u"update-desktop-database %1\nupdate-mime-database %2\nkbuildsycoca5 --noincremental\n"_qs.arg(
                  path(u"user/applications"_qs), path(u"user/mime"_qs)));
}

TEST_F(ApplicationDatabasesTest, SaysWhichFailed)
{
    programs.add(u"update-desktop-database"_qs, u"echo broken >&2; exit 1"_qs);
    make(u"user/applications"_qs);

    EXPECT_EQ(
        rebuild(),
        (ToolEnd{1,
                 u"The database of applications in %1 was not rebuilt: broken"_qs.arg(path(u"user/applications"_qs))}));
}

TEST_F(ApplicationDatabasesTest, NamesAFolderAsItIsCalled)
{
    programs.add(u"update-desktop-database"_qs, u"echo broken >&2; exit 1"_qs);
    make(u"a %1 b/applications"_qs);

    const ApplicationDatabases databases(programs.folders(), {location(u"a %1 b"_qs)});

    EXPECT_EQ(runLsregister(words, databases).message,
              u"The database of applications in "_qs + path(u"a %1 b/applications"_qs)
                  + u" was not rebuilt: broken"_qs);
}

TEST_F(ApplicationDatabasesTest, RebuildsTheRealOnes)
{
    const ProgramFolders system = ProgramFolders::ofSystem();
    QUILLMERE_NEED(system.find({u"update-desktop-database"_qs}).isEmpty() ? "desktop-file-utils is not installed" : "");
    QUILLMERE_NEED(system.find({u"update-mime-database"_qs}).isEmpty() ? "shared-mime-info is not installed" : "");
    make(u"user/applications"_qs);
    make(u"user/mime/packages"_qs);
    QFile entry(path(u"user/applications/a.desktop"_qs));
    ASSERT_TRUE(entry.open(QFile::WriteOnly));
    entry.write("[Desktop Entry]\nType=Application\nName=A\nExec=a %f\nMimeType=text/x-quillmere;\n");
    entry.close();
    QFile types(path(u"user/mime/packages/a.xml"_qs));
    ASSERT_TRUE(types.open(QFile::WriteOnly));
    types.write("<?xml version=\"1.0\"?>\n<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">"
                "<mime-type type=\"text/x-quillmere\"><glob pattern=\"*.quillmere\"/></mime-type></mime-info>\n");
    types.close();

    const ToolEnd end = rebuild(system);

    EXPECT_EQ(end.status, 0) << qPrintable(end.message);
    QFile cache(path(u"user/applications/mimeinfo.cache"_qs));
    ASSERT_TRUE(cache.open(QFile::ReadOnly));
    EXPECT_TRUE(cache.readAll().contains("text/x-quillmere=a.desktop;"));
    QFile globs(path(u"user/mime/globs2"_qs));
    ASSERT_TRUE(globs.open(QFile::ReadOnly));
    EXPECT_TRUE(globs.readAll().contains("text/x-quillmere:*.quillmere"));
}

TEST_F(ApplicationDatabasesTest, TakesTheseWordsAlone)
{
    addAll();
    make(u"user/applications"_qs);
    const ApplicationDatabases databases(programs.folders(), {location(u"user"_qs)});

    for (const QStringList &other :
         QList<QStringList>{{}, words.sliced(1), words + QStringList{u"-dump"_qs}, {u"-f"_qs}})
        EXPECT_EQ(runLsregister(other, databases).status, 64);
    EXPECT_EQ(programs.calls(), "");
}
