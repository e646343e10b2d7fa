#pragma once

#include <cstdlib>
#include <unistd.h>

namespace amberquill {

// While it lives, files are opened as by an ordinary user: file modes keep root out of nothing. Does nothing
// for who is an ordinary user already.
class OrdinaryUser {
public:
    OrdinaryUser() {
        constexpr uid_t nobody = 65534;
        changed_ = ::geteuid() == 0 && ::seteuid(nobody) == 0;
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() {
        if (changed_ && ::seteuid(0) != 0) {
            std::abort();
        }
    }

private:
    bool changed_ = false;
};

} // namespace amberquill
