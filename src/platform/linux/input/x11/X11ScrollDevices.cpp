#include "platform/linux/input/x11/X11ScrollDevices.h"

#include "platform/linux/x11/XcbReply.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <xcb/xinput.h>

namespace amberquill::desktop {
namespace {

using PropertyReply = XcbReply<xcb_input_xi_get_property_reply_t>;

// libinput's default, also used for drivers that do not tell.
constexpr double usualPixelDistance = 15;
constexpr std::uint32_t longestPixelDistance = 1000;

[[nodiscard]] xcb_input_xi_get_property_cookie_t ask(xcb_connection_t* connection,
                                                     xcb_input_device_id_t device, xcb_atom_t property) {
    constexpr std::uint32_t words = 2;
    return xcb_input_xi_get_property(connection, device, 0, property, XCB_GET_PROPERTY_TYPE_ANY, 0, words);
}

[[nodiscard]] PropertyReply answer(xcb_connection_t* connection, xcb_input_xi_get_property_cookie_t cookie) {
    return PropertyReply(xcb_input_xi_get_property_reply(connection, cookie, nullptr));
}

// Whether the device scrolls by two fingers or at an edge, libinput's first two methods. The third method,
// scrolling while a button is held, is for mice and pointing sticks.
[[nodiscard]] bool scrollsByFinger(const xcb_input_xi_get_property_reply_t* methods) {
    if (methods == nullptr || methods->format != XCB_INPUT_PROPERTY_FORMAT_8_BITS || methods->num_items < 2) {
        return false;
    }
    const auto* available = static_cast<const std::uint8_t*>(xcb_input_xi_get_property_items(methods));
    return available[0] != 0 || available[1] != 0;
}

[[nodiscard]] double pixelDistance(const xcb_input_xi_get_property_reply_t* distance) {
    if (distance == nullptr || distance->format != XCB_INPUT_PROPERTY_FORMAT_32_BITS ||
        distance->num_items != 1) {
        return usualPixelDistance;
    }
    const auto points = *static_cast<const std::uint32_t*>(xcb_input_xi_get_property_items(distance));
    return points >= 1 && points <= longestPixelDistance ? points : usualPixelDistance;
}

} // namespace

X11ScrollDevices::X11ScrollDevices(xcb_connection_t* connection)
    : connection_(connection) {}

ScrollDevice X11ScrollDevices::device(qint64 systemId) const {
    const ScrollDevice wheel{ScrollDevice::Kind::Wheel, usualPixelDistance};
    const auto id = static_cast<xcb_input_device_id_t>(systemId);
    if (id != systemId || !names()) {
        return wheel;
    }
    const auto methodsAsked = ask(connection_, id, names()->scrollMethods);
    const auto distanceAsked = ask(connection_, id, names()->pixelDistance);
    const auto synapticsAsked = ask(connection_, id, names()->synaptics);
    const auto methods = answer(connection_, methodsAsked);
    const auto distance = answer(connection_, distanceAsked);
    const auto synaptics = answer(connection_, synapticsAsked);
    const bool isOfSynaptics = synaptics && synaptics->type != XCB_ATOM_NONE;
    if (!isOfSynaptics && !scrollsByFinger(methods.get())) {
        return wheel;
    }
    return {ScrollDevice::Kind::Touchpad, pixelDistance(distance.get())};
}

const std::optional<X11ScrollDevices::Names>& X11ScrollDevices::names() const {
    if (asked_) {
        return names_;
    }
    asked_ = true;
    const auto* extension = xcb_get_extension_data(connection_, &xcb_input_id);
    if (extension == nullptr || extension->present == 0) {
        return names_;
    }
    constexpr std::array<std::string_view, 3> texts{
        "libinput Scroll Methods Available", "libinput Scrolling Pixel Distance", "Synaptics Capabilities"};
    const auto atoms = internAtoms(connection_, texts);
    if (std::find(atoms.begin(), atoms.end(), xcb_atom_t{XCB_ATOM_NONE}) == atoms.end()) {
        names_ = {atoms[0], atoms[1], atoms[2]};
    }
    return names_;
}

} // namespace amberquill::desktop
