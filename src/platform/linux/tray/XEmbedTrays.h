#pragma once

#include <QAbstractNativeEventFilter>
#include <functional>
#include <xcb/xcb.h>

namespace amberquill::desktop {

// Trays that take windows into themselves, by the freedesktop "System Tray Protocol". Main thread only.
class XEmbedTrays final : public QAbstractNativeEventFilter {
public:
    // Calls `came` when one takes the place of the screen's tray. The connection is Qt's.
    XEmbedTrays(xcb_connection_t* connection, std::function<void()> came);

    [[nodiscard]] bool isThere() const;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    xcb_connection_t* connection_;
    std::function<void()> came_;
    xcb_atom_t selection_;
    xcb_atom_t manager_;
};

} // namespace amberquill::desktop
