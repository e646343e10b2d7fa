// platform/linux/x11/: X protocol helpers that several rooms share.
//
// Parts: XcbReply, a reply that frees itself; internAtoms, the atoms of names in one round trip.
//
// Rules: rooms use Qt's connection unless their header says otherwise. A null reply means that the server
// refused the request or the connection is lost; the caller goes on without it. Log: amberquill.x11.
#pragma once

#include <QLoggingCategory>
#include <array>
#include <cstdlib>
#include <memory>
#include <span>
#include <string_view>
#include <xcb/xcb.h>

namespace amberquill::desktop {

Q_DECLARE_LOGGING_CATEGORY(x11Log)

// xcb allocates its replies with malloc.
struct XcbFree {
    void operator()(void* reply) const { std::free(reply); } // NOLINT(cppcoreguidelines-no-malloc)
};

template<typename Reply>
using XcbReply = std::unique_ptr<Reply, XcbFree>;

// Interns the atoms of all names in one round trip, creating those that do not exist. An atom is
// XCB_ATOM_NONE if the server does not answer. Both spans have the same size.
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
