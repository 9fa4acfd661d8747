#include "Utilities/InstallerTerms.h"

#include "Utilities/Diagnostics.h"

#include <QFile>

namespace Quillmere {

namespace {

/// The text is part of the program, so one that cannot be read is a fault of the build, not of the machine.
QByteArray conditions()
{
    QFile file(u":/texts/conditions.md"_qs);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("The conditions are missing from the program.");
    return file.readAll();
}

} // namespace

InstallerTerms::InstallerTerms(std::shared_ptr<const FileManager> files)
    : m_files(std::move(files))
{
}

std::optional<FilePath> InstallerTerms::writeFinalInstallationFile() const
{
    const FilePath support = m_files->applicationSupportDirectory();
    if (support.isEmpty())
        return std::nullopt;
    const FilePath folder = support.appending("Quillmere");
    const FilePath file = folder.appending("FINAL_INSTALLATION_CONDITIONS_RULES_DISCLAIMER.md");
    Result<void> written = m_files->createDirectory(folder, Intermediates::Create);
    if (written)
        written = m_files->writeFile(file, conditions(), WriteMode::Atomic);
    if (written)
        return file;
    printDiagnostic(u"Failed to write final installation file: "_qs, written.failure());
    return std::nullopt;
}

} // namespace Quillmere
