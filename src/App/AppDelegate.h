#pragma once

#include <QObject>
#include <QWindow>

namespace Quillmere {

/// Decides what closing a window does: the main window is only hidden and the program runs on; the Settings window
/// and windows without a title close in the ordinary way. GUI thread only.
class AppDelegate final : public QObject
{
    Q_OBJECT

public:
    explicit AppDelegate(QObject *parent = nullptr);
    ~AppDelegate() override;

    /// Null until applicationDidFinishLaunching().
    [[nodiscard]] static AppDelegate *shared() { return s_shared; }

    /// From now on every window that becomes the key window is looked at.
    void applicationDidFinishLaunching();
    /// Takes over the closing of @p window, unless it has no title, is the one titled "Settings" or belongs to another
    /// window. Null is ignored.
    void windowDidBecomeKey(QWindow *window);
    /// Hides the key window, else the first of all windows. Does nothing without any.
    void handleCloseClick();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    inline static AppDelegate *s_shared = nullptr;
};

} // namespace Quillmere
