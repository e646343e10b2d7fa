// platform/linux/x11/: what several rooms need of the X protocol: replies that free themselves, and atoms.
// Each room speaks to the X server for itself; the connection is Qt's unless the room opens its own.
#pragma once

#include <array>
#include <cstdlib>
#include <memory>
#include <span>
#include <string_view>
#include <xcb/xcb.h>

namespace amberquill::desktop {

// xcb allocates its replies with malloc.
struct XcbFree {
    void operator()(void* reply) const { std::free(reply); } // NOLINT(cppcoreguidelines-no-malloc)
};

template<typename Reply>
using XcbReply = std::unique_ptr<Reply, XcbFree>;

// Asks for the atoms of all names in one round trip, creating those that do not exist. An atom the server
// does not answer for is XCB_ATOM_NONE. Both spans have the same size.
void internAtoms(xcb_connection_t* connection, std::span<const std::string_view> names,
                 std::span<xcb_atom_t> atoms);

template<std::size_t count>
[[nodiscard]] std::array<xcb_atom_t, count> internAtoms(xcb_connection_t* connection,
                                                        const std::array<std::string_view, count>& names) {
    std::array<xcb_atom_t, count> atoms{};
    internAtoms(connection, std::span<const std::string_view>(names), std::span(atoms));
    return atoms;
}

} // namespace amberquill::desktop
