#include "Platform/Linux/TemporaryTree.h"
#include "Platform/Linux/SpawnedProgram.h"

#include "Platform/Linux/Files/FileDescriptor.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

void check(bool happened, const char *what)
{
    if (!happened)
        qFatal("The tree of the test cannot be made: %s: %s", what, strerror(errno));
}

void writeFile(int folder, const QByteArray &name, qint64 bytes)
{
    const FileDescriptor file(::openat(folder, name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    check(file.isOpen(), "create");
    const QByteArray contents(bytes, 'x');
    check(::write(file.number(), contents.constData(), static_cast<size_t>(bytes)) == bytes, "write");
}

} // namespace

TemporaryTree::TemporaryTree()
{
    check(m_folder.isValid(), "temporary folder");
}

TemporaryTree::~TemporaryTree()
{
    // Qt removes by path, and some of these trees are deeper than a path can say.
    runProgram(u"rm"_qs, {u"-rf"_qs, u"--"_qs, m_folder.path()});
}

FilePath TemporaryTree::path(const QByteArray &relative) const
{
    const FilePath root(QFile::encodeName(m_folder.path()));
    return relative.isEmpty() ? root : root.appending(relative);
}

void TemporaryTree::addFolder(const QByteArray &relative)
{
    QByteArray above;
    for (const QByteArray &name : relative.split('/')) {
        above += name;
        check(::mkdir(path(above).bytes().constData(), 0755) == 0 || errno == EEXIST, "mkdir");
        above += '/';
    }
}

void TemporaryTree::addFile(const QByteArray &relative, qint64 bytes)
{
    if (const qsizetype slash = relative.lastIndexOf('/'); slash > 0)
        addFolder(relative.first(slash));
    writeFile(AT_FDCWD, path(relative).bytes(), bytes);
}

void TemporaryTree::allocate(const QByteArray &relative, qint64 bytes, int mode)
{
    addFile(relative, 0);
    const FileDescriptor file(::open(path(relative).bytes().constData(), O_WRONLY | O_CLOEXEC));
    check(::fallocate(file.number(), mode, 0, bytes) == 0, "fallocate");
}

void TemporaryTree::addLink(const QByteArray &relative, const QByteArray &target)
{
    check(::symlink(target.constData(), path(relative).bytes().constData()) == 0, "symlink");
}

void TemporaryTree::addChain(const QByteArray &name, int levels, qint64 bytesOfEachFile)
{
    FileDescriptor folder(::open(path().bytes().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    for (int level = 0; level < levels; ++level) {
        check(::mkdirat(folder.number(), name.constData(), 0755) == 0, "mkdir");
        folder = FileDescriptor(::openat(folder.number(), name.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        check(folder.isOpen(), "open");
        writeFile(folder.number(), "file", bytesOfEachFile);
    }
}

void TemporaryTree::addBush(const QByteArray &relative, int depth, int width, int files)
{
    addFolder(relative);
    for (int branch = 0; depth > 0 && branch < width; ++branch)
        addBush(relative + "/branch" + QByteArray::number(branch), depth - 1, width, files);
    for (int file = 0; depth == 0 && file < files; ++file)
        addFile(relative + "/leaf" + QByteArray::number(file), 1 + file * 1000);
}

TreeSize sizeByFind(const FilePath &folder)
{
    const QStringList arguments
        = {QFile::decodeName(folder.bytes()), u"-xdev"_qs, u"-type"_qs, u"f"_qs, u"-printf"_qs, u"%b\\n"_qs};
    QByteArray lines;
    check(runProgram(u"find"_qs, arguments, &lines) >= 0, "find");
    TreeSize size;
    for (const QByteArray &blocks : lines.split('\n')) {
        if (!blocks.isEmpty())
            size += {blocks.toLongLong() * 512, 1};
    }
    return size;
}
