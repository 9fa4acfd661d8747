#pragma once

#include "Platform/StatusItem.h"

#include <functional>

namespace Quillmere {

/// A status bar that remembers what stands in it.
class PretendStatusBar final : public StatusBar
{
public:
    struct Shown
    {
        QString title;
        ImagePosition position = ImagePosition::ImageOnly;
        QString toolTip;
        QList<MenuEntry> menu;
        int menusSet = 0;
    };

    int items = 0; ///< How many were made.
    std::function<void()> onMake; ///< Called before one is made.
    Shown shown; ///< By the latest.

    [[nodiscard]] std::unique_ptr<StatusItem> makeStatusItem() override;
};

} // namespace Quillmere
