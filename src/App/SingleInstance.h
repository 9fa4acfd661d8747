#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>

#include <memory>

namespace Quillmere {

/// Keeps one program running for each user and home. A later start hands over to the first and ends.
class SingleInstance final : public QObject
{
    Q_OBJECT

public:
    /// @p folder holds the lock and the socket and belongs to the user alone. @p name tells homes apart.
    SingleInstance(const QString &folder, const QString &name, QObject *parent = nullptr);

    /// True for the first start, which from now on hears later ones. False when another instance was there and has
    /// been asked to come to the front. Where neither works, the program runs on its own.
    [[nodiscard]] bool claim();

Q_SIGNALS:
    /// Another start asked to see the window. @p activationToken lets a compositor give it the focus; may be empty.
    void activationRequested(const QString &activationToken);

private:
    [[nodiscard]] bool askRunningInstance() const;
    void listen();
    void answer();

    QString m_socketPath;
    QLockFile m_lock;
    std::unique_ptr<QLocalServer> m_server;
};

} // namespace Quillmere
