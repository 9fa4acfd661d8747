#include "Utilities/FailureDescription.h"
#include "Fakes/PretendUserDefaults.h"
#include "Utilities/LocalizationManager.h"

#include <QSet>

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

/// Installs a Localizer that speaks English until it is told otherwise.
struct FailureDescriptionTest : testing::Test
{
    Localizer localizer{std::make_shared<PretendUserDefaults>(), [] { return u"en"_qs; }};

    void SetUp() override { SharedInstance<Localizer>::install(&localizer); }
    void TearDown() override { SharedInstance<Localizer>::install(nullptr); }
};

constexpr int kinds = static_cast<int>(Failure::Kind::Other) + 1;

} // namespace

TEST_F(FailureDescriptionTest, HasWordsOfItsOwnForEveryKindInEveryLanguage)
{
    QSet<QString> reasons;
    for (const Language language : {Language::English, Language::Spanish, Language::Russian}) {
        localizer.setLanguage(language);
        for (int kind = 0; kind < kinds; ++kind) {
            const QString reason = localizedDescription({static_cast<Failure::Kind>(kind), {}, {}});
            EXPECT_FALSE(reason.startsWith(u"failure.")) << reason.toStdString();
            EXPECT_FALSE(reason.endsWith(u'.')) << reason.toStdString();
            reasons.insert(reason);
        }
    }

    EXPECT_EQ(reasons.size(), 3 * kinds);
}

TEST_F(FailureDescriptionTest, SpeaksOfTheReasonAndNotOfTheDetail)
{
    const Failure failure = {Failure::Kind::NoPermission, FilePath("/home/ada/x"), u"Operation not permitted"_qs};

    EXPECT_EQ(localizedDescription(failure), u"Permission denied"_qs);
    localizer.setLanguage(Language::Russian);
    EXPECT_EQ(localizedDescription(failure), u"Нет прав доступа"_qs);
}

TEST_F(FailureDescriptionTest, SaysTheDetailOfAnOtherFailureWhereThereIsOne)
{
    EXPECT_EQ(localizedDescription({Failure::Kind::Other, {}, u" Input/output error\n"_qs}), u"Input/output error"_qs);
    EXPECT_EQ(localizedDescription({Failure::Kind::Other, {}, u" "_qs}), u"Unknown error"_qs);
    EXPECT_EQ(localizedDescription({}), u"Unknown error"_qs);
}
