#include "App/AppDelegate.h"

#include <QEvent>
#include <QGuiApplication>

namespace Quillmere {

namespace {

// The same in every language: windows are told apart by it.
constexpr auto settingsTitle = u"Settings";

} // namespace

AppDelegate::AppDelegate(QObject *parent)
    : QObject(parent)
{
}

AppDelegate::~AppDelegate()
{
    if (s_shared == this)
        s_shared = nullptr;
}

void AppDelegate::applicationDidFinishLaunching()
{
    s_shared = this;
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &AppDelegate::windowDidBecomeKey,
            Qt::UniqueConnection);
}

void AppDelegate::windowDidBecomeKey(QWindow *window)
{
    // A panel that belongs to a window, such as the one for saving, knows itself how it is closed.
    if (!window || window->transientParent() || window->title().isEmpty() || window->title() == settingsTitle)
        return;
    window->installEventFilter(this);
}

void AppDelegate::handleCloseClick()
{
    QWindow *window = QGuiApplication::focusWindow();
    if (!window)
        window = QGuiApplication::topLevelWindows().value(0);
    if (window)
        window->hide();
}

bool AppDelegate::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Close)
        return QObject::eventFilter(watched, event);
    handleCloseClick();
    event->ignore();
    return true;
}

} // namespace Quillmere
