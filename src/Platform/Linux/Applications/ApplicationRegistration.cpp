#include "Platform/Linux/Applications/ApplicationRegistration.h"

#include "Platform/Linux/Applications/DesktopEntry.h"
#include "Platform/Linux/Applications/LinuxBundles.h"
#include "Platform/Linux/Files/FileReading.h"
#include "Platform/Linux/Files/FileReplacement.h"
#include "Platform/Linux/Files/FolderMaking.h"
#include "Platform/Linux/Files/LinkResolution.h"

#include <algorithm>
#include <cerrno>
#include <optional>

#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr qsizetype mostBytesOfPicture = 4 * 1024 * 1024;
constexpr mode_t modeOfFiles = 0644;
constexpr mode_t modeOfFolders = 0755;

/// Shows when the file is written if the folder cannot be made.
Result<void> write(const FilePath &file, const QByteArray &contents)
{
    makeFolders(file.deletingLastPathComponent(), modeOfFolders);
    return replaceFile(file, contents, modeOfFiles);
}

bool isPlainIdentifier(const QByteArray &identifier)
{
    return !identifier.isEmpty() && !identifier.startsWith('.') && !identifier.contains('/')
        && !identifier.contains('\n');
}

/// A program as the value of Exec: quoted as an argument, with no field code in it, and then escaped as a value.
QByteArray quoted(const QByteArray &program)
{
    QByteArray argument;
    for (const char character : program) {
        if (character == '"' || character == '`' || character == '$' || character == '\\')
            argument += '\\';
        argument += character;
        if (character == '%')
            argument += '%';
    }
    argument.replace('\\', "\\\\").replace('\n', "\\n").replace('\r', "\\r").replace('\t', "\\t");
    return '"' + argument + '"';
}

QByteArray entryOf(const QByteArray &identifier, const FilePath &program)
{
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Quillmere\n"
           "GenericName=System Maintenance\n"
           "GenericName[es]=Mantenimiento del sistema\n"
           "GenericName[ru]=Обслуживание системы\n"
           "Comment=Clean up, watch and maintain this computer\n"
           "Comment[es]=Limpie, vigile y mantenga este equipo\n"
           "Comment[ru]=Очистка, наблюдение и обслуживание этого компьютера\n"
           "Exec="
        + quoted(program.bytes())
        + "\n"
          "Icon="
        + identifier
        + "\n"
          "Terminal=false\n"
          "Categories=System;Utility;\n"
          "StartupNotify=true\n"
          "StartupWMClass=quillmere\n";
}

/// What the desktop knows of a bundle.
struct Registration
{
    QByteArray identifier;
    FilePath program;
    FilePath entry;
    FilePath picture;
};

std::optional<Registration> registrationOf(const FilePath &location, const FilePath &entries)
{
    const std::optional<Bundle> bundle = LinuxBundles().open(location);
    const QByteArray identifier = bundle ? bundle->identifier.value_or(QString()).toUtf8() : QByteArray();
    if (!isPlainIdentifier(identifier) || !bundle->executable || entries.isEmpty())
        return std::nullopt;
    const FilePath pictures = entries.deletingLastPathComponent().appending("icons/hicolor/512x512/apps");
    return Registration{identifier, *bundle->executable, entries.appending(identifier + ".desktop"),
                        pictures.appending(identifier + ".png")};
}

bool startsAnother(const QByteArray &identifier, const FilePath &location, const FilePath &entries)
{
    const FilePath bundle = resolveLinks(location).value_or(location);
    // An entry whose program has gone is not among these.
    return std::ranges::any_of(readDesktopEntries({entries}), [&](const DesktopEntry &entry) {
        return entry.id == identifier && !entry.executable.isWithin(bundle);
    });
}

} // namespace

Result<void> registerApplication(const FilePath &location, const FilePath &entries)
{
    const std::optional<Registration> made = registrationOf(location, entries);
    if (!made)
        return Failure{Failure::Kind::Malformed, location, u"Not the bundle of an application"_qs};
    const Result<QByteArray> picture
        = readBounded(location.appending("Contents/Resources/app_logo.png"), mostBytesOfPicture);
    if (picture) {
        if (const Result<void> written = write(made->picture, picture.value()); !written)
            return written;
    }
    return write(made->entry, entryOf(made->identifier, made->program));
}

void unregisterApplication(const FilePath &location, const FilePath &entries)
{
    const std::optional<Registration> made = registrationOf(location, entries);
    if (!made || startsAnother(made->identifier, location, entries))
        return;
    ::unlink(made->entry.bytes().constData());
    ::unlink(made->picture.bytes().constData());
}

} // namespace Quillmere
