#include "Fakes/InstalledLocalizer.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Need.h"
#include "Platform/Linux/Places/LinuxPlaces.h"
#include "Platform/Linux/TemporaryHome.h"
#include "ViewModels/SystemDataViewModel.h"

#include <QCoro/QCoroCore>

#include <gtest/gtest.h>

#include <unistd.h>

using namespace Quillmere;

namespace {

constexpr qint64 block = 4096;

/// A home that really stands on the disk of this machine. Of the rows only those below it are taken, so that nothing
/// else is walked.
class SystemDataOnDiskTest : public testing::Test
{
protected:
    void SetUp() override
    {
        QUILLMERE_NEED(files->areOnSameVolume(disk.path(), FilePath("/")) ? QByteArray()
                                                                          : "the temporary folder lies elsewhere");
    }

    void add(const QByteArray &place) const { disk.addFile(place, QByteArray(block, 'x')); }

    [[nodiscard]] QList<qint64> sizes() const
    {
        PlacesData data = PlacesData::builtIn();
        for (const QString &category : {u"Applications"_qs, u"Documents"_qs, u"Developer"_qs, u"Caches"_qs})
            data.lists[category].removeIf([](const PlacesData::ListRow &row) { return row.place.base.isEmpty(); });
        const auto places = std::make_shared<LinuxPlaces>(
            files, [](const char *) { return QByteArray(); }, data);
        SystemDataViewModel model(std::make_shared<ScannerService>(files, places), files, places);
        QCoro::waitFor(model.scanStorage());
        QList<qint64> sizes;
        for (const SystemCategoryItem &item : model.storageItems()->items())
            sizes.append(item.size);
        return sizes;
    }

    InstalledLocalizer localizer;
    TemporaryHome disk;
    std::shared_ptr<LinuxFileManager> files = std::make_shared<LinuxFileManager>(disk.environment());
};

} // namespace

TEST_F(SystemDataOnDiskTest, MeasuresTheFoldersOfALinuxHome)
{
    disk.addFile("home/.config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n");
    for (const char *place :
         {"home/Documents/a", "home/Dokumente/b", "home/Library/Developer/c", "home/.cargo/d", "home/.rustup/e",
          "home/go/pkg/f", "home/Library/Caches/g", "home/.cache/h", "home/.var/app/org.example.App/cache/i",
          "home/snap/example/common/.cache/j", "home/.local/share/flatpak/repo/objects/k"})
        add(place);
    for (const char *place : {"home/go/src/mine", "home/Downloads/film", "home/.var/app/org.example.App/data/d"})
        add(place);

    const QList<qint64> found = sizes();

    ASSERT_EQ(found.size(), 6);
    EXPECT_EQ(found[0], block);
    EXPECT_EQ(found[1], 2 * block);
    EXPECT_EQ(found[2], 4 * block);
    EXPECT_EQ(found[3], 4 * block);
    EXPECT_GT(found[5], 0);
}

TEST_F(SystemDataOnDiskTest, CountsADocumentsFolderOnceThatIsNamedByALink)
{
    disk.addFile("home/.config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Papiere\"\n");
    add("home/Documents/a");
    disk.addLink("home/Papiere", "Documents");

    EXPECT_EQ(sizes().value(1), block);
}

TEST_F(SystemDataOnDiskTest, CountsTheFilesOfAFlatpakOnceThoughTheyAreLinkedIntoItsFolders)
{
    add("home/.local/share/flatpak/repo/objects/k");
    disk.addFolder("home/.local/share/flatpak/app/org.example.App/files");
    ASSERT_EQ(::link(disk.path("home/.local/share/flatpak/repo/objects/k").bytes().constData(),
                     disk.path("home/.local/share/flatpak/app/org.example.App/files/k").bytes().constData()),
              0);

    EXPECT_EQ(sizes().value(0), block);
}

TEST_F(SystemDataOnDiskTest, TellsOtherFileSystemsFromTheOneOfTheStart)
{
    EXPECT_TRUE(files->areOnSameVolume(FilePath("/"), FilePath("/")));
    EXPECT_FALSE(files->areOnSameVolume(FilePath("/proc"), FilePath("/")));
    EXPECT_FALSE(files->areOnSameVolume(disk.path("missing"), FilePath("/")));
    disk.addLink("home/.cache", "/proc/self");
    EXPECT_FALSE(files->areOnSameVolume(disk.path("home/.cache"), FilePath("/")));
    EXPECT_EQ(sizes().value(3), 0);
}
