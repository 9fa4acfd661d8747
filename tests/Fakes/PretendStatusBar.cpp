#include "Fakes/PretendStatusBar.h"

namespace Quillmere {

namespace {

class PretendStatusItem final : public StatusItem
{
public:
    explicit PretendStatusItem(PretendStatusBar::Shown &shown)
        : m_shown(shown)
    {
    }

    void setTitle(const QString &title, ImagePosition position) override
    {
        m_shown.title = title;
        m_shown.position = position;
    }
    void setToolTip(const QString &text) override { m_shown.toolTip = text; }
    void setMenu(const QList<MenuEntry> &entries) override
    {
        m_shown.menu = entries;
        ++m_shown.menusSet;
    }

private:
    PretendStatusBar::Shown &m_shown;
};

} // namespace

std::unique_ptr<StatusItem> PretendStatusBar::makeStatusItem()
{
    if (onMake)
        onMake();
    ++items;
    return std::make_unique<PretendStatusItem>(shown);
}

} // namespace Quillmere
