#include "Utilities/AppSettingsStore.h"

#include "Utilities/JsonDocument.h"
#include "Utilities/JsonObjectDecoder.h"
#include "Utilities/JsonWriter.h"

namespace Quillmere {

AppSettings AppSettingsStore::load(const UserDefaults &defaults)
{
    const std::optional<QByteArray> stored = defaults.data(key());
    const Result<JsonDocument> document = stored ? JsonDocument::parse(*stored) : Failure{};
    if (!document)
        return {};

    AppSettings settings;
    JsonObjectDecoder object(document.value().root());
    object.optional("language", settings.language);
    object.optional("theme", settings.theme);
    object.optional("menuBarDisplayMode", settings.menuBarDisplayMode);
    object.optional("safeMode", settings.safeMode);
    object.optional("advancedMode", settings.advancedMode);
    object.optional("alwaysConfirmDangerous", settings.alwaysConfirmDangerous);
    object.optional("excludedPaths", settings.excludedPaths);
    object.optional("excludedApps", settings.excludedApps);
    object.optional("scanExternalDrives", settings.scanExternalDrives);
    object.optional("scanICloudDrive", settings.scanICloudDrive);
    object.optional("showHiddenFiles", settings.showHiddenFiles);
    object.optional("anonymousDiagnostics", settings.anonymousDiagnostics);
    object.optional("keepAwakeEnabled", settings.keepAwakeEnabled);
    return object.failure() ? AppSettings() : settings;
}

void AppSettingsStore::save(const AppSettings &settings, UserDefaults &defaults)
{
    JsonWriter writer;
    writer.beginObject();
    writer.member("language", settings.language);
    writer.member("theme", settings.theme);
    writer.member("menuBarDisplayMode", settings.menuBarDisplayMode);
    writer.member("safeMode", settings.safeMode);
    writer.member("advancedMode", settings.advancedMode);
    writer.member("alwaysConfirmDangerous", settings.alwaysConfirmDangerous);
    writer.member("excludedPaths", settings.excludedPaths);
    writer.member("excludedApps", settings.excludedApps);
    writer.member("scanExternalDrives", settings.scanExternalDrives);
    writer.member("scanICloudDrive", settings.scanICloudDrive);
    writer.member("showHiddenFiles", settings.showHiddenFiles);
    writer.member("anonymousDiagnostics", settings.anonymousDiagnostics);
    writer.member("keepAwakeEnabled", settings.keepAwakeEnabled);
    writer.endObject();
    if (const Result<QByteArray> text = writer.result())
        defaults.setData(key(), text.value());
}

} // namespace Quillmere
