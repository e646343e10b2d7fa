#include "platform/linux/tray/XEmbedTrays.h"

#include "support/TestXServer.h"

#include <QColor>
#include <QRect>
#include <array>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

constexpr std::uint32_t red = 0xC00000;
constexpr std::uint32_t blue = 0x0000C0;

class EmbeddedPictureTest : public testing::Test {
protected:
    // A mapped window of one colour.
    [[nodiscard]] xcb_window_t window(xcb_window_t parent, const QRect& place, std::uint32_t colour) const {
        const xcb_window_t window = xcb_generate_id(client_.get());
        const std::array<std::uint32_t, 2> values = {colour, 1};
        xcb_create_window(client_.get(), XCB_COPY_FROM_PARENT, window, parent,
                          static_cast<std::int16_t>(place.x()), static_cast<std::int16_t>(place.y()),
                          static_cast<std::uint16_t>(place.width()),
                          static_cast<std::uint16_t>(place.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
        xcb_map_window(client_.get(), window);
        return window;
    }

    [[nodiscard]] QImage picture(xcb_window_t window) const { return embeddedPicture(client_.get(), window); }

    TestXServer server_;
    XClient client_{server_};
    const xcb_window_t root_ = client_.screen().root;
    const xcb_window_t panel_ = window(root_, {100, 100, 200, 30}, red);
    const xcb_window_t holder_ = window(panel_, {50, 2, 24, 24}, red);
    const xcb_window_t item_ = window(holder_, {1, 1, 22, 22}, red);
};

} // namespace

TEST_F(EmbeddedPictureTest, ItShowsTheWindowAndItsBackground) {
    const xcb_window_t symbol = window(item_, {5, 5, 3, 3}, blue);
    ASSERT_NE(symbol, XCB_WINDOW_NONE);
    const QImage seen = picture(item_);
    EXPECT_EQ(seen.size(), QSize(22, 22));
    EXPECT_EQ(seen.pixelColor(4, 4), QColor::fromRgb(red));
    EXPECT_EQ(seen.pixelColor(5, 5), QColor::fromRgb(blue));
}

TEST_F(EmbeddedPictureTest, AWindowThatIsNotEmbeddedHasNoPicture) {
    EXPECT_TRUE(picture(panel_).isNull());
    EXPECT_TRUE(picture(root_).isNull());
}

TEST_F(EmbeddedPictureTest, APartlyHiddenWindowHasNoPicture) {
    EXPECT_TRUE(picture(window(panel_, {190, 2, 22, 22}, red)).isNull());
    xcb_unmap_window(client_.get(), panel_);
    EXPECT_TRUE(picture(item_).isNull());
}

TEST_F(EmbeddedPictureTest, ADestroyedWindowHasNoPicture) {
    xcb_destroy_window(client_.get(), panel_);
    EXPECT_TRUE(picture(item_).isNull());
}

TEST_F(EmbeddedPictureTest, OfALargeWindowOnlyASymbolsSizeIsRead) {
    const xcb_window_t large = window(window(root_, {0, 0, 640, 480}, red), {0, 0, 640, 480}, red);
    EXPECT_EQ(picture(large).size(), QSize(512, 480));
}

TEST_F(EmbeddedPictureTest, TooDeeplyNestedWindowsHaveNoPicture) {
    xcb_window_t innermost = panel_;
    for (int i = 0; i < 40; ++i) {
        innermost = window(innermost, {0, 0, 22, 22}, red);
    }
    EXPECT_TRUE(picture(innermost).isNull());
}
