#pragma once

#include <QObject>
#include <QQmlEngine>

namespace Quillmere {

/// How the windows of one engine have to look just now. The application sets it from the user's choice and the
/// desktop's.
class Appearance final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ isDark NOTIFY darkChanged)
    Q_PROPERTY(bool reducedMotion READ isReducedMotion NOTIFY reducedMotionChanged)
    Q_PROPERTY(QString textFamily READ textFamily CONSTANT)
    Q_PROPERTY(QString displayFamily READ displayFamily CONSTANT)
    Q_PROPERTY(QString monospaceFamily READ monospaceFamily CONSTANT)

public:
    /// Light and moving. Needs the application object, whose fonts it looks through.
    explicit Appearance(QObject *parent);

    /// Gives it to @p engine, which does not take it over and has to end before it. Before the engine loads anything.
    void installIn(QQmlEngine &engine);
    /// The one that was installed in @p engine.
    [[nodiscard]] static Appearance *create(QQmlEngine *engine, QJSEngine *);

    [[nodiscard]] bool isDark() const { return m_dark; }
    void setDark(bool dark);
    [[nodiscard]] bool isReducedMotion() const { return m_reducedMotion; }
    void setReducedMotion(bool reduced);

    [[nodiscard]] QString textFamily() const { return m_textFamily; }
    /// For 17 pixels and up. The text family where the machine has no cut for large sizes.
    [[nodiscard]] QString displayFamily() const { return m_displayFamily; }
    [[nodiscard]] QString monospaceFamily() const { return m_monospaceFamily; }

Q_SIGNALS:
    void darkChanged();
    void reducedMotionChanged();

private:
    bool m_dark = false;
    bool m_reducedMotion = false;
    QString m_textFamily;
    QString m_displayFamily;
    QString m_monospaceFamily;
};

} // namespace Quillmere
