#include "platform/linux/input/x11/X11ScrollDevices.h"

#include "platform/linux/x11/XcbReply.h"
#include "support/TestXServer.h"

#include <array>
#include <gtest/gtest.h>
#include <string_view>
#include <xcb/xinput.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

using Kind = ScrollDevice::Kind;

// The pointer of the XTEST extension, which every server has.
constexpr xcb_input_device_id_t pointer = 4;

class X11ScrollDevicesTest : public testing::Test {
protected:
    // Sets a property of the pointer, like a driver.
    void set(std::string_view name, std::uint8_t format, const std::vector<std::uint32_t>& values) {
        const auto atom = atomOf(name);
        std::vector<std::uint8_t> bytes;
        for (const std::uint32_t value : values) {
            for (unsigned shift = 0; shift < format; shift += 8) {
                bytes.push_back(static_cast<std::uint8_t>(value >> shift));
            }
        }
        const auto count = static_cast<std::uint32_t>(values.size());
        bytes.resize((bytes.size() + 3) / 4 * 4);
        xcb_input_xi_change_property(client_.get(), pointer, XCB_PROP_MODE_REPLACE, format, atom,
                                     XCB_ATOM_INTEGER, count, bytes.data());
        client_.sync();
    }

    xcb_atom_t atomOf(std::string_view name) {
        const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
            client_.get(),
            xcb_intern_atom(client_.get(), 0, static_cast<std::uint16_t>(name.size()), name.data()),
            nullptr));
        return reply->atom;
    }

    TestXServer server_;
    XClient client_{server_};
    X11ScrollDevices devices_{client_.get()};
};

constexpr std::string_view methods = "libinput Scroll Methods Available";
constexpr std::string_view distance = "libinput Scrolling Pixel Distance";

constexpr ScrollDevice wheel{Kind::Wheel, 15};
constexpr ScrollDevice touchpad{Kind::Touchpad, 15};

} // namespace

TEST_F(X11ScrollDevicesTest, ADeviceThatNoDriverMarksAsATouchpadIsAWheel) {
    EXPECT_EQ(devices_.device(pointer), wheel);
    set(methods, 8, {0, 0, 1});
    EXPECT_EQ(devices_.device(pointer), wheel) << "a pointing stick, or a mouse with a button for it";
}

TEST_F(X11ScrollDevicesTest, ADeviceThatScrollsByFingerIsATouchpad) {
    EXPECT_EQ(devices_.device(pointer), wheel);
    set(methods, 8, {1, 0, 0});
    EXPECT_EQ(devices_.device(pointer), touchpad);
    set(methods, 8, {0, 1, 0});
    EXPECT_EQ(devices_.device(pointer), touchpad) << "along an edge";
}

TEST_F(X11ScrollDevicesTest, ADeviceOfTheSynapticsDriverIsATouchpad) {
    set("Synaptics Capabilities", 8, {1, 1, 1, 1, 1, 0, 0});
    EXPECT_EQ(devices_.device(pointer), touchpad);
}

TEST_F(X11ScrollDevicesTest, TheDriversScrollDistanceIsTheLengthOfANotch) {
    set(methods, 8, {1, 1, 0});
    set(distance, 32, {50});
    EXPECT_EQ(devices_.device(pointer), (ScrollDevice{Kind::Touchpad, 50}));
}

TEST_F(X11ScrollDevicesTest, PropertiesOfAnotherFormatAreIgnored) {
    set(methods, 8, {1});
    EXPECT_EQ(devices_.device(pointer), wheel);
    set(methods, 32, {1, 1, 0});
    EXPECT_EQ(devices_.device(pointer), wheel);
    set(methods, 8, {1, 1, 0});
    for (const std::uint32_t points : {0U, 1001U, 0xFFFFFFFFU}) {
        set(distance, 32, {points});
        EXPECT_EQ(devices_.device(pointer), touchpad);
    }
    set(distance, 8, {50, 0, 0, 0});
    EXPECT_EQ(devices_.device(pointer), touchpad);
    set(distance, 32, {});
    EXPECT_EQ(devices_.device(pointer), touchpad);
}

TEST_F(X11ScrollDevicesTest, AMissingDeviceIsAWheel) {
    for (const qint64 id : {qint64{99}, qint64{-1}, qint64{1} << 40}) {
        EXPECT_EQ(devices_.device(id), wheel);
    }
}

TEST_F(X11ScrollDevicesTest, AfterTheServersEndEachDeviceIsAWheel) {
    EXPECT_EQ(devices_.device(pointer), wheel);
    server_.stop();
    EXPECT_EQ(devices_.device(pointer), wheel);
    EXPECT_EQ(X11ScrollDevices(client_.get()).device(pointer), wheel);
}
