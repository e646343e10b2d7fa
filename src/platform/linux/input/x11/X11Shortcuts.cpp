#include "platform/linux/input/x11/X11Shortcuts.h"

#include "platform/linux/input/InputDevices.h"
#include "platform/linux/x11/XcbReply.h"

#include <string_view>

namespace amberquill::desktop {

namespace {

// The second byte of the keyboard extension's events.
constexpr std::uint8_t newKeyboard = 0;
constexpr std::uint8_t newMapping = 1;

} // namespace

X11Shortcuts::X11Shortcuts(xcb_connection_t* connection, xcb_window_t root, MainQueue& queue)
    : connection_(connection)
    , root_(root)
    , queue_(queue) {
    constexpr std::string_view name = "XKEYBOARD";
    const XcbReply<xcb_query_extension_reply_t> extension(xcb_query_extension_reply(
        connection_, xcb_query_extension(connection_, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    if (extension && extension->present != 0) {
        keyboardEvent_ = extension->first_event;
    }
}

X11Shortcuts::~X11Shortcuts() {
    for (const auto& [id, shortcut] : shortcuts_) {
        release(shortcut.grabs);
    }
}

void X11Shortcuts::add(std::uint32_t id, const KeyChord& chord) {
    remove(id);
    const Shortcut& added =
        shortcuts_.insert_or_assign(id, Shortcut{chord, grabsOf(chord, keyboard()), {}}).first->second;
    grab(added.grabs);
}

void X11Shortcuts::remove(std::uint32_t id) {
    if (const auto found = shortcuts_.find(id); found != shortcuts_.end()) {
        release(found->second.grabs);
        shortcuts_.erase(found);
    }
}

bool X11Shortcuts::handle(const xcb_generic_event_t& event) {
    // Events sent by other programs have an additional bit set, so they match none of these cases.
    switch (event.response_type) {
    case XCB_KEY_PRESS:
    case XCB_KEY_RELEASE:
        return handleKey(reinterpret_cast<const xcb_key_press_event_t&>(event),
                         event.response_type == XCB_KEY_PRESS);
    case XCB_MAPPING_NOTIFY:
        followKeyboardLater();
        return false;
    default:
        // Clients of the keyboard extension, such as Qt, get its events instead of MappingNotify.
        if (keyboardEvent_ != 0 && event.response_type == keyboardEvent_ &&
            (event.pad0 == newKeyboard || event.pad0 == newMapping)) {
            followKeyboardLater();
        }
        return false;
    }
}

bool X11Shortcuts::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
    return eventType == "xcb_generic_event_t" && handle(*static_cast<const xcb_generic_event_t*>(message));
}

bool X11Shortcuts::handleKey(const xcb_key_press_event_t& event, bool isPress) {
    for (auto& [id, shortcut] : shortcuts_) {
        if (!isPress && shortcut.presses.release(event.detail, event.time)) {
            return true;
        }
        if (isPress && matches(shortcut.grabs, event.detail, event.state)) {
            if (shortcut.presses.press(event.detail, event.time)) {
                deliverLater(id, event.time);
            }
            return true;
        }
    }
    return false;
}

// Queued, so that Qt first delivers the focus changes that it has already read.
void X11Shortcuts::deliverLater(std::uint32_t id, std::uint32_t time) {
    queue_.then(context_, [this, id, time] {
        if (shortcuts_.contains(id)) {
            deliver(id, {.time = UserTime{time}});
        }
    });
}

// Delayed, because one change of the keyboard sends many events.
void X11Shortcuts::followKeyboardLater() {
    if (std::exchange(followIsDue_, true)) {
        return;
    }
    queue_.then(context_, [this] {
        followIsDue_ = false;
        followKeyboard();
    });
}

void X11Shortcuts::followKeyboard() {
    if (shortcuts_.empty()) {
        return;
    }
    const KeyboardMapping now = keyboard();
    for (auto& [id, shortcut] : shortcuts_) {
        KeyGrabs grabs = grabsOf(shortcut.chord, now);
        if (grabs != shortcut.grabs) {
            release(shortcut.grabs);
            shortcut.grabs = std::move(grabs);
            grab(shortcut.grabs);
            qCDebug(inputLog) << "the keyboard has changed; the chord is on" << shortcut.grabs.keyCodes;
        }
    }
}

void X11Shortcuts::grab(const KeyGrabs& grabs) {
    std::vector<xcb_void_cookie_t> asked;
    for (const xcb_keycode_t key : grabs.keyCodes) {
        for (const std::uint16_t lock : grabs.locks) {
            // owner_events: while the chord is held, other keys go to our window with the focus as without
            // the grab.
            asked.push_back(xcb_grab_key_checked(connection_, 1, root_,
                                                 static_cast<std::uint16_t>(grabs.modifiers | lock), key,
                                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        }
    }
    for (const xcb_void_cookie_t cookie : asked) {
        if (const XcbReply<xcb_generic_error_t> refusal{xcb_request_check(connection_, cookie)}) {
            qCDebug(inputLog) << "key grab refused: X error" << refusal->error_code;
        }
    }
}

void X11Shortcuts::release(const KeyGrabs& grabs) {
    for (const xcb_keycode_t key : grabs.keyCodes) {
        for (const std::uint16_t lock : grabs.locks) {
            const auto asked = xcb_ungrab_key_checked(connection_, key, root_,
                                                      static_cast<std::uint16_t>(grabs.modifiers | lock));
            xcb_discard_reply(connection_, asked.sequence);
        }
    }
    xcb_flush(connection_);
}

// One round trip.
KeyboardMapping X11Shortcuts::keyboard() const {
    const xcb_setup_t& setup = *xcb_get_setup(connection_);
    const auto count = static_cast<std::uint8_t>(setup.max_keycode - setup.min_keycode + 1);
    const auto symbolsAsked = xcb_get_keyboard_mapping(connection_, setup.min_keycode, count);
    const auto modifiersAsked = xcb_get_modifier_mapping(connection_);
    const XcbReply<xcb_get_keyboard_mapping_reply_t> symbols(
        xcb_get_keyboard_mapping_reply(connection_, symbolsAsked, nullptr));
    const XcbReply<xcb_get_modifier_mapping_reply_t> modifiers(
        xcb_get_modifier_mapping_reply(connection_, modifiersAsked, nullptr));
    KeyboardMapping mapping;
    mapping.firstKeyCode = setup.min_keycode;
    if (symbols) {
        const xcb_keysym_t* const first = xcb_get_keyboard_mapping_keysyms(symbols.get());
        mapping.symbolsPerKey = symbols->keysyms_per_keycode;
        mapping.symbols.assign(first, first + xcb_get_keyboard_mapping_keysyms_length(symbols.get()));
    }
    if (modifiers) {
        const xcb_keycode_t* key = xcb_get_modifier_mapping_keycodes(modifiers.get());
        for (auto& keys : mapping.modifiers) {
            keys.assign(key, key + modifiers->keycodes_per_modifier);
            key += modifiers->keycodes_per_modifier;
        }
    }
    return mapping;
}

} // namespace amberquill::desktop
