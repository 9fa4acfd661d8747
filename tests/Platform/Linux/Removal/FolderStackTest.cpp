#include "Platform/Linux/Removal/FolderStack.h"
#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>

using namespace Quillmere;

namespace {

constexpr int levels = 100;

class FolderStackTest : public testing::Test
{
protected:
    void SetUp() override
    {
        home.addFolder(QByteArray("down/").repeated(levels));
        bottom = openAt(AT_FDCWD, home.path().bytes(), O_RDONLY | O_DIRECTORY);
    }

    static void descend(FolderStack &stack)
    {
        for (int level = 0; level < levels; ++level)
            stack.enter(openAt(stack.current(), "down", O_RDONLY | O_DIRECTORY));
    }

    static FileIdentity identityOf(int descriptor)
    {
        struct stat status = {};
        ::fstat(descriptor, &status);
        return FileIdentity::of(status);
    }

    TemporaryHome home;
    FileDescriptor bottom;
};

} // namespace

TEST_F(FolderStackTest, ComesBackThroughTheSameFoldersAlsoWhereTheyWereClosedMeanwhile)
{
    FolderStack stack(bottom.number());
    std::vector<FileIdentity> passed = {identityOf(stack.current())};
    for (int level = 0; level < levels; ++level) {
        stack.enter(openAt(stack.current(), "down", O_RDONLY | O_DIRECTORY));
        passed.push_back(identityOf(stack.current()));
    }

    for (int level = levels; level > 0; --level) {
        ASSERT_EQ(identityOf(stack.current()), passed[static_cast<size_t>(level)]);
        ASSERT_EQ(stack.leave(), 0);
    }
    EXPECT_EQ(stack.current(), bottom.number());
    EXPECT_EQ(stack.depth(), 0u);
}

TEST_F(FolderStackTest, NoticesThatTheWayUpLeadsElsewhere)
{
    FolderStack stack(bottom.number());
    descend(stack);
    const QByteArray moved = home.path(QByteArray("/down").repeated(10)).bytes();
    ASSERT_EQ(::rename(moved.constData(), home.path("elsewhere").bytes().constData()), 0);

    int error = 0;
    while (error == 0 && stack.depth() > 0)
        error = stack.leave();

    EXPECT_EQ(error, ESTALE);
    EXPECT_EQ(stack.depth(), 9u);
}
