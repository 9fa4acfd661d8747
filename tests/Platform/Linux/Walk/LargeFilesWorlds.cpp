#include "Platform/Linux/Walk/LargeFilesWorlds.h"

#include "Fakes/PretendFileManager.h"
#include "Platform/Linux/Files/FileDescriptor.h"
#include "Platform/Linux/Files/LinuxFileManager.h"
#include "Platform/Linux/Places/LinuxPlaces.h"
#include "Platform/Linux/TemporaryHome.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillmere {

namespace {

QByteArray noVariable(const char *)
{
    return {};
}

class PretendWorld final : public LargeFilesWorld
{
public:
    void allocate(const QByteArray &path, qint64 bytes) override { m_files->addFile(in(path), bytes); }
    void addSparse(const QByteArray &path, qint64 length) override { m_files->addSparseFile(in(path), length, 0); }
    void addLink(const QByteArray &path, const QByteArray &target) override
    {
        m_files->addLink(in(path), FilePath(target));
    }
    void makeUnreadable(const QByteArray &folder) override { m_files->lock(in(folder)); }
    void write(const QByteArray &path, const QByteArray &contents) override
    {
        m_files->addFile(in(path), contents.size(), contents);
    }

    [[nodiscard]] FilePath home() const override { return m_files->homeDirectory(); }
    [[nodiscard]] std::shared_ptr<const FileManager> files() const override { return m_files; }
    [[nodiscard]] std::shared_ptr<const Places> places() const override
    {
        return std::make_shared<LinuxPlaces>(m_files, noVariable);
    }

private:
    [[nodiscard]] FilePath in(const QByteArray &path) const { return home().appending(path); }

    std::shared_ptr<PretendFileManager> m_files = std::make_shared<PretendFileManager>();
};

class RealWorld final : public LargeFilesWorld
{
public:
    RealWorld()
    {
        m_home.addFolder("home");
        m_files = std::make_shared<LinuxFileManager>(m_home.environment());
    }

    void allocate(const QByteArray &path, qint64 bytes) override
    {
        const FilePath file = m_home.addFile("home/" + path, {});
        const FileDescriptor opened(::open(file.bytes().constData(), O_WRONLY | O_CLOEXEC));
        if (::posix_fallocate(opened.number(), 0, bytes) != 0)
            qFatal("There is no room for the test.");
    }
    void addSparse(const QByteArray &path, qint64 length) override
    {
        const FilePath file = m_home.addFile("home/" + path, {});
        if (::truncate(file.bytes().constData(), length) != 0)
            qFatal("The file system of the test knows no file of that length.");
    }
    void addLink(const QByteArray &path, const QByteArray &target) override { m_home.addLink("home/" + path, target); }
    void makeUnreadable(const QByteArray &folder) override
    {
        ::chmod(m_home.path("home/" + folder).bytes().constData(), 0);
    }
    void write(const QByteArray &path, const QByteArray &contents) override
    {
        m_home.addFile("home/" + path, contents);
    }

    [[nodiscard]] FilePath home() const override { return m_home.path("home"); }
    [[nodiscard]] std::shared_ptr<const FileManager> files() const override { return m_files; }
    [[nodiscard]] std::shared_ptr<const Places> places() const override
    {
        return std::make_shared<LinuxPlaces>(m_files, noVariable);
    }

private:
    TemporaryHome m_home;
    std::shared_ptr<LinuxFileManager> m_files;
};

} // namespace

std::unique_ptr<LargeFilesWorld> makePretendWorld()
{
    return std::make_unique<PretendWorld>();
}

std::unique_ptr<LargeFilesWorld> makeRealWorld()
{
    return std::make_unique<RealWorld>();
}

} // namespace Quillmere
