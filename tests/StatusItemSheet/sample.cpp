#include "Platform/Linux/Tray/LinuxStatusBar.h"

#include <QApplication>

#include <cstdio>

using namespace Quillmere;

namespace {

MenuEntry line(const QString &title, const QString &symbol)
{
    MenuEntry entry;
    entry.title = title;
    entry.symbol = symbol;
    return entry;
}

MenuEntry action(const QString &title, const QString &symbol)
{
    MenuEntry entry = line(title, symbol);
    entry.isEnabled = true;
    entry.action = [title] {
        std::puts(qPrintable(title));
        std::fflush(stdout);
    };
    return entry;
}

QList<MenuEntry> entries()
{
    MenuEntry separator;
    separator.kind = MenuEntry::Kind::Separator;
    MenuEntry keepAwake = action(u"Keep Awake (Prevent Sleep)"_qs, u"bolt.fill"_qs);
    keepAwake.isCheckable = true;
    keepAwake.isChecked = true;
    return {
        line(u"Quillmere"_qs, u"leaf.circle.fill"_qs),
        line(u"CPU 42%   RAM 61%   Download 12 KB/s   Upload 3 KB/s"_qs, u"info.circle"_qs),
        separator,
        line(u"CPU: 42%"_qs, u"cpu"_qs),
        line(u"RAM: 61%"_qs, u"memorychip"_qs),
        line(u"Download: 12 KB/s"_qs, u"arrow.down.circle"_qs),
        line(u"Upload: 3 KB/s"_qs, u"arrow.up.circle"_qs),
        line(u"Total downloaded: 1.2 GB"_qs, u"tray.and.arrow.down"_qs),
        line(u"Total uploaded: 310 MB"_qs, u"tray.and.arrow.up"_qs),
        separator,
        keepAwake,
        separator,
        action(u"Open Dashboard"_qs, u"gauge.with.dots.needle.67percent"_qs),
        action(u"Settings"_qs, u"gearshape"_qs),
        separator,
        action(u"Quit & more"_qs, u"power"_qs),
    };
}

} // namespace

/// `quillmere-status-item-sample [TITLE]` shows a status item with made-up figures, and prints what is clicked.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const std::unique_ptr<StatusItem> item = LinuxStatusBar().makeStatusItem();
    const QString title = QApplication::arguments().value(1);
    item->setTitle(title, title.isEmpty() ? ImagePosition::ImageOnly : ImagePosition::ImageLeft);
    item->setToolTip(u"Quillmere - CPU 42%   RAM 61%"_qs);
    item->setMenu(entries());
    return QApplication::exec();
}
