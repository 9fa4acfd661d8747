#include "Platform/Linux/System/MemoryReturn.h"

#include <QFile>
#include <QMimeDatabase>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

/// Kibibytes of memory that stand for files at the moment: code and constants.
qint64 kibibytesOfFiles()
{
    QFile file(u"/proc/self/status"_qs);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QRegularExpressionMatch match
        = QRegularExpression(u"RssFile:\\s+(\\d+) kB"_qs).match(QString::fromLatin1(file.readAll()));
    return match.hasMatch() ? match.captured(1).toLongLong() : -1;
}

QString nameOfTextFiles()
{
    return QMimeDatabase().mimeTypeForFile(u"notes.txt"_qs, QMimeDatabase::MatchExtension).name();
}

} // namespace

TEST(MemoryReturnTest, HoldsLessOfItsOwnFilesAfterwards)
{
    const QString before = nameOfTextFiles();
    const qint64 held = kibibytesOfFiles();
    ASSERT_GT(held, 0);

    returnUnusedMemory();

    EXPECT_LT(kibibytesOfFiles(), held);
    EXPECT_EQ(nameOfTextFiles(), before);
}
