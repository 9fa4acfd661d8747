#pragma once

#include <QObject>
#include <QQmlEngine>

namespace Quillmere {

/// Where a screen gets the icons of applications from. An icon is a name of the desktop's icon theme, or the absolute
/// path of a picture.
class ApplicationIcons final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// For a screen that shows something of its own where there is no picture behind @p icon.
    Q_INVOKABLE [[nodiscard]] bool has(const QString &icon) const;
    /// Of an image, which shows the first letter of @p name where there is no picture.
    Q_INVOKABLE [[nodiscard]] QString source(const QString &icon, const QString &name) const;
};

} // namespace Quillmere
