#include "Platform/Linux/Tray/StatusItemIcon.h"

#include <QGuiApplication>
#include <QPainter>

#include <array>
#include <cstdio>

using namespace Quillmere;

namespace {

constexpr int margin = 12;
constexpr int enlarged = 4;
const std::array<const char *, 5> titles = {"", "7%", "42%", "88%", "100%"};
const std::array<QColor, 3> panels = {QColor(0xEF, 0xF0, 0xF1), QColor(0x23, 0x26, 0x29), QColor(0x00, 0x00, 0x00)};

int rowWidth()
{
    int width = margin;
    for (const int side : statusItemIconSides())
        width += side * 3 + margin * 2;
    return width + (16 + 22) * enlarged + margin * 2;
}

/// Every size at both pixel ratios, then the two smallest enlarged.
void drawRow(QPainter &painter, const QString &title, int top)
{
    int left = margin;
    for (const int side : statusItemIconSides()) {
        for (const int pixels : {side, side * 2}) {
            painter.drawImage(left, top, statusItemPicture(title, pixels));
            left += pixels + margin;
        }
    }
    for (const int side : {16, 22}) {
        const int large = side * enlarged;
        painter.drawImage(left, top, statusItemPicture(title, side).scaled(large, large));
        left += large + margin;
    }
}

} // namespace

/// `quillmere-status-item-sheet PNG` saves the status item's pictures side by side on light and dark panels.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const int rowHeight = 128 + margin;
    const int panelHeight = rowHeight * static_cast<int>(titles.size()) + margin;
    QImage sheet(rowWidth(), panelHeight * static_cast<int>(panels.size()), QImage::Format_RGB32);
    QPainter painter(&sheet);
    int top = 0;
    for (const QColor &panel : panels) {
        painter.fillRect(0, top, sheet.width(), panelHeight, panel);
        int row = top + margin;
        for (const char *title : titles) {
            drawRow(painter, QString::fromLatin1(title), row);
            row += rowHeight;
        }
        top += panelHeight;
    }
    painter.end();
    if (argc == 2 && sheet.save(QString::fromLocal8Bit(argv[1])))
        return 0;
    std::fputs("usage: quillmere-status-item-sheet PNG\n", stderr);
    return 1;
}
