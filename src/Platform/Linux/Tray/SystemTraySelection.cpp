#include "Platform/Linux/Tray/SystemTraySelection.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace Quillmere {

namespace {

struct Free
{
    void operator()(void *reply) const { std::free(reply); }
};

xcb_atom_t atom(xcb_connection_t *screen, const QByteArray &name)
{
    const auto question = xcb_intern_atom(screen, false, static_cast<std::uint16_t>(name.size()), name.constData());
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> answer(xcb_intern_atom_reply(screen, question, nullptr));
    return answer ? answer->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

} // namespace

SystemTraySelection::SystemTraySelection(QObject *parent)
    : QObject(parent)
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    m_screen = x11 ? x11->connection() : nullptr;
    // Some platforms offer the interface and have no display behind it.
    if (!m_screen)
        return;
    // Trays are on the first screen of a display; more than one is all but extinct.
    m_selection = atom(m_screen, "_NET_SYSTEM_TRAY_S0");
    m_manager = atom(m_screen, "MANAGER");
    qGuiApp->installNativeEventFilter(this);
}

SystemTraySelection::~SystemTraySelection()
{
    if (m_screen && qGuiApp)
        qGuiApp->removeNativeEventFilter(this);
}

bool SystemTraySelection::isOwned() const
{
    if (!m_screen)
        return false;
    const auto question = xcb_get_selection_owner(m_screen, m_selection);
    const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> answer(
        xcb_get_selection_owner_reply(m_screen, question, nullptr));
    return answer && answer->owner != XCB_WINDOW_NONE;
}

bool SystemTraySelection::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    constexpr int sentFlag = 0x80;
    if ((event->response_type & ~sentFlag) != XCB_CLIENT_MESSAGE)
        return false;
    const auto *announcement = reinterpret_cast<const xcb_client_message_event_t *>(event);
    if (announcement->type == m_manager && announcement->data.data32[1] == m_selection)
        QMetaObject::invokeMethod(this, &SystemTraySelection::taken, Qt::QueuedConnection);
    return false;
}

} // namespace Quillmere
