#pragma once

#include "Platform/Linux/ChildProcess.h"
#include "Platform/Linux/Removal/TrashCan.h"
#include "Platform/Linux/TemporaryHome.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace Quillmere {

/// A home beside volumes of its own, mounted in a namespace that ends with the body.
class VolumesTest : public testing::Test
{
protected:
    void SetUp() override
    {
        QUILLMERE_NEED(whyNoMountNamespace());
        home.addFolder("backing");
    }

    UserEnvironment environment() const
    {
        UserEnvironment environment = home.environment();
        environment.user = ::geteuid(); // Inside a namespace of its own it may be another number.
        return environment;
    }
    Result<FilePath> trash(const FilePath &path) const { return TrashCan(environment()).trash(path); }
    /// With an empty volume on "volume".
    void onVolume(const std::function<void()> &body) const
    {
        inMountNamespace([&] {
            if (mountVolume(home.path("volume"), home.path("backing")))
                body();
        });
    }
    /// With memory as a volume on "memory", where there is never a trash.
    void onMemory(const char *options, const std::function<void()> &body) const
    {
        inMountNamespace([&] {
            if (mountTmpfs(home.path("memory"), options))
                body();
        });
    }

    TemporaryHome home;
};

} // namespace Quillmere
