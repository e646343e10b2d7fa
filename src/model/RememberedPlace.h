#pragma once

#include <cstddef>
#include <optional>

namespace amberquill {

// Where something stands in the layout. After a change of the layout it is looked at where it stood or is
// expected, and only then searched for: a pointer moves a thousand times a second and the layout may hold
// many thousands of items.
class RememberedPlace {
public:
    // `version` tells one state of the layout from another; `isAt` says whether it stands at a place, which
    // may lie beyond the end; `find` searches for it.
    template<typename IsAt, typename Find>
    std::optional<std::size_t> in(unsigned version, IsAt isAt, Find find) {
        if (version_ != version) {
            version_ = version;
            if (!place_ || !isAt(*place_)) {
                place_ = find();
            }
        }
        return place_;
    }

    // It, or something else from now on, is most likely there.
    void expectAt(std::size_t place) {
        version_.reset();
        place_ = place;
    }

    // Something else is looked for from now on.
    void forget() {
        version_.reset();
        place_.reset();
    }

private:
    std::optional<unsigned> version_; // in which `place_` is known
    std::optional<std::size_t> place_;
};

} // namespace amberquill
