#pragma once

#include "App/QuillmereApp.h"
#include "Fakes/PretendMachine.h"

#include <gtest/gtest.h>

namespace Quillmere {

/// The whole program on a pretended machine whose setup has been done.
class QuillmereAppTest : public testing::Test
{
protected:
    QuillmereAppTest() { machine.completeSetup(); }

    void choose(AppTheme theme)
    {
        AppSettings settings = app.appState().settings();
        settings.theme = theme;
        app.appState().setSettings(settings);
    }

    PretendMachine machine;
    QuillmereApp app{machine.machine()};
};

} // namespace Quillmere
