#include "Platform/Linux/Tray/StatusItemIcon.h"

#include "Platform/Linux/Tray/FigureDrawing.h"
#include "Symbols/SymbolDrawing.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

#include <algorithm>

namespace Quillmere {

namespace {

class StatusItemIconEngine final : public QIconEngine
{
public:
    explicit StatusItemIconEngine(QString title)
        : m_title(std::move(title))
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
    {
        const int side = std::min(rect.width(), rect.height());
        QRect square(0, 0, side, side);
        square.moveCenter(rect.center());
        painter->drawImage(square, statusItemPicture(m_title, qRound(side * painter->device()->devicePixelRatio())));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode, QIcon::State) override
    {
        return QPixmap::fromImage(statusItemPicture(m_title, std::min(size.width(), size.height())));
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        QList<QSize> sizes;
        for (const int side : statusItemIconSides())
            sizes.append({side, side});
        return sizes;
    }

    [[nodiscard]] QIconEngine *clone() const override { return new StatusItemIconEngine(m_title); }

private:
    QString m_title;
};

} // namespace

const QList<int> &statusItemIconSides()
{
    static const QList<int> sides = {16, 22, 24, 32, 48, 64};
    return sides;
}

QIcon statusItemIcon(const QString &title)
{
    return QIcon(new StatusItemIconEngine(title));
}

QImage statusItemPicture(const QString &title, int side)
{
    return title.isEmpty() ? drawnProgramIcon({side, side}) : drawnFigure(title, side);
}

} // namespace Quillmere
