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

    // As far as is known by now. False until follow() has found out otherwise.
    [[nodiscard]] virtual bool isReduced() const = 0;

    // Begins to find out, without waiting for it. From now on `changed` is called after each change of
    // isReduced(), the first one included.
    virtual void follow(std::function<void()> changed) = 0;
};

class NullMotionPreference final : public MotionPreference {
public:
    [[nodiscard]] bool isReduced() const override { return false; }
    void follow(std::function<void()>) override {}
};

} // namespace amberquill
