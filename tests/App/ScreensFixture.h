#pragma once

#include "App/Person.h"
#include "App/QuillmereApp.h"
#include "Fakes/PretendMachine.h"

#include <gmock/gmock.h>

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

    PretendMachine machine;
    std::unique_ptr<QuillmereApp> app;
};

} // namespace Quillmere
