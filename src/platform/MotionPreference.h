#pragma once

#include <functional>

namespace amberquill {

// Whether the user has asked the desktop for less motion. Main thread only.
class MotionPreference {
public:
    MotionPreference() = default;
    MotionPreference(const MotionPreference&) = delete;
    MotionPreference& operator=(const MotionPreference&) = delete;
    virtual ~MotionPreference() = default;

    // As known by now: false until follow() finds out otherwise.
    [[nodiscard]] virtual bool isReduced() const = 0;

    // Begins to ask the desktop, without waiting for the answer. From now on `changed` is called after each
    // change of isReduced(), the first one included.
    virtual void follow(std::function<void()> changed) = 0;
};

} // namespace amberquill
