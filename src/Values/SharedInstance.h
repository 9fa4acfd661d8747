#pragma once

#include <QtGlobal>

namespace Quillmere {

/// Where the one process-wide object of a kind is reached. The composition root makes the object, installs it here
/// before anything asks, and outlives everybody who does. Install on the GUI thread; asking is safe on any.
template<typename Object>
class SharedInstance
{
public:
    static void install(Object *object) { s_object = object; }

    [[nodiscard]] static Object &get()
    {
        Q_ASSERT_X(s_object, "SharedInstance", "nothing was installed");
        return *s_object;
    }

private:
    inline static Object *s_object = nullptr;
};

} // namespace Quillmere
