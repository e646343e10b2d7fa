#pragma once

#include <cstdlib>
#include <unistd.h>

namespace amberquill {

// Gives up root's rights to files for the lifetime of the object: file modes do not apply to root. Changes
// nothing for other users.
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
