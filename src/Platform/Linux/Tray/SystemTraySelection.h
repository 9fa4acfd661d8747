#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <cstdint>

struct xcb_connection_t;

namespace Quillmere {

/// Whether an X11 screen has a system tray, as the freedesktop System Tray Protocol has it: whoever owns the screen's
/// selection is the tray, and says so to the root window when it comes. On other screens there is none.
class SystemTraySelection final : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    explicit SystemTraySelection(QObject *parent = nullptr);
    ~SystemTraySelection() override;
    Q_DISABLE_COPY_MOVE(SystemTraySelection)

    /// Asks the screen.
    [[nodiscard]] bool isOwned() const;

Q_SIGNALS:
    /// A tray has come.
    void taken();

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

    xcb_connection_t *m_screen = nullptr; ///< Null where there is no X11.
    std::uint32_t m_selection = 0;
    std::uint32_t m_manager = 0; ///< Kind of the message that announces an owner.
};

} // namespace Quillmere
