#pragma once

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace amberquill::desktop {

// What xcb answers is the caller's to free.
struct XcbFree {
    void operator()(void* answer) const { std::free(answer); } // NOLINT(cppcoreguidelines-no-malloc)
};

template<typename Reply>
using XcbReply = std::unique_ptr<Reply, XcbFree>;

} // namespace amberquill::desktop
