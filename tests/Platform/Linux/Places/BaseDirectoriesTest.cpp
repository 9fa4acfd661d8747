#include "Platform/Linux/Places/BaseDirectories.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

BaseDirectories directories(const QByteArray &cacheHome)
{
    return BaseDirectories::of(FilePath("/home/ada"), [cacheHome](const char *name) {
        return name == QByteArray("XDG_CACHE_HOME") ? cacheHome : QByteArray();
    });
}

} // namespace

TEST(BaseDirectoriesTest, LieInTheHomeWhenNothingIsSet)
{
    const BaseDirectories folders = directories({});

    EXPECT_EQ(folders.cache, FilePath("/home/ada/.cache"));
    EXPECT_EQ(folders.config, FilePath("/home/ada/.config"));
    EXPECT_EQ(folders.data, FilePath("/home/ada/.local/share"));
    EXPECT_EQ(folders.state, FilePath("/home/ada/.local/state"));
}

TEST(BaseDirectoriesTest, TakeAnAbsoluteVariableAndTidyIt)
{
    EXPECT_EQ(directories("/data//cache/").cache, FilePath("/data/cache"));
    EXPECT_EQ(directories("/data/\xff").cache, FilePath(QByteArray("/data/\xff")));
}

TEST(BaseDirectoriesTest, PassOverARelativeVariable)
{
    EXPECT_EQ(directories("cache").cache, FilePath("/home/ada/.cache"));
    EXPECT_EQ(directories("./cache").cache, FilePath("/home/ada/.cache"));
    EXPECT_EQ(directories("~/cache").cache, FilePath("/home/ada/.cache"));
}

TEST(BaseDirectoriesTest, ReadEachVariableForItsOwnFolder)
{
    const BaseDirectories folders
        = BaseDirectories::of(FilePath("/home/ada"), [](const char *name) { return QByteArray("/of/") + name; });

    EXPECT_EQ(folders.cache, FilePath("/of/XDG_CACHE_HOME"));
    EXPECT_EQ(folders.config, FilePath("/of/XDG_CONFIG_HOME"));
    EXPECT_EQ(folders.data, FilePath("/of/XDG_DATA_HOME"));
    EXPECT_EQ(folders.state, FilePath("/of/XDG_STATE_HOME"));
}

TEST(BaseDirectoriesTest, KnowsTheSystemsFoldersForSettingsWhereNobodyNamesThem)
{
    const auto variable = [](const QByteArray &value) { return [value](const char *) { return value; }; };

    EXPECT_EQ(BaseDirectories::systemConfig(variable({})), QList<FilePath>{FilePath("/etc/xdg")});
    EXPECT_EQ(BaseDirectories::systemConfig(variable("/b/:relative:/a:/b")),
              (QList<FilePath>{FilePath("/b"), FilePath("/a")}));
}

TEST(BaseDirectoriesTest, KnowsTheSystemsFoldersForDataWhereNobodyNamesThem)
{
    const auto valueOf = [](const QByteArray &value) {
        return [value](const char *name) { return name == QByteArray("XDG_DATA_DIRS") ? value : "/another"; };
    };

    EXPECT_EQ(BaseDirectories::systemData(valueOf({})),
              (QList<FilePath>{FilePath("/usr/local/share"), FilePath("/usr/share")}));
    EXPECT_EQ(BaseDirectories::systemData(valueOf("/b/:relative:/a:/b")),
              (QList<FilePath>{FilePath("/b"), FilePath("/a")}));
}
