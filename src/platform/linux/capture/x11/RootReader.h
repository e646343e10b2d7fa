#pragma once

#include "platform/linux/capture/ScreenRows.h"
#include "platform/linux/capture/x11/RootImage.h"
#include "platform/linux/capture/x11/TimedReplies.h"

#include <QByteArray>
#include <QRect>
#include <cstddef>
#include <memory>
#include <optional>
#include <vector>
#include <xcb/shm.h>
#include <xcb/xcb.h>

namespace amberquill::desktop {

// Memory that an X server writes pixels into (MIT-SHM 1.2, by a file descriptor: no segment remains when the
// program is killed).
class SharedPixels {
public:
    SharedPixels() = default;
    // Requests `size` shared bytes. `isShared` is false if there is not enough memory. If the server refuses,
    // the first request that uses the segment fails.
    SharedPixels(xcb_connection_t* connection, std::size_t size);
    SharedPixels(const SharedPixels&) = delete;
    SharedPixels& operator=(const SharedPixels&) = delete;
    ~SharedPixels();

    [[nodiscard]] bool isShared() const { return bytes_ != nullptr; }
    [[nodiscard]] const unsigned char* bytes() const { return bytes_; }
    [[nodiscard]] std::size_t size() const { return size_; }
    [[nodiscard]] xcb_shm_seg_t segment() const { return segment_; }

private:
    xcb_connection_t* connection_ = nullptr;
    unsigned char* bytes_ = nullptr;
    std::size_t size_ = 0;
    xcb_shm_seg_t segment_ = 0;
};

// Reads pixels of an X server's root window, on a connection of its own.
class RootReader {
public:
    // `display`: see X11ScreenCapture.
    explicit RootReader(const QByteArray& display);

    struct Wanted {
        int shrink;
        bool alsoWhole;
    };

    // Limits of the waits: for each reply, and for a whole reading.
    struct Patience {
        std::chrono::milliseconds forEach;
        std::chrono::milliseconds forAll;
    };

    // The part of the area inside the root window, or as many of its rows as arrive in time; no rows while
    // replies to an earlier reading are missing.
    [[nodiscard]] ScreenRows read(const QRect& area, const Wanted& wanted, bool sharesMemory,
                                  const Patience& patience);

    // The wallpaper of the area, small: a few rows of the pixmap that the root window names (_XROOTPMAP_ID).
    // Waits for missing replies first. Null: there is no such pixmap, or it does not arrive in time.
    [[nodiscard]] QImage wallpaper(const QRect& area, std::chrono::milliseconds patience);

    // Whether the connection to the server is lost.
    [[nodiscard]] bool isGone() const { return xcb_connection_has_error(get()) != 0; }

private:
    [[nodiscard]] xcb_connection_t* get() const { return connection_.get(); }
    [[nodiscard]] bool isFree();
    void end(const TimedReplies& replies);
    [[nodiscard]] std::optional<xcb_pixmap_t> rootPixmap(TimedReplies& replies) const;
    [[nodiscard]] QImage readWallpaper(const QRect& area, TimedReplies& replies);
    [[nodiscard]] const QRgb* unpacked(const unsigned char* bytes, int width);
    [[nodiscard]] bool isReadable(TimedReplies& replies);
    [[nodiscard]] bool shares(const QRect& area, TimedReplies& replies);
    [[nodiscard]] bool takesDescriptors(TimedReplies& replies) const;
    [[nodiscard]] bool isAttached(TimedReplies& replies) const;
    [[nodiscard]] int rowsIn(std::size_t bytes, int width) const;
    [[nodiscard]] xcb_shm_get_image_cookie_t getShared(const QRect& part, std::size_t offset) const;
    void readShared(const QRect& area, ScreenRows& screen, TimedReplies& replies);
    void readPlain(const QRect& area, ScreenRows& screen, TimedReplies& replies);
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
