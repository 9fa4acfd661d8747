#include "Tools/DriverInstallation.h"

#include "Tools/PackageTransaction.h"

#include <QFileInfo>

#include <utility>

namespace Quillmere {

namespace {

const QString packageName = u"ntfs-3g"_qs;

// PackageKit's numbers: of filters, as bits; of what is known of a package; of flags, as bits.
constexpr quint64 forThisArchitecture = 1ULL << 18;
constexpr uint available = 2;
constexpr quint64 onlyTrusted = 1ULL << 1;

QString advice(const Failure &failure)
{
    return failure.kind == Failure::Kind::NotSupported
        ? u"PackageKit does not answer on this machine (%1). Install the package ntfs-3g with its own tools."_qs.arg(
            failure.detail)
        : u"The package ntfs-3g was not installed: %1"_qs.arg(failure.detail);
}

} // namespace

DriverInstallation::DriverInstallation(const QDBusConnection &systemBus, QString driver)
    : m_bus(systemBus)
    , m_driver(std::move(driver))
{
}

ToolEnd DriverInstallation::run() const
{
    if (isInstalled())
        return {0, {}, u"The driver ntfs-3g is installed already: nothing to do here."_qs};
    const Result<QString> package = findPackage();
    if (!package)
        return {1, advice(package.failure())};
    if (const Result<void> installed = install(package.value()); !installed)
        return {1, advice(installed.failure())};
    if (!isInstalled())
        return {1, u"PackageKit has ended without a driver at %1."_qs.arg(m_driver)};
    return {0, {}, u"The driver ntfs-3g was installed."_qs};
}

bool DriverInstallation::isInstalled() const
{
    return QFileInfo(m_driver).isExecutable();
}

Result<QString> DriverInstallation::findPackage() const
{
    const auto packages = PackageTransaction(m_bus).run(u"Resolve"_qs, {forThisArchitecture, QStringList{packageName}});
    if (!packages)
        return packages.failure();
    for (const PackageTransaction::Package &package : packages.value()) {
        if (package.information == available && package.identifier.section(u';', 0, 0) == packageName)
            return package.identifier;
    }
    return Failure{Failure::Kind::NotFound, {}, u"No source of packages on this machine has it."_qs};
}

Result<void> DriverInstallation::install(const QString &package) const
{
    const auto done = PackageTransaction(m_bus).run(u"InstallPackages"_qs, {onlyTrusted, QStringList{package}});
    if (!done)
        return done.failure();
    return {};
}

} // namespace Quillmere
