#pragma once

#include <QObject>
#include <QQmlEngine>

namespace Quillmere {

/// Tells a screen whether there is a picture behind an application's icon, for one that shows something of its own
/// where there is none.
class ApplicationIcons final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// @p icon is a name of the desktop's icon theme, or the absolute path of a picture.
    Q_INVOKABLE [[nodiscard]] bool has(const QString &icon) const;
};

} // namespace Quillmere
