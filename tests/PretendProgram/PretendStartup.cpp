#include "PretendProgram/PretendStartup.h"

namespace Quillmere {

namespace {

struct LaunchFile
{
    const char *path;
    const char *label; ///< Empty: it has none.
    bool isDisabled;
};

constexpr LaunchFile launchFiles[] = {
    {"/home/ada/Library/LaunchAgents/org.example.backup.plist", "org.example.backup", false},
    {"/home/ada/Library/LaunchAgents/org.example.photo-sync.plist", "org.example.photo-sync", true},
    {"/home/ada/Library/LaunchAgents/com.apple.notes-helper.plist", "com.apple.notes-helper", false},
    {"/home/ada/Library/LaunchAgents/without a label.plist", "", false},
    {"/Library/LaunchAgents/org.example.office-updater.plist", "org.example.office-updater", false},
    {"/Library/LaunchAgents/org.example.tablet-driver-with-a-name-of-uncommon-length.settings-and-gestures.agent.plist",
     "org.example.tablet-driver-with-a-name-of-uncommon-length.settings-and-gestures.agent", false},
    {"/Library/LaunchAgents/org.example.cloud-folder.plist", "org.example.cloud-folder", true},
    {"/Library/LaunchDaemons/org.example.vpn.plist", "org.example.vpn", false},
    {"/Library/LaunchDaemons/org.example.license-server.plist", "org.example.license-server", false},
    {"/Library/LaunchDaemons/com.apple.time-keeper.plist", "com.apple.time-keeper", false},
};

const StartupEntry entries[] = {
    {FilePath("/home/ada/.config/autostart/messenger.desktop"), u"Messenger"_qs, StartupEntry::Scope::User, true},
    {FilePath("/home/ada/.config/autostart/weather.desktop"), u"Weather"_qs, StartupEntry::Scope::User, false},
    {FilePath("/etc/xdg/autostart/indexer.desktop"), u"File Indexer"_qs, StartupEntry::Scope::AllUsers, true},
    {FilePath("/etc/xdg/autostart/print-applet.desktop"), u"Print Queue"_qs, StartupEntry::Scope::AllUsers, true},
    {FilePath("/usr/lib/systemd/user/music.desktop"), u"music.service"_qs, StartupEntry::Scope::AllUsers, true},
};

} // namespace

void fillPretendStartup(PretendMachine &machine)
{
    for (const LaunchFile &each : launchFiles) {
        const QByteArray label = QByteArray(each.label);
        const QByteArray text = "<plist version=\"1.0\"><dict>"
            + (label.isEmpty() ? QByteArray() : "<key>Label</key><string>" + label + "</string>")
            + "<key>Disabled</key>" + (each.isDisabled ? "<true/>" : "<false/>")
            + "<key>RunAtLoad</key><true/></dict></plist>";
        const FilePath path{QByteArray(each.path)};
        machine.files->addFile(path, text.size(), text);
        if (path.isWithin(FilePath("/Library/LaunchDaemons")))
            machine.files->refuse(path, Failure::Kind::NoPermission);
    }
    for (const StartupEntry &entry : entries)
        machine.startupEntries->add(entry);
}

} // namespace Quillmere
