#include "Fakes/PretendUserDefaults.h"
#include "Utilities/LocalizationManager.h"

#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

/// What a program that is started with these variables, and no others that speak of languages, takes for the language
/// of the desktop. A program of its own, because the first look at the environment is the last.
QString codeUnder(const QMap<QString, QString> &variables)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name : environment.keys()) {
        if (name == u"LANG" || name == u"LANGUAGE" || name.startsWith(u"LC_"))
            environment.remove(name);
    }
    for (auto variable = variables.begin(); variable != variables.end(); ++variable)
        environment.insert(variable.key(), variable.value());
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(QUILLMERE_LANGUAGE), {});
    EXPECT_TRUE(program.waitForFinished()) << program.errorString().toStdString();
    EXPECT_EQ(program.exitCode(), 0);
    const QByteArray output = program.readAllStandardOutput();
    EXPECT_TRUE(output.endsWith('\n'));
    return QString::fromUtf8(output.trimmed());
}

struct EnvironmentCase
{
    const char *name;
    QMap<QString, QString> variables;
    Language language;
};

class DesktopLanguageCodeTest : public testing::TestWithParam<EnvironmentCase>
{
};

} // namespace

TEST_P(DesktopLanguageCodeTest, GivesTheLanguageOfTheScreens)
{
    const QString code = codeUnder(GetParam().variables);
    const Localizer localizer(std::make_shared<PretendUserDefaults>(), [code] { return code; });

    EXPECT_EQ(localizer.effectiveLanguage(), GetParam().language) << code.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Environments, DesktopLanguageCodeTest,
    testing::Values(EnvironmentCase{"NothingSet", {}, Language::English},
                    EnvironmentCase{"C", {{u"LANG"_qs, u"C"_qs}}, Language::English},
                    EnvironmentCase{"CWithUtf8", {{u"LANG"_qs, u"C.UTF-8"_qs}}, Language::English},
                    EnvironmentCase{"Posix", {{u"LC_ALL"_qs, u"POSIX"_qs}}, Language::English},
                    EnvironmentCase{"Mexico", {{u"LANG"_qs, u"es_MX.UTF-8"_qs}}, Language::Spanish},
                    EnvironmentCase{"SpanishAlone", {{u"LANG"_qs, u"es"_qs}}, Language::Spanish},
                    EnvironmentCase{"Russia", {{u"LANG"_qs, u"ru_RU.UTF-8"_qs}}, Language::Russian},
                    EnvironmentCase{"RussianInAnOldEncoding", {{u"LANG"_qs, u"ru_RU.KOI8-R"_qs}}, Language::Russian},
                    EnvironmentCase{"Germany", {{u"LANG"_qs, u"de_DE.UTF-8"_qs}}, Language::English},
                    EnvironmentCase{"NoLanguageAtAll", {{u"LANG"_qs, u"!?"_qs}}, Language::English},
                    EnvironmentCase{"MessagesBeforeLang",
                                    {{u"LANG"_qs, u"de_DE.UTF-8"_qs}, {u"LC_MESSAGES"_qs, u"es_MX.UTF-8"_qs}},
                                    Language::Spanish},
                    EnvironmentCase{"OtherCategoriesSayNothing",
                                    {{u"LANG"_qs, u"ru_RU.UTF-8"_qs},
                                     {u"LC_TIME"_qs, u"es_ES.UTF-8"_qs},
                                     {u"LC_NUMERIC"_qs, u"es_ES.UTF-8"_qs}},
                                    Language::Russian},
                    EnvironmentCase{"AllBeforeMessages",
                                    {{u"LC_ALL"_qs, u"ru_RU.UTF-8"_qs},
                                     {u"LC_MESSAGES"_qs, u"es_MX.UTF-8"_qs},
                                     {u"LANG"_qs, u"es_MX.UTF-8"_qs}},
                                    Language::Russian},
                    EnvironmentCase{"EmptyAllIsNotSet",
                                    {{u"LC_ALL"_qs, u""_qs}, {u"LANG"_qs, u"es_MX.UTF-8"_qs}},
                                    Language::Spanish},
                    EnvironmentCase{"LanguageBeforeTheRest",
                                    {{u"LANGUAGE"_qs, u"es_MX"_qs}, {u"LANG"_qs, u"ru_RU.UTF-8"_qs}},
                                    Language::Spanish},
                    EnvironmentCase{"FirstOfTheLanguages",
                                    {{u"LANGUAGE"_qs, u"de:es:ru"_qs}, {u"LANG"_qs, u"ru_RU.UTF-8"_qs}},
                                    Language::English},
                    EnvironmentCase{"EmptyLanguageIsNotSet",
                                    {{u"LANGUAGE"_qs, u""_qs}, {u"LANG"_qs, u"ru_RU.UTF-8"_qs}},
                                    Language::Russian}),
    [](const auto &info) { return info.param.name; });
