#include "Models/FileItem.h"

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;

namespace {

struct Row
{
    const char *name;
    FileType type;
    QStringList extensions;
    QString icon;
    FileCategory category;
};

class FileTypeTest : public testing::TestWithParam<Row>
{
};

} // namespace

TEST_P(FileTypeTest, IsTakenFromItsExtensionsInAnyCaseAndHasItsIconAndCategory)
{
    const Row &row = GetParam();

    for (const QString &extension : row.extensions) {
        EXPECT_EQ(fileTypeFromExtension(extension), row.type) << qPrintable(extension);
        EXPECT_EQ(fileTypeFromExtension(extension.toUpper()), row.type) << qPrintable(extension);
    }
    EXPECT_EQ(icon(row.type), row.icon);
    EXPECT_EQ(categoryOf(row.type), row.category);
    EXPECT_EQ(rawValue(row.type).compare(QString::fromLatin1(row.name), Qt::CaseInsensitive), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Types, FileTypeTest,
    testing::Values(
        Row{"File", FileType::File, {}, u"doc"_qs, FileCategory::Files},
        Row{"Video", FileType::Video, {u"mp4"_qs, u"mov"_qs, u"mkv"_qs, u"avi"_qs}, u"film"_qs, FileCategory::Media},
        Row{"Image",
            FileType::Image,
            {u"jpg"_qs, u"jpeg"_qs, u"png"_qs, u"gif"_qs, u"heic"_qs},
            u"photo"_qs,
            FileCategory::Media},
        Row{"Audio",
            FileType::Audio,
            {u"mp3"_qs, u"wav"_qs, u"aac"_qs, u"m4a"_qs, u"flac"_qs},
            u"waveform"_qs,
            FileCategory::Media},
        Row{"Archive",
            FileType::Archive,
            {u"zip"_qs, u"rar"_qs, u"7z"_qs, u"tar"_qs, u"gz"_qs},
            u"doc.zipper"_qs,
            FileCategory::Archives},
        Row{"DiskImage", FileType::DiskImage, {u"dmg"_qs, u"iso"_qs}, u"externaldrive"_qs, FileCategory::DiskImages},
        Row{"Installer", FileType::Installer, {u"pkg"_qs}, u"shippingbox"_qs, FileCategory::Installers},
        Row{"Application", FileType::Application, {u"app"_qs}, u"app"_qs, FileCategory::Applications},
        Row{"Document",
            FileType::Document,
            {u"pdf"_qs, u"doc"_qs, u"docx"_qs, u"pages"_qs, u"txt"_qs, u"rtf"_qs},
            u"doc.text"_qs,
            FileCategory::Files},
        Row{"Other",
            FileType::Other,
            {QString(), u"img"_qs, u"deb"_qs, u"mp"_qs, u"mp4 mov"_qs, u" "_qs, u" mp4"_qs, u"файл"_qs},
            u"doc"_qs,
            FileCategory::Files}),
    [](const auto &info) { return info.param.name; });

TEST(FileCategoryTest, OffersTheFirstSevenOfNineUnderTheirWords)
{
    QStringList words;
    for (const FileCategory category : allCases<FileCategory>())
        words.append(rawValue(category) + u" "_qs + labelKey(category));

    EXPECT_EQ(offeredFileCategories, 7);
    EXPECT_THAT(words,
                ElementsAre(u"all largeFiles.filter.allFiles"_qs, u"files largeFiles.filter.documents"_qs,
                            u"media largeFiles.filter.media"_qs, u"applications largeFiles.filter.applications"_qs,
                            u"archives largeFiles.filter.archives"_qs, u"installers largeFiles.filter.installers"_qs,
                            u"diskImages largeFiles.filter.diskImages"_qs, u"developer largeFiles.filter.developer"_qs,
                            u"oldFiles largeFiles.filter.old"_qs));
}

TEST(FileItemTest, IsOfMediumRiskNeitherInACloudNorAnApplicationWhenItIsFound)
{
    const FileItem one;
    const FileItem two;

    EXPECT_EQ(one.riskLevel, RiskLevel::Medium);
    EXPECT_FALSE(one.isInCloud);
    EXPECT_FALSE(one.isApplication);
    EXPECT_NE(one.id, two.id);
}
