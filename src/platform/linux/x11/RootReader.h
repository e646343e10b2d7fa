#pragma once

#include "platform/ScreenCapture.h"
#include "platform/linux/x11/RootImage.h"
#include "platform/linux/x11/SharedPixels.h"
#include "platform/linux/x11/TimedReplies.h"

#include <QByteArray>
#include <QRect>
#include <memory>
#include <optional>
#include <vector>

namespace amberquill::desktop {

class ScreenRows;

// Reads pixels of an X server's root window, on a connection of its own.
class RootReader {
public:
    // `display` as X11ScreenCapture's.
    explicit RootReader(const QByteArray& display);

    struct Wanted {
        int shrink;
        bool alsoWhole;
    };

    // The area as far as the root window has it, as ScreenCapture::capture. Null also while the server still
    // owes answers to an earlier reading.
    [[nodiscard]] ScreenPicture read(const QRect& area, const Wanted& wanted, bool sharesMemory,
                                     std::chrono::milliseconds patience);

private:
    [[nodiscard]] xcb_connection_t* get() const { return connection_.get(); }
    [[nodiscard]] bool isFree();
    [[nodiscard]] bool isReadable(TimedReplies& replies);
    [[nodiscard]] bool shares(const QRect& area, TimedReplies& replies);
    [[nodiscard]] bool takesDescriptors(TimedReplies& replies) const;
    [[nodiscard]] bool isAttached(TimedReplies& replies) const;
    [[nodiscard]] int rowsIn(std::size_t bytes, int width) const;
    [[nodiscard]] xcb_shm_get_image_cookie_t getShared(const QRect& part, std::size_t offset) const;
    [[nodiscard]] bool readShared(const QRect& area, ScreenRows& screen, TimedReplies& replies);
    [[nodiscard]] bool readPlain(const QRect& area, ScreenRows& screen, TimedReplies& replies);
    void add(ScreenRows& screen, const unsigned char* bytes, int height, int width);

    int screenNumber_ = 0;
    std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection_;
    std::unique_ptr<SharedPixels> pixels_;
    std::optional<bool> sharesMemory_; // none: not known yet
    std::optional<bool> isReadable_;   // none: not known yet
    xcb_window_t root_ = XCB_WINDOW_NONE;
    std::optional<RootImage> format_;
    std::optional<unsigned> unanswered_;
    std::vector<QRgb> unpacked_; // a row
};

} // namespace amberquill::desktop
