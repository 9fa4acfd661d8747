#include "ViewModels/SidebarListModel.h"
#include "Fakes/InstalledLocalizer.h"

#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

QStringList texts(const SidebarListModel &model)
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts.append(model.data(model.index(row), SidebarListModel::TextRole).toString());
    return texts;
}

} // namespace

TEST(SidebarListModelTest, StandsInOrderWithThePromotionBelowTheDashboard)
{
    const InstalledLocalizer localizer;
    const SidebarListModel model(nullptr);

    EXPECT_THAT(texts(model),
                testing::ElementsAre(u"Overview"_qs, u"Dashboard"_qs, QString(), u"Cleanup"_qs, u"Safe Cleanup"_qs,
                                     u"Professional Cleanup"_qs, u"Analysis"_qs, u"Large Files"_qs, u"Browsers"_qs,
                                     u"System Data"_qs, u"System"_qs, u"Startup Items"_qs, u"Applications"_qs,
                                     u"Maintenance"_qs, u"Tools"_qs, u"App"_qs, u"History"_qs, u"Settings"_qs));
    EXPECT_EQ(model.data(model.index(2), SidebarListModel::KindRole).value<SidebarListModel::Kind>(),
              SidebarListModel::Kind::Promotion);
}

TEST(SidebarListModelTest, TurnsItsTextsWhenTheLanguageChanges)
{
    InstalledLocalizer localizer;
    const SidebarListModel model(nullptr);
    const QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);

    localizer->setLanguage(Language::Spanish);

    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(texts(model).at(1), u"Panel de control"_qs);
}
