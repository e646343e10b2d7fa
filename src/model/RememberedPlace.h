#pragma once

#include <cstddef>
#include <optional>

namespace amberquill {

// Where something stands in the layout. It is looked for once, and again only after the layout has changed:
// a pointer moves a thousand times a second and the layout may hold many thousands of items.
class RememberedPlace {
public:
    // `version` tells one state of the layout from another; `find` looks for the place.
    template<typename Find>
    std::optional<std::size_t> in(unsigned version, Find find) {
        if (version_ != version) {
            place_ = find();
            version_ = version;
        }
        return place_;
    }

    // Something else is looked for from now on.
    void forget() { version_.reset(); }

private:
    std::optional<unsigned> version_;
    std::optional<std::size_t> place_;
};

} // namespace amberquill
