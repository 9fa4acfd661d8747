#include "Fakes/PretendUserDefaults.h"
#include "Utilities/LocalizationManager.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <thread>
#include <vector>

using namespace Quillmere;

namespace {

Localizer::SystemLanguageCode desktopSpeaks(const QString &code)
{
    return [code] { return code; };
}

/// A Localizer over settings that hold what the test put there.
struct LocalizerTest : testing::Test
{
    std::shared_ptr<PretendUserDefaults> defaults = std::make_shared<PretendUserDefaults>();

    [[nodiscard]] QString stored() const { return defaults->string(u"app.language"_qs).value_or(u"(none)"_qs); }
};

constexpr std::array everyLanguage = {Language::System, Language::English, Language::Spanish, Language::Russian};

struct DesktopCase
{
    const char *name;
    const char *code;
    Language effective;
};

class DesktopLanguageTest : public testing::TestWithParam<DesktopCase>
{
};

} // namespace

TEST_P(DesktopLanguageTest, IsFollowedWhileTheChoiceIsSystem)
{
    const QString code = QString::fromUtf8(GetParam().code);
    const Localizer localizer(std::make_shared<PretendUserDefaults>(), desktopSpeaks(code));

    EXPECT_EQ(localizer.language(), Language::System);
    EXPECT_EQ(localizer.effectiveLanguage(), GetParam().effective);
}

INSTANTIATE_TEST_SUITE_P(
    Codes, DesktopLanguageTest,
    testing::Values(
        DesktopCase{"Spanish", "es", Language::Spanish}, DesktopCase{"MexicanSpanish", "es-MX", Language::Spanish},
        DesktopCase{"MexicanSpanishOfTheEnvironment", "es_MX.UTF-8", Language::Spanish},
        DesktopCase{"LatinAmericanSpanish", "es-419", Language::Spanish},
        DesktopCase{"Russian", "ru", Language::Russian}, DesktopCase{"RussianOfUkraine", "ru-UA", Language::Russian},
        DesktopCase{"BritishEnglish", "en-GB", Language::English}, DesktopCase{"German", "de-DE", Language::English},
        DesktopCase{"NoLanguageOfTheEnvironment", "C", Language::English}, DesktopCase{"Empty", "", Language::English}),
    [](const auto &info) { return info.param.name; });

TEST_F(LocalizerTest, ShowsSpanishOnAMexicanDesktopAndEnglishOnAGermanOne)
{
    const Localizer mexican(defaults, desktopSpeaks(u"es-MX"_qs));
    const Localizer german(defaults, desktopSpeaks(u"de-DE"_qs));

    EXPECT_EQ(mexican.localized(u"nav.dashboard"_qs), u"Panel de control"_qs);
    EXPECT_EQ(german.localized(u"nav.dashboard"_qs), u"Dashboard"_qs);
}

TEST_F(LocalizerTest, PrefersTheChoiceToTheDesktop)
{
    defaults->setString(u"app.language"_qs, u"ru"_qs);
    const Localizer localizer(defaults, desktopSpeaks(u"es-MX"_qs));

    EXPECT_EQ(localizer.language(), Language::Russian);
    EXPECT_EQ(localizer.localized(u"nav.dashboard"_qs), u"Панель управления"_qs);
}

TEST_F(LocalizerTest, StartsWithSystemWhereTheStoredCodeIsUnknown)
{
    for (const QString &code : {u"fr"_qs, u"EN"_qs, u"spanish"_qs, QString()}) {
        defaults->setString(u"app.language"_qs, code);
        EXPECT_EQ(Localizer(defaults, desktopSpeaks(u"ru"_qs)).language(), Language::System) << code.toStdString();
    }
}

TEST_F(LocalizerTest, WritesNothingAtTheStart)
{
    defaults->setString(u"app.language"_qs, u"fr"_qs);
    const int writesBefore = defaults->writes();

    const Localizer localizer(defaults, desktopSpeaks(u"en"_qs));

    EXPECT_EQ(localizer.language(), Language::System);
    EXPECT_EQ(defaults->writes(), writesBefore);
    EXPECT_EQ(stored(), u"fr"_qs);
}

TEST_F(LocalizerTest, StoresEachChoiceAtOnceByItsCode)
{
    Localizer localizer(defaults, desktopSpeaks(u"en"_qs));

    localizer.setLanguage(Language::Spanish);
    EXPECT_EQ(stored(), u"es"_qs);
    localizer.setLanguage(Language::Russian);
    EXPECT_EQ(stored(), u"ru"_qs);
    localizer.setLanguage(Language::English);
    EXPECT_EQ(stored(), u"en"_qs);
    localizer.setLanguage(Language::System);
    EXPECT_EQ(stored(), u"system"_qs);
    EXPECT_EQ(defaults->writes(), 4);
}

TEST_F(LocalizerTest, PublishesAChangeThatListenersCanAlreadyRead)
{
    Localizer localizer(defaults, desktopSpeaks(u"en"_qs));
    QStringList heard;
    QObject::connect(&localizer, &Localizer::languageChanged,
                     [&] { heard.append(localizer.localized(u"menu.quit"_qs)); });

    localizer.setLanguage(Language::Spanish);
    localizer.setLanguage(Language::Russian);

    EXPECT_EQ(heard, (QStringList{u"Salir"_qs, u"Выйти"_qs}));
}

TEST_F(LocalizerTest, PublishesNothingWhenTheSameLanguageIsChosenAgainButReplacesAnUnknownCode)
{
    defaults->setString(u"app.language"_qs, u"fr"_qs);
    Localizer localizer(defaults, desktopSpeaks(u"en"_qs));
    int published = 0;
    QObject::connect(&localizer, &Localizer::languageChanged, [&] { ++published; });

    localizer.setLanguage(Language::System);

    EXPECT_EQ(published, 0);
    EXPECT_EQ(stored(), u"system"_qs);
}

TEST_F(LocalizerTest, KeepsTheChoiceForTheNextStart)
{
    Localizer(defaults, desktopSpeaks(u"en"_qs)).setLanguage(Language::Spanish);

    EXPECT_EQ(Localizer(defaults, desktopSpeaks(u"en"_qs)).language(), Language::Spanish);
}

TEST_F(LocalizerTest, ReturnsAMissingKeyUnchangedInAnyLanguage)
{
    Localizer localizer(defaults, desktopSpeaks(u"es"_qs));

    for (const Language language : everyLanguage) {
        localizer.setLanguage(language);
        EXPECT_EQ(localizer.localized(u"cleanup.nothing.of.the.kind"_qs), u"cleanup.nothing.of.the.kind"_qs);
        EXPECT_EQ(localizer.localized(u"Nav.Dashboard"_qs), u"Nav.Dashboard"_qs);
        EXPECT_EQ(localizer.localized(QString()), QString());
    }
}

TEST_F(LocalizerTest, NamesTheControlsToo)
{
    Localizer localizer(defaults, desktopSpeaks(u"en"_qs));
    EXPECT_EQ(localizer.localized(u"control.close"_qs), u"Close window"_qs);

    localizer.setLanguage(Language::Russian);
    EXPECT_EQ(localizer.localized(u"control.close"_qs), u"Закрыть окно"_qs);
}

TEST_F(LocalizerTest, OffersTheWholeTableOfTheScreens)
{
    EXPECT_EQ(&Localizer::strings(), &LocalizationTable::strings());
    EXPECT_EQ(Localizer::strings().text(u"menu.quit"_qs, u"es"_qs), u"Salir"_qs);
}

TEST_F(LocalizerTest, AnswersEveryThreadWhileTheLanguageChanges)
{
    Localizer localizer(defaults, desktopSpeaks(u"en"_qs));
    std::atomic<bool> changing = true;
    std::atomic<int> answers = 0;
    std::atomic<int> strange = 0;
    std::vector<std::jthread> readers;
    for (int reader = 0; reader < 4; ++reader) {
        readers.emplace_back([&] {
            do {
                const QString text = localizer.localized(u"common.cancel"_qs);
                if (text != u"Cancel" && text != u"Cancelar" && text != u"Отмена")
                    ++strange;
                ++answers;
            } while (changing);
        });
    }

    for (int round = 0; round < 500; ++round)
        localizer.setLanguage(everyLanguage.at(static_cast<std::size_t>(round) % everyLanguage.size()));
    changing = false;
    readers.clear();

    EXPECT_GE(answers, 4);
    EXPECT_EQ(strange, 0);
}
