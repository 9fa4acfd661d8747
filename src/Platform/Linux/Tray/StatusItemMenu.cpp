#include "Platform/Linux/Tray/StatusItemMenu.h"

#include "Symbols/SymbolDrawing.h"

#include <QAction>
#include <QPixmap>

namespace Quillmere {

namespace {

/// Stands out from light and dark menus alike: nobody tells which one the desktop draws.
const QColor pictureColor(0x16, 0x8A, 0x9A);
constexpr int pictureSides[] = {16, 22, 32, 48};

/// A single & would be taken for the mark of a key.
QString literal(QString title)
{
    return title.replace(u'&', u"&&"_qs);
}

QIcon picture(const QString &symbol)
{
    QIcon icon;
    if (!hasSymbol(symbol))
        return icon;
    for (const int side : pictureSides)
        icon.addPixmap(QPixmap::fromImage(drawnSymbol(symbol, pictureColor, {side, side})));
    return icon;
}

bool isSeparator(const MenuEntry &entry)
{
    return entry.kind == MenuEntry::Kind::Separator;
}

} // namespace

void StatusItemMenu::setEntries(const QList<MenuEntry> &entries)
{
    if (!hasShapeOf(entries))
        rebuild(entries);
    for (size_t index = 0; index < m_lines.size(); ++index)
        update(m_lines[index], entries.at(static_cast<qsizetype>(index)));
}

bool StatusItemMenu::hasShapeOf(const QList<MenuEntry> &entries) const
{
    return std::equal(m_lines.cbegin(), m_lines.cend(), entries.cbegin(), entries.cend(),
                      [](const Line &line, const MenuEntry &entry) {
                          return isSeparator(line.entry) == isSeparator(entry)
                              && line.entry.isCheckable == entry.isCheckable;
                      });
}

void StatusItemMenu::rebuild(const QList<MenuEntry> &entries)
{
    m_lines.clear();
    m_menu.clear();
    for (const MenuEntry &entry : entries) {
        QAction *action = isSeparator(entry) ? m_menu.addSeparator() : m_menu.addAction(QString());
        action->setCheckable(entry.isCheckable);
        const size_t index = m_lines.size();
        QObject::connect(action, &QAction::triggered, &m_menu, [this, index] { trigger(index); });
        MenuEntry blank;
        blank.kind = entry.kind;
        blank.isCheckable = entry.isCheckable;
        m_lines.push_back({action, blank});
    }
}

void StatusItemMenu::update(Line &line, const MenuEntry &entry)
{
    // Even the same picture would be sent anew.
    if (line.entry.symbol != entry.symbol)
        line.action->setIcon(picture(entry.symbol));
    line.entry = entry;
    if (isSeparator(entry))
        return;
    line.action->setText(literal(entry.title));
    line.action->setEnabled(entry.isEnabled);
    line.action->setChecked(entry.isChecked);
}

void StatusItemMenu::trigger(size_t index) const
{
    // A click has already turned the mark around; it is for whoever sets the entries to say how it stands.
    m_lines[index].action->setChecked(m_lines[index].entry.isChecked);
    // The action may set the entries anew.
    if (const std::function<void()> action = m_lines[index].entry.action)
        action();
}

} // namespace Quillmere
