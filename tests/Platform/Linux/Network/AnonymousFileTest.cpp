#include "Platform/Linux/Network/AnonymousFile.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Quillmere;

TEST(AnonymousFileTest, HoldsWhatWasAppendedInItsOrder)
{
    AnonymousFile file;
    ASSERT_TRUE(file.append("one "));
    ASSERT_TRUE(file.append(""));
    ASSERT_TRUE(file.append("two"));

    QFile opened(file.location().toLocalFile());
    ASSERT_TRUE(opened.open(QIODevice::ReadOnly));
    EXPECT_EQ(opened.readAll(), "one two");
}

TEST(AnonymousFileTest, IsReadFromItsBeginningByEachReader)
{
    AnonymousFile file;
    ASSERT_TRUE(file.append("content"));

    for (int reader = 0; reader < 2; ++reader) {
        QFile opened(file.location().toLocalFile());
        ASSERT_TRUE(opened.open(QIODevice::ReadOnly));
        EXPECT_EQ(opened.read(3), "con");
    }
}

TEST(AnonymousFileTest, StandsInNoFolder)
{
    const AnonymousFile file;

    EXPECT_TRUE(QFile::symLinkTarget(file.location().toLocalFile()).contains(u"memfd:"));
}
