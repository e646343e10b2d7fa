#pragma once

#include <functional>

namespace amberquill {

// The desktop's trays, which may come late, come back or never come. Main thread only.
class TrayHosts {
public:
    TrayHosts() = default;
    TrayHosts(const TrayHosts&) = delete;
    TrayHosts& operator=(const TrayHosts&) = delete;
    virtual ~TrayHosts() = default;

    // Calls `came` when there is a tray: soon, where there is one now, and each time that one comes.
    virtual void follow(std::function<void()> came) = 0;
};

// A desktop whose trays tell nothing: one is taken to be there.
class NullTrayHosts final : public TrayHosts {
public:
    void follow(std::function<void()> came) override { came(); }
};

} // namespace amberquill
