#pragma once

#include "Platform/DesktopAppearance.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QList>
#include <QObject>

#include <optional>
#include <utility>

namespace Quillmere {

/// Asks the desktop portal, and listens to it. The questions are answered later or never. Where the portal has no
/// preference or there is none, the GTK theme of the environment decides; where that names none, a dark GTK theme of
/// the desktop or a dark palette makes the scheme dark. Motion is not reduced unless the portal says so.
class LinuxDesktopAppearance final : public QObject, public DesktopAppearance
{
    Q_OBJECT

public:
    /// @p gtkTheme is the theme's name with its variant behind a colon, such as "Adwaita:dark"; may be empty.
    explicit LinuxDesktopAppearance(const QDBusConnection &bus = QDBusConnection::sessionBus(),
                                    const QByteArray &gtkTheme = qgetenv("GTK_THEME"));

    [[nodiscard]] ColorScheme colorScheme() const override;
    [[nodiscard]] bool prefersReducedMotion() const override { return m_reducedMotion; }
    void observe(std::function<void()> changed) override;
    void awaitAnswers(std::chrono::milliseconds patience) override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
    void takeSetting(const QString &group, const QString &key, const QDBusVariant &value);

private:
    struct Question
    {
        QString group;
        QString key;
        QDBusPendingCallWatcher *call = nullptr;
    };

    void ask(const QString &group, const QString &key);
    void takeAnswers();
    void tellChanges();

    QDBusConnection m_bus;
    QList<Question> m_questions; ///< Those without an answer yet.
    QByteArray m_themeOfEnvironment;
    QByteArray m_themeOfDesktop;
    std::optional<ColorScheme> m_preference; ///< What the portal says itself.
    bool m_reducedMotion = false;
    std::pair<ColorScheme, bool> m_told; ///< Both answers as the observer knows them.
    std::function<void()> m_changed;
};

} // namespace Quillmere
