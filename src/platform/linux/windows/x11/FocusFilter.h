#pragma once

#include <QAbstractNativeEventFilter>
#include <xcb/xcb.h>

namespace amberquill::desktop {

// Whether Qt would take the event for a change of the focus that it is not: it tells that a grab of the
// keyboard has begun or ended, while whatever window has the focus keeps it; or it is the echo of our own
// wish to a window manager for the focus (a message `activeWindow`, _NET_ACTIVE_WINDOW), whether granted or
// not.
[[nodiscard]] bool seemsToMoveFocus(const xcb_generic_event_t& event, xcb_atom_t activeWindow);

// Keeps such events from Qt. A focus that stays away for a tenth of a second is lost for Qt: the launcher
// would be left for every key of another program, and for its own that is held for long. While it lives; made
// after the application object.
class FocusFilter final : public QAbstractNativeEventFilter {
public:
    explicit FocusFilter(xcb_atom_t activeWindow);

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    xcb_atom_t activeWindow_;
};

} // namespace amberquill::desktop
