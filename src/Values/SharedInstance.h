#pragma once

#include <QtGlobal>

#include <atomic>

namespace Quillmere {

/// Where the one process-wide object of a kind is reached. The composition root makes the object, installs it here
/// before anything asks, and outlives everybody who does. Install on the GUI thread; asking is safe on any.
template<typename Object>
class SharedInstance
{
public:
    static void install(Object *object) { s_object.store(object, std::memory_order_release); }

    [[nodiscard]] static Object &get()
    {
        Object *object = s_object.load(std::memory_order_acquire);
        Q_ASSERT_X(object, "SharedInstance", "nothing was installed");
        return *object;
    }

private:
    inline static std::atomic<Object *> s_object = nullptr;
};

} // namespace Quillmere
