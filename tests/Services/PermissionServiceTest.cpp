#include "Services/PermissionService.h"
#include "Fakes/PretendMachine.h"

#include <gmock/gmock.h>

using namespace Quillmere;

namespace {

class PermissionServiceTest : public testing::Test
{
protected:
    [[nodiscard]] bool hasAccess() const { return PermissionService::hasFullDiskAccess(*machine.files); }

    PretendMachine machine;
    const FilePath bookmarks = FilePath("/home/ada/Library/Safari/Bookmarks.plist");
    const FilePath permissions = FilePath("/Library/Application Support/com.apple.TCC/TCC.db");
};

} // namespace

TEST_F(PermissionServiceTest, ReadsAsGrantedWithReadableBookmarks)
{
    machine.files->addFile(bookmarks, 1);

    EXPECT_TRUE(hasAccess());
}

TEST_F(PermissionServiceTest, ReadsAsGrantedWithoutBookmarksAndAReadableRecordOfPermissions)
{
    machine.files->addFile(permissions, 1);

    EXPECT_TRUE(hasAccess());
}

TEST_F(PermissionServiceTest, ReadsAsNotGrantedWithBothAbsent)
{
    EXPECT_FALSE(hasAccess());
}

TEST_F(PermissionServiceTest, ReadsAsNotGrantedWithUnreadableBookmarksAndAReadableRecordOfPermissions)
{
    machine.files->addFile(bookmarks, 1);
    machine.files->lock(bookmarks);
    machine.files->addFile(permissions, 1);

    EXPECT_FALSE(hasAccess());
}

TEST_F(PermissionServiceTest, ReadsAsNotGrantedWithAnUnreadableRecordOfPermissions)
{
    machine.files->addFile(permissions, 1);
    machine.files->lock(permissions);

    EXPECT_FALSE(hasAccess());
}

TEST_F(PermissionServiceTest, OpensTheSystemsSettingsWhereAccessIsGranted)
{
    PermissionService::openFullDiskAccessSettings(*machine.workspace);

    EXPECT_THAT(
        machine.workspace->opened(),
        testing::ElementsAre(QUrl(u"x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"_qs)));
}
