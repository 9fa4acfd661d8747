#pragma once

#include "Platform/Linux/PrivateBus.h"

#include <QDBusMessage>

#include <functional>

namespace Quillmere {

/// A service of dbusmock on a private bus, until it goes.
class MockedService
{
public:
    /// logind, which gives descriptors and lists who has one.
    [[nodiscard]] static std::unique_ptr<MockedService> logind(const PrivateBus &bus);
    /// udisks2 as @p script pretends it: a template of dbusmock.
    [[nodiscard]] static std::unique_ptr<MockedService> udisks(const PrivateBus &bus, const QString &script);
    /// An object that can nothing until it is told.
    MockedService(const PrivateBus &bus, const QString &service, const QString &object, const QString &interface);
    ~MockedService();
    Q_DISABLE_COPY_MOVE(MockedService)

    /// False where it did not start.
    [[nodiscard]] bool isRunning() const { return m_isRunning; }
    /// Lets @p method of its interface do @p python, which leaves its answer in `ret`.
    void addMethod(const QString &method, const QString &in, const QString &out, const QString &python);
    void addProperty(const QString &name, const QVariant &value);
    /// The calls that came so far, as "method argument argument".
    [[nodiscard]] QStringList calls() const;
    [[nodiscard]] QDBusMessage call(const QString &interface, const QString &method,
                                    const QVariantList &arguments) const;

private:
    MockedService(const PrivateBus &bus, const QString &service, const QString &object, const QString &interface,
                  const QStringList &arguments);

    const PrivateBus &m_bus;
    QString m_service;
    QString m_object;
    QString m_interface;
    QProcess m_process;
    bool m_isRunning = false;
};

/// The inhibitors that logind lists, each as "what|who|why|mode".
[[nodiscard]] QStringList inhibitorsOn(const PrivateBus &bus);

/// True as soon as @p condition holds, with events handled meanwhile.
[[nodiscard]] bool comesTrueSoon(const std::function<bool()> &condition);

} // namespace Quillmere
