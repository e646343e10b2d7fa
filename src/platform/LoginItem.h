#pragma once

namespace amberquill {

// Whether the launcher starts when the user logs in. Failures are silent: ask again to see the state.
class LoginItem {
public:
    LoginItem() = default;
    LoginItem(const LoginItem&) = delete;
    LoginItem& operator=(const LoginItem&) = delete;
    virtual ~LoginItem() = default;

    [[nodiscard]] virtual bool isEnabled() const = 0;
    virtual void enable() = 0;
    virtual void disable() = 0;
};

// A desktop that starts nothing at login.
class NullLoginItem final : public LoginItem {
public:
    [[nodiscard]] bool isEnabled() const override { return false; }
    void enable() override {}
    void disable() override {}
};

} // namespace amberquill
