#pragma once

#include <QQuickView>

namespace Quillmere {

/// A window that notes what it is asked for in place of having the desktop do it.
class WatchedView final : public QQuickView
{
    Q_OBJECT

public:
    // QML finds these before those of QWindow, which have the same names.
    Q_INVOKABLE bool startSystemMove()
    {
        ++moves;
        return true;
    }
    Q_INVOKABLE bool startSystemResize(Qt::Edges edges)
    {
        resizes.append(edges);
        return true;
    }

    int moves = 0;
    QList<Qt::Edges> resizes;
};

} // namespace Quillmere
