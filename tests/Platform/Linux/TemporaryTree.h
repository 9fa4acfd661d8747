#pragma once

#include "Platform/FileManager.h"

#include <QTemporaryDir>

/// A folder on the real disk that a test fills, of any depth, and that goes with the test.
class TemporaryTree
{
public:
    TemporaryTree();
    ~TemporaryTree();
    Q_DISABLE_COPY_MOVE(TemporaryTree)

    [[nodiscard]] Quillmere::FilePath path(const QByteArray &relative = {}) const;

    /// Missing folders above are made.
    void addFolder(const QByteArray &relative);
    void addFile(const QByteArray &relative, qint64 bytes = 1);
    /// A file that really takes up @p bytes, without any being written. @p mode as for fallocate(2).
    void allocate(const QByteArray &relative, qint64 bytes, int mode = 0);
    void addLink(const QByteArray &relative, const QByteArray &target);
    /// @p levels folders named @p name, each in the one before, with a file beside each but the first.
    void addChain(const QByteArray &name, int levels, qint64 bytesOfEachFile);
    /// Folders below folders, @p width in each, and @p files files in each of the deepest.
    void addBush(const QByteArray &relative, int depth, int width, int files);

private:
    QTemporaryDir m_folder;
};

/// The same measure taken by find(1), mounted file systems left out.
[[nodiscard]] Quillmere::TreeSize sizeByFind(const Quillmere::FilePath &folder);
