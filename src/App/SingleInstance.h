#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>

#include <chrono>
#include <memory>

namespace Quillmere {

/// Keeps one program running for each user and home. A later start hands over to the first and ends.
class SingleInstance final : public QObject
{
    Q_OBJECT

public:
    /// How long a later start waits at most, so that an instance that hangs does not keep the user from a new one for
    /// ever.
    struct Patience
    {
        std::chrono::milliseconds untilItListens{60'000}; ///< For a first one that is still loading.
        std::chrono::milliseconds untilItAnswers{10'000}; ///< For one that has begun to handle events.
    };

    /// @p folder holds the lock and the socket and belongs to the user alone. @p name tells homes apart.
    SingleInstance(const QString &folder, const QString &name, QObject *parent = nullptr);

    /// True for the first start, which hears later ones from the moment it handles events. False when another instance
    /// was there and has been asked to come to the front. Where neither works, the program runs on its own, and where
    /// later starts cannot be heard it says so in one line.
    [[nodiscard]] bool claim(const Patience &patience);
    [[nodiscard]] bool claim() { return claim(Patience()); }
    /// Makes room for a later start: for a program that is about to end, whose process may stay for as long as the
    /// kernel has something to write down for it.
    void retire();

Q_SIGNALS:
    /// Another start asked to see the window. @p activationToken lets a compositor give it the focus; may be empty.
    void activationRequested(const QString &activationToken);

private:
    void listen();
    void answer();

    QString m_socketPath;
    QLockFile m_lock;
    std::unique_ptr<QLocalServer> m_server;
};

} // namespace Quillmere
