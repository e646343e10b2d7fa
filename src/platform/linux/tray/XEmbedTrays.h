#pragma once

#include <QAbstractNativeEventFilter>
#include <QImage>
#include <array>
#include <functional>
#include <xcb/xcb.h>

namespace amberquill::desktop {

// Trays that embed windows, by the freedesktop "System Tray Protocol". Main thread only.
class XEmbedTrays final : public QAbstractNativeEventFilter {
public:
    // Calls `came` when a program becomes the screen's tray. The connection is Qt's.
    XEmbedTrays(xcb_connection_t* connection, std::function<void()> came);

    [[nodiscard]] bool isThere() const;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    [[nodiscard]] xcb_atom_t selection() const { return atoms_[0]; }
    [[nodiscard]] xcb_atom_t manager() const { return atoms_[1]; }

    xcb_connection_t* connection_;
    std::function<void()> came_;
    std::array<xcb_atom_t, 2> atoms_;
};

// The picture of an X window that is embedded in another program's window, with the background that shows
// behind it. In device pixels; transparent if the outermost window is. Null: the window is not embedded, not
// all of it is visible, or it cannot be read. Waits for the server's answers.
[[nodiscard]] QImage embeddedPicture(xcb_connection_t* connection, xcb_window_t window);

} // namespace amberquill::desktop
