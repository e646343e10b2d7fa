#pragma once

namespace amberquill {

// Whether the desktop asks its programs to move less.
class MotionPreference {
public:
    MotionPreference() = default;
    MotionPreference(const MotionPreference&) = delete;
    MotionPreference& operator=(const MotionPreference&) = delete;
    virtual ~MotionPreference() = default;

    [[nodiscard]] virtual bool reduced() const = 0;
};

class NullMotionPreference final : public MotionPreference {
public:
    [[nodiscard]] bool reduced() const override { return false; }
};

} // namespace amberquill
