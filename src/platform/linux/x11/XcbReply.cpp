#include "platform/linux/x11/XcbReply.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace amberquill::desktop {

Q_LOGGING_CATEGORY(x11Log, "amberquill.x11", QtCriticalMsg)

void internAtoms(xcb_connection_t* connection, std::span<const std::string_view> names,
                 std::span<xcb_atom_t> atoms) {
    std::vector<xcb_intern_atom_cookie_t> cookies(names.size());
    std::transform(names.begin(), names.end(), cookies.begin(), [connection](std::string_view name) {
        return xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    });
    std::transform(
        cookies.begin(), cookies.end(), atoms.begin(), [connection](xcb_intern_atom_cookie_t cookie) {
            const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
            return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
        });
    if (std::find(atoms.begin(), atoms.end(), xcb_atom_t{XCB_ATOM_NONE}) != atoms.end()) {
        qCDebug(x11Log) << "the server has not given all atoms";
    }
}

} // namespace amberquill::desktop
