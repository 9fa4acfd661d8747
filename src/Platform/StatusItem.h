#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <memory>

namespace Quillmere {

/// One line of a menu.
struct MenuEntry
{
    enum class Kind { Action, Separator };

    Kind kind = Kind::Action;
    QString title;
    QString symbol; ///< Name of its symbol; one that is not known leaves the line without a picture.
    bool isEnabled = false;
    bool isCheckable = false;
    bool isChecked = false;
    std::function<void()> action; ///< Called on the GUI thread. Null where nothing happens.
};

enum class ImagePosition { ImageOnly = 1, ImageLeft = 2 };

/// The program's place in the desktop's status bar. GUI thread only. On a desktop without such a bar every call is
/// taken and shows nothing; when the bar comes later, it shows what was last set.
class StatusItem
{
public:
    virtual ~StatusItem() = default;

    /// The program's own icon, with @p title beside it or, where there is no room beside it, within it.
    virtual void setTitle(const QString &title, ImagePosition position) = 0;
    virtual void setToolTip(const QString &text) = 0;
    /// Replaces the whole menu, which a click opens.
    virtual void setMenu(const QList<MenuEntry> &entries) = 0;
};

/// The desktop's status bar. GUI thread only.
class StatusBar
{
public:
    virtual ~StatusBar() = default;

    [[nodiscard]] virtual std::unique_ptr<StatusItem> makeStatusItem() = 0;
};

} // namespace Quillmere
