#pragma once

#include "App/Person.h"
#include "App/QuillmereApp.h"
#include "Fakes/PretendMachine.h"

#include <gmock/gmock.h>

#include <QQuickItem>

#include <functional>
#include <memory>

namespace Quillmere {

/// The whole program on a pretend machine, used by a person. A warning from QML fails the test.
class ScreensFixture : public testing::Test
{
protected:
    ScreensFixture();
    ~ScreensFixture() override;

    /// Starts the program and shows @p tab.
    Person open(SidebarTab tab = SidebarTab::Dashboard);

    /// Whether an item that can be seen in the main window is as @p isMeant says.
    [[nodiscard]] bool showsItem(const std::function<bool(const QQuickItem &item)> &isMeant) const;
    [[nodiscard]] bool showsSymbol(const QString &name) const;
    /// The same beside the sidebar, which has a symbol for each screen.
    [[nodiscard]] bool showsSymbolOnScreen(const QString &name) const;
    /// Whether @p text stands somewhere by itself, and all of it.
    [[nodiscard]] bool showsWhole(const QString &text) const;

    PretendMachine machine;
    std::unique_ptr<QuillmereApp> app;
};

} // namespace Quillmere
