#pragma once

#include <QAbstractNativeEventFilter>
#include <xcb/xcb.h>

namespace amberquill::desktop {

// Whether Qt would mistake the event for a focus change: a focus event of a keyboard grab, during which the
// focus stays where it is, or the echo of our own _NET_ACTIVE_WINDOW request (`activeWindow`), granted or
// not.
[[nodiscard]] bool seemsToMoveFocus(const xcb_generic_event_t& event, xcb_atom_t activeWindow);

// Keeps such events from Qt while the filter exists. Qt reports a lost focus a tenth of a second after such
// an event, so the launcher would hide at each grabbed key of another program, and while its own shortcut is
// held. Constructed after the application object.
class FocusFilter final : public QAbstractNativeEventFilter {
public:
    explicit FocusFilter(xcb_atom_t activeWindow);

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    xcb_atom_t activeWindow_;
};

} // namespace amberquill::desktop
