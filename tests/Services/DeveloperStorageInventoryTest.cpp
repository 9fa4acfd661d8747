#include "Services/CleanupService.h"
#include "Services/DeveloperStorageFixture.h"

#include <gmock/gmock.h>

#include <stdexcept>

using namespace Quillmere;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class DeveloperStorageInventoryTest : public DeveloperStorageFixture
{
protected:
    [[nodiscard]] QList<InstalledRoot> roots() const { return installedRoots(lookup(), *machine.places); }
    [[nodiscard]] QList<Runtime> runtimes() const { return detectedRuntimes(lookup(), *machine.places); }
};

} // namespace

TEST_F(DeveloperStorageInventoryTest, KnowsItsPlacesInTheirOrder)
{
    machine.variables->insert("ANDROID_HOME", "/opt/sdk-one");
    machine.variables->insert("ANDROID_SDK_ROOT", "/opt/sdk-two");
    for (const char *folder : {"/opt/homebrew/Cellar/python@3.13", "/opt/homebrew/Cellar/Python",
                               "/opt/homebrew/Cellar/python@3.12", "/usr/local/Cellar/openjdk@21"})
        machine.files->addFolder(FilePath(folder));
    machine.places->addEntry(u"Installed Developer Tools and SDKs"_qs, {u"Java JDKs"_qs, FilePath("/usr/lib/jvm")});

    EXPECT_THAT(roots(),
                ElementsAre(InstalledRoot{u"Xcode"_qs, FilePath("/Applications/Xcode.app")},
                            InstalledRoot{u"Android Studio"_qs, FilePath("/Applications/Android Studio.app")},
                            InstalledRoot{u"Visual Studio Code"_qs, FilePath("/Applications/Visual Studio Code.app")},
                            InstalledRoot{u"Sony VEGAS Pro"_qs, FilePath("/Applications/VEGAS Pro.app")},
                            InstalledRoot{u"Android SDK"_qs, library.appending("Android/sdk")},
                            InstalledRoot{u"Java JDKs"_qs, FilePath("/Library/Java/JavaVirtualMachines")},
                            InstalledRoot{u"User Java JDKs"_qs, library.appending("Java/JavaVirtualMachines")},
                            InstalledRoot{u"SDKMAN Java"_qs, home.appending(".sdkman/candidates/java")},
                            InstalledRoot{u"Python environments"_qs, home.appending(".pyenv")},
                            InstalledRoot{u"Conda environments"_qs, home.appending("anaconda3")},
                            InstalledRoot{u"Miniconda environments"_qs, home.appending("miniconda3")},
                            InstalledRoot{u"Go workspace"_qs, home.appending("go")},
                            InstalledRoot{u"Rust toolchains"_qs, home.appending(".rustup")},
                            InstalledRoot{u"Node.js versions"_qs, home.appending(".nvm")},
                            InstalledRoot{u"Flutter SDK"_qs, home.appending("development/flutter")},
                            InstalledRoot{u"Android SDK"_qs, FilePath("/opt/sdk-one")},
                            InstalledRoot{u"Android SDK"_qs, FilePath("/opt/sdk-two")},
                            InstalledRoot{u"Python (Homebrew)"_qs, FilePath("/opt/homebrew/Cellar/python@3.13")},
                            InstalledRoot{u"Python (Homebrew)"_qs, FilePath("/opt/homebrew/Cellar/python@3.12")},
                            InstalledRoot{u"Go (Homebrew)"_qs, FilePath("/opt/homebrew/Cellar/go")},
                            InstalledRoot{u"Node.js (Homebrew)"_qs, FilePath("/opt/homebrew/Cellar/node")},
                            InstalledRoot{u"Rust (Homebrew)"_qs, FilePath("/opt/homebrew/Cellar/rust")},
                            InstalledRoot{u"Ruby (Homebrew)"_qs, FilePath("/opt/homebrew/Cellar/ruby")},
                            InstalledRoot{u"PHP (Homebrew)"_qs, FilePath("/opt/homebrew/Cellar/php")},
                            InstalledRoot{u"Flutter (Homebrew)"_qs, FilePath("/opt/homebrew/Cellar/flutter")},
                            InstalledRoot{u"Java (Homebrew)"_qs, FilePath("/usr/local/Cellar/openjdk@21")},
                            InstalledRoot{u"Go (Homebrew)"_qs, FilePath("/usr/local/Cellar/go")},
                            InstalledRoot{u"Node.js (Homebrew)"_qs, FilePath("/usr/local/Cellar/node")},
                            InstalledRoot{u"Rust (Homebrew)"_qs, FilePath("/usr/local/Cellar/rust")},
                            InstalledRoot{u"Ruby (Homebrew)"_qs, FilePath("/usr/local/Cellar/ruby")},
                            InstalledRoot{u"PHP (Homebrew)"_qs, FilePath("/usr/local/Cellar/php")},
                            InstalledRoot{u"Flutter (Homebrew)"_qs, FilePath("/usr/local/Cellar/flutter")},
                            InstalledRoot{u"Java JDKs"_qs, FilePath("/usr/lib/jvm")}));
}

TEST_F(DeveloperStorageInventoryTest, ListsTheCellarsGoUncheckedAndDropsItLater)
{
    addTree(FilePath("/usr/local/Cellar/node"), 5);

    EXPECT_THAT(roots(), Contains(InstalledRoot{u"Go (Homebrew)"_qs, FilePath("/usr/local/Cellar/go")}));
    EXPECT_THAT(inventory(), ElementsAre(u"Node.js (Homebrew)"_qs));
}

TEST_F(DeveloperStorageInventoryTest, TakesTheFirstProgramThatMayBeRun)
{
    for (const char *program : {"/usr/local/bin/python3", "/usr/bin/python3", "/usr/bin/java", "/usr/local/bin/go",
                                "/opt/homebrew/bin/node", "/home/ada/.cargo/bin/rustc", "/usr/local/bin/ruby",
                                "/usr/bin/php", "/home/ada/development/flutter/bin/flutter"})
        addProgram(FilePath(program));
    machine.files->addFile(FilePath("/opt/homebrew/bin/python3"), 5);

    EXPECT_THAT(
        runtimes(),
        ElementsAre(Runtime{u"Python"_qs, FilePath("/usr/local/bin/python3"), {u"--version"_qs}},
                    Runtime{u"Java"_qs, FilePath("/usr/bin/java"), {u"-version"_qs}},
                    Runtime{u"Go"_qs, FilePath("/usr/local/bin/go"), {u"version"_qs}},
                    Runtime{u"Node.js"_qs, FilePath("/opt/homebrew/bin/node"), {u"--version"_qs}},
                    Runtime{u"Rust"_qs, home.appending(".cargo/bin/rustc"), {u"--version"_qs}},
                    Runtime{u"Ruby"_qs, FilePath("/usr/local/bin/ruby"), {u"--version"_qs}},
                    Runtime{u"PHP"_qs, FilePath("/usr/bin/php"), {u"--version"_qs}},
                    Runtime{u"Flutter"_qs, home.appending("development/flutter/bin/flutter"), {u"--version"_qs}}));
}

TEST_F(DeveloperStorageInventoryTest, LooksForEachProgramInItsCandidatesInTheirOrder)
{
    const QList<QByteArrayList> candidates = {
        {"/opt/homebrew/bin/python3", "/usr/local/bin/python3", "/usr/bin/python3"},
        {"/opt/homebrew/bin/java", "/usr/local/bin/java", "/usr/bin/java"},
        {"/opt/homebrew/bin/go", "/usr/local/bin/go"},
        {"/opt/homebrew/bin/node", "/usr/local/bin/node"},
        {"/home/ada/.cargo/bin/rustc"},
        {"/opt/homebrew/bin/ruby", "/usr/local/bin/ruby", "/usr/bin/ruby"},
        {"/opt/homebrew/bin/php", "/usr/local/bin/php", "/usr/bin/php"},
        {"/opt/homebrew/bin/flutter", "/home/ada/development/flutter/bin/flutter"},
    };
    for (const QByteArrayList &places : candidates) {
        // From the last to the first: each new one goes before those that were there.
        for (auto place = places.rbegin(); place != places.rend(); ++place) {
            addProgram(FilePath(*place));
            QList<FilePath> found;
            for (const Runtime &runtime : runtimes())
                found.append(runtime.executable);
            EXPECT_THAT(found, Contains(FilePath(*place)));
        }
    }
    EXPECT_EQ(runtimes().size(), 8);
}

TEST_F(DeveloperStorageInventoryTest, TakesThePlatformsProgramOnlyWhereItsOwnAreMissing)
{
    addProgram(FilePath("/usr/bin/go"));
    addProgram(FilePath("/usr/bin/python3"));
    addProgram(FilePath("/snap/python3"));
    machine.places->addEntry(u"Go Runtime"_qs, {{}, FilePath("/usr/bin/go")});
    machine.places->addEntry(u"Python Runtime"_qs, {{}, FilePath("/snap/python3")});

    EXPECT_THAT(runtimes(),
                ElementsAre(Runtime{u"Python"_qs, FilePath("/usr/bin/python3"), {u"--version"_qs}},
                            Runtime{u"Go"_qs, FilePath("/usr/bin/go"), {u"version"_qs}}));
}

TEST_F(DeveloperStorageInventoryTest, IsACategoryThatCanOnlyBeLookedAt)
{
    addTree(home.appending(".rustup"), 300);
    addProgram(home.appending(".cargo/bin/rustc"), "rustc 1.91.0\n");

    const std::optional<CleanupCategory> category = service().scanInstalledTools(scanner);

    ASSERT_TRUE(category.has_value());
    EXPECT_EQ(category->name, u"Installed Developer Tools and SDKs"_qs);
    EXPECT_EQ(category->localizedName, u"Installed developer tools, SDKs and runtimes"_qs);
    EXPECT_EQ(category->description,
              u"Read-only inventory of IDEs, Java/Android SDKs and Python, Go, Node.js, Rust, Ruby, PHP and Flutter "
              "runtimes."_qs);
    EXPECT_EQ(category->riskLevel, RiskLevel::Safe);
    EXPECT_EQ(category->totalSize, 300);
    EXPECT_EQ(category->itemCount, 2);
    EXPECT_FALSE(category->isSelected);
    EXPECT_FALSE(category->isAvailable);
    EXPECT_FALSE(category->requiresPermission);
    EXPECT_EQ(category->icon, u"shippingbox.fill"_qs);
    ASSERT_THAT(itemNames(*category), ElementsAre(u"Rust toolchains"_qs, u"Rust — rustc 1.91.0"_qs));
    EXPECT_EQ(category->items.at(0).size, 300);
    EXPECT_EQ(category->items.at(1).size, 0);
    EXPECT_EQ(category->items.at(1).path, home.appending(".cargo/bin/rustc"));
    for (const CleanupItem &item : category->items) {
        EXPECT_EQ(item.category, category->name);
        EXPECT_EQ(item.riskLevel, RiskLevel::Safe);
        EXPECT_FALSE(item.isSelected);
        EXPECT_FALSE(item.isDeletable);
        EXPECT_FALSE(item.requiresPermission);
        EXPECT_FALSE(item.requiresAppClosed);
        EXPECT_EQ(item.ownerApp, std::nullopt);
        EXPECT_EQ(item.lastModified, std::nullopt);
        EXPECT_EQ(item.explanation, category->description);
        EXPECT_EQ(item.recommendedAction, u"Installed only — not selected for cleanup"_qs);
    }
    EXPECT_THAT(CleanupService(machine.files, machine.places).validateBeforeCleanup(category->items), IsEmpty());
}

TEST_F(DeveloperStorageInventoryTest, IsNothingOnAMachineWithoutTools)
{
    EXPECT_EQ(service().scanInstalledTools(scanner), std::nullopt);
}

TEST_F(DeveloperStorageInventoryTest, KeepsWhatIsThereThoughItIsEmpty)
{
    machine.files->addFolder(home.appending(".nvm"));

    EXPECT_THAT(inventory(), ElementsAre(u"Node.js versions"_qs));
}

TEST_F(DeveloperStorageInventoryTest, NamesAPlaceOnceWhateverLeadsToIt)
{
    addTree(library.appending("Android/sdk"), 10);
    machine.files->addLink(FilePath("/opt/sdk"), library.appending("Android/sdk"));
    machine.variables->insert("ANDROID_HOME", "/opt/sdk");
    machine.variables->insert("ANDROID_SDK_ROOT", library.appending("Android/sdk").bytes());

    EXPECT_THAT(inventory(), ElementsAre(u"Android SDK"_qs));
}

TEST_F(DeveloperStorageInventoryTest, LeavesOutAProgramThatIsAPlaceSeenBeforeButNotOneInside)
{
    addTree(home.appending("development/flutter"), 10);
    addProgram(home.appending("development/flutter/bin/flutter"));
    addTree(home.appending(".pyenv"), 10);
    addProgram(FilePath("/opt/tools/both"));
    machine.files->addLink(FilePath("/usr/bin/python3"), FilePath("/opt/tools/both"));
    machine.files->addLink(FilePath("/usr/bin/ruby"), FilePath("/opt/tools/both"));
    machine.processes->answer(u"/usr/bin/python3"_qs, "both 1\n");

    EXPECT_THAT(inventory(),
                ElementsAre(u"Python environments"_qs, u"Flutter SDK"_qs, u"Python — both 1"_qs, u"Flutter"_qs));
}

TEST_F(DeveloperStorageInventoryTest, LeavesOutAProgramWhoseLinkLeadsToAMeasuredPlace)
{
    machine.places->addEntry(u"Installed Developer Tools and SDKs"_qs, {u"Tool"_qs, FilePath("/opt/tool")});
    addProgram(FilePath("/opt/tool"));
    machine.files->addLink(FilePath("/usr/bin/php"), FilePath("/opt/tool"));

    EXPECT_THAT(inventory(), ElementsAre(u"Tool"_qs));
}

TEST_F(DeveloperStorageInventoryTest, IsNothingOnceItIsCancelledAmongThePlaces)
{
    addTree(home.appending(".pyenv"), 10);
    addTree(home.appending(".nvm"), 10);
    machine.files->onMeasure([this](const FilePath &) { scanner.cancelScan(); });

    EXPECT_EQ(service().scanInstalledTools(scanner), std::nullopt);
}

TEST_F(DeveloperStorageInventoryTest, TakesACellarOfTenThousandFormulas)
{
    const int formulas = 10'000;
    for (int i = 0; i < formulas; ++i)
        machine.files->addFolder(FilePath("/usr/local/Cellar").appending("tool" + QByteArray::number(i)));
    machine.files->addFolder(FilePath("/usr/local/Cellar/python@3.13"));
    machine.files->addFolder(FilePath("/usr/local/Cellar/openjdk"));

    EXPECT_THAT(inventory(), ElementsAre(u"Python (Homebrew)"_qs, u"Java (Homebrew)"_qs));
}

TEST_F(DeveloperStorageInventoryTest, ListsEveryVersionInACellarOfTenThousand)
{
    const int versions = 10'000;
    for (int i = 0; i < versions; ++i)
        machine.files->addFolder(FilePath("/opt/homebrew/Cellar").appending("python@" + QByteArray::number(i)));

    const QStringList found = inventory();

    EXPECT_EQ(found.size(), versions);
    EXPECT_THAT(found, Each(u"Python (Homebrew)"_qs));
}

TEST_F(DeveloperStorageInventoryTest, PassesOverVersionsThatVanishWhileItLooks)
{
    addTree(FilePath("/opt/homebrew/Cellar/python@3.12"), 5);
    addTree(FilePath("/opt/homebrew/Cellar/python@3.13"), 5);
    machine.files->onMeasure(
        [this](const FilePath &) { machine.files->vanish(FilePath("/opt/homebrew/Cellar/python@3.13")); });

    EXPECT_THAT(inventory(), ElementsAre(u"Python (Homebrew)"_qs));
}

TEST_F(DeveloperStorageInventoryTest, ListsWhatCannotBeMeasuredWithoutASize)
{
    const FilePath xcode("/Applications/Xcode.app");
    const FilePath go = home.appending("go");
    addTree(xcode, 6);
    addTree(go, 7);
    machine.files->onMeasure([&](const FilePath &path) {
        if (path.isWithin(xcode))
            throw std::runtime_error("the disk is on fire");
    });

    const std::optional<CleanupCategory> category = service().scanInstalledTools(scanner);

    ASSERT_TRUE(category);
    ASSERT_THAT(paths(*category), ElementsAre(xcode, go));
    EXPECT_EQ(category->items.first().size, 0);
    EXPECT_EQ(category->items.last().size, 7);
    EXPECT_EQ(category->totalSize, 7);
}
