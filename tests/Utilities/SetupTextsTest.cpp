#include "Utilities/LocalizationTable.h"

#include <QSet>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::UnorderedElementsAre;

namespace {

struct TextCase
{
    const char *key;
    const char *english;
};

class SetupTextTest : public testing::TestWithParam<TextCase>
{
};

} // namespace

TEST_P(SetupTextTest, StandsInEnglishToTheLetter)
{
    EXPECT_EQ(LocalizationTable::setup().text(QString::fromUtf8(GetParam().key), u"en"_qs),
              QString::fromUtf8(GetParam().english));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, SetupTextTest,
    testing::Values(
        TextCase{"subtitle.1", "Select language and settings"}, TextCase{"subtitle.2", "Privacy policy agreement"},
        TextCase{"subtitle.3", "Conditions, rules, and disclaimers"}, TextCase{"subtitle.4", "Copying bundle..."},
        TextCase{"subtitle.5", "Complete"}, TextCase{"welcome.title", "Quillmere Setup Wizard"},
        TextCase{"welcome.text",
                 "This wizard will install the application on your computer. Please select your "
                 "language to proceed."},
        TextCase{"welcome.language", "Language:"}, TextCase{"drivers.installed", "FUSE & NTFS drivers are installed"},
        TextCase{"drivers.install", "Install FUSE & NTFS Drivers"},
        TextCase{"runWithoutInstalling", "Run without installing (one-time run)"},
        TextCase{"privacy.title", "Privacy Policy"},
        TextCase{"privacy.text",
                 "We do not collect any user data. Our application performs cleanup operations exclusively locally on "
                 "your device, without transmitting or saving your personal files."},
        TextCase{"terms.title", "Conditions, Rules, and Disclaimers"},
        TextCase{"terms.text",
                 "Quillmere works locally and does not transmit personal files. Review scan results and confirmations "
                 "before deleting files. The app is provided 'as is' without warranty; the developer is not liable for "
                 "errors, faults, data loss, lost sessions, or other outcomes from cleanup, app-data removal, "
                 "optimization, or traffic-control actions. Application Traffic Control applies a macOS Application "
                 "Firewall rule for incoming connections and may request administrator authorization. A final "
                 "installation conditions file will be saved in Application Support."},
        TextCase{"installing.title", "Installing Application..."},
        TextCase{"completed.title", "Installation Completed!"},
        TextCase{"completed.before", "Quillmere was installed to: "},
        TextCase{"completed.after", ". The conditions, rules, and disclaimers file was saved in Application Support."},
        TextCase{"next", "Next"}, TextCase{"back", "Back"}, TextCase{"install", "Install"},
        TextCase{"launch", "Launch"}, TextCase{"preparing", "Preparing installation..."},
        TextCase{"copying", "Copying application bundle..."}, TextCase{"registering", "Registering system helper..."},
        TextCase{"configuring", "Configuring application preferences..."}, TextCase{"done", "Done!"},
        TextCase{"portable", "Could not copy the app. Starting in portable mode..."}));

TEST(SetupTextsTest, SpeakThreeLanguages)
{
    const LocalizationTable &texts = LocalizationTable::setup();
    for (const QString &key : texts.keys()) {
        EXPECT_THAT(texts.languages(key), UnorderedElementsAre(u"en"_qs, u"es"_qs, u"ru"_qs)) << key.toStdString();
        for (const QString &language : texts.languages(key))
            EXPECT_FALSE(texts.text(key, language)->trimmed().isEmpty()) << key.toStdString();
    }
}
