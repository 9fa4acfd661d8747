#pragma once

#include "Platform/StatusItem.h"

#include <QMenu>

#include <functional>
#include <vector>

namespace Quillmere {

/// The menu of a status item. GUI thread only.
class StatusItemMenu
{
public:
    /// Lines that stay of the same kind are changed in place: an open menu stays open, and only what differs is told
    /// to the desktop.
    void setEntries(const QList<MenuEntry> &entries);

    [[nodiscard]] QMenu &menu() { return m_menu; }

private:
    struct Line
    {
        QAction *action = nullptr; ///< Of the menu.
        MenuEntry entry;
    };

    [[nodiscard]] bool hasShapeOf(const QList<MenuEntry> &entries) const;
    void rebuild(const QList<MenuEntry> &entries);
    static void update(Line &line, const MenuEntry &entry);
    void trigger(size_t index) const;

    QMenu m_menu;
    std::vector<Line> m_lines;
};

} // namespace Quillmere
