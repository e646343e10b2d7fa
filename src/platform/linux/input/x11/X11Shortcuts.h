#pragma once

#include "platform/GlobalShortcut.h"
#include "platform/MainQueue.h"
#include "platform/linux/input/x11/KeyGrabs.h"

#include <QAbstractNativeEventFilter>
#include <map>

namespace amberquill::desktop {

// Global shortcuts by key grabs on the root window of an X server. Gets the connection's events as a native
// event filter of Qt, or from `handle`.
class X11Shortcuts final : public GlobalShortcut, public QAbstractNativeEventFilter {
public:
    // The connection and the queue outlive this object. Renews the grabs when the keyboard mapping changes.
    X11Shortcuts(xcb_connection_t* connection, xcb_window_t root, MainQueue& queue);
    ~X11Shortcuts() override;
    X11Shortcuts(const X11Shortcuts&) = delete;
    X11Shortcuts& operator=(const X11Shortcuts&) = delete;

    void add(std::uint32_t id, const KeyChord& chord) override;
    void remove(std::uint32_t id) override;

    // Handles the event. True: it belongs to a chord, so nothing else may handle it.
    bool handle(const xcb_generic_event_t& event);

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    struct Shortcut {
        KeyChord chord;
        KeyGrabs grabs;
        ChordPresses presses;
    };

    bool handleKey(const xcb_key_press_event_t& event, bool isPress);
    void deliverLater(std::uint32_t id, std::uint32_t time);
    void followKeyboardLater();
    void followKeyboard();
    void grab(const KeyGrabs& grabs);
    void release(const KeyGrabs& grabs);
    [[nodiscard]] KeyboardMapping keyboard() const;

    xcb_connection_t* connection_;
    xcb_window_t root_;
    MainQueue& queue_;
    std::uint8_t keyboardEvent_ = 0; // the type of the keyboard extension's events; 0: there is none
    std::map<std::uint32_t, Shortcut> shortcuts_;
    bool followIsDue_ = false;
    Context context_;
};

} // namespace amberquill::desktop
