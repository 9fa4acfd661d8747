#include "Platform/Linux/TemporaryTree.h"
#include "Platform/Linux/Walk/TreeWalk.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <random>

using namespace Quillmere;

namespace {

/// Fills a tree by chance, the same for the same seed.
class RandomFilling
{
public:
    RandomFilling(TemporaryTree &tree, unsigned seed)
        : m_tree(tree)
        , m_chance(seed)
    {
    }

    void fill(const QByteArray &folder, int depth)
    {
        m_tree.addFolder(folder);
        const int entries = upTo(depth == 0 ? 40 : 9);
        for (int i = 0; i < entries; ++i)
            addEntry(folder + '/' + name(i), depth);
    }

private:
    void addEntry(const QByteArray &path, int depth)
    {
        const QByteArray absolute = m_tree.path(path).bytes();
        switch (upTo(9)) {
        case 0:
            return m_tree.addLink(path, "..");
        case 1:
            return m_tree.addLink(path, "nowhere");
        case 2:
            ::mkfifo(absolute.constData(), 0600);
            return;
        case 3: {
            m_tree.addFile(path, upTo(9000));
            ::truncate(absolute.constData(), upTo(1 << 24));
            return;
        }
        case 4:
            m_tree.addFile(path, upTo(9000));
            ::link(absolute.constData(), (absolute + ".again").constData());
            return;
        case 5:
        case 6:
            return m_tree.addFile(path, upTo(20'000));
        default:
            if (depth > 0)
                fill(path, depth - 1);
        }
    }

    QByteArray name(int number)
    {
        QByteArray bytes = QByteArray::number(number);
        for (int i = upTo(12); i > 0; --i) {
            const char byte = static_cast<char>(1 + upTo(254));
            bytes += byte == '/' ? '.' : byte;
        }
        return upTo(5) == 0 ? '.' + bytes : bytes;
    }

    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(m_chance); }

    TemporaryTree &m_tree;
    std::mt19937 m_chance;
};

} // namespace

class TreeWalkPropertyTest : public testing::TestWithParam<unsigned>
{
};

TEST_P(TreeWalkPropertyTest, AgreesWithFindOnATreeMadeByChance)
{
    TemporaryTree tree;
    RandomFilling(tree, GetParam()).fill("random", 5);

    const TreeSize expected = sizeByFind(tree.path());

    for (const int helpers : {0, 3}) {
        WalkPool pool(helpers, helpers);
        EXPECT_EQ(measureTree(tree.path(), {}, pool).valueOr({-1, -1}), expected);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, TreeWalkPropertyTest, testing::Range(1U, 21U));
