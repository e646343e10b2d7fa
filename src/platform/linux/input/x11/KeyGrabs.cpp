#include "platform/linux/input/x11/KeyGrabs.h"

#include <algorithm>
#include <initializer_list>

namespace amberquill::desktop {

namespace {

// Key symbols by their names in the X protocol's appendix.
constexpr xcb_keysym_t altLeft = 0xffe9;
constexpr xcb_keysym_t altRight = 0xffea;
constexpr xcb_keysym_t metaLeft = 0xffe7;
constexpr xcb_keysym_t metaRight = 0xffe8;
constexpr xcb_keysym_t superLeft = 0xffeb;
constexpr xcb_keysym_t superRight = 0xffec;
constexpr xcb_keysym_t numLock = 0xff7f;
constexpr xcb_keysym_t scrollLock = 0xff14;

constexpr std::size_t firstFreeModifier = 3; // after Shift, Lock and Control, whose meanings are fixed

// The lower eight bits of a state; above them are pointer buttons and the layout.
constexpr std::uint16_t allModifiers = 0xff;

xcb_keysym_t symbol(const KeyboardMapping& mapping, std::size_t keyCode, std::size_t column) {
    const std::size_t index = (keyCode - mapping.firstKeyCode) * mapping.symbolsPerKey + column;
    const bool isThere =
        keyCode >= mapping.firstKeyCode && column < mapping.symbolsPerKey && index < mapping.symbols.size();
    return isThere ? mapping.symbols[index] : xcb_keysym_t{XCB_NO_SYMBOL};
}

// The mask of the modifiers that have a key with one of the symbols; 0: none.
std::uint16_t maskOf(const KeyboardMapping& mapping, std::initializer_list<xcb_keysym_t> wanted) {
    unsigned mask = 0;
    for (std::size_t modifier = firstFreeModifier; modifier < mapping.modifiers.size(); ++modifier) {
        for (const xcb_keycode_t key : mapping.modifiers[modifier]) {
            for (std::size_t column = 0; key != 0 && column < mapping.symbolsPerKey; ++column) {
                if (std::find(wanted.begin(), wanted.end(), symbol(mapping, key, column)) != wanted.end()) {
                    mask |= 1U << modifier;
                }
            }
        }
    }
    return static_cast<std::uint16_t>(mask);
}

std::uint16_t orElse(std::uint16_t mask, std::uint16_t usual) {
    return mask != 0 ? mask : usual;
}

std::vector<xcb_keycode_t> keyCodesOf(const KeyboardMapping& mapping, xcb_keysym_t wanted) {
    if (mapping.symbolsPerKey == 0) {
        return {};
    }
    // The symbols without Shift in the first two layouts.
    constexpr std::array<std::size_t, 2> columns = {0, 2};
    const std::size_t end =
        std::min<std::size_t>(mapping.firstKeyCode + mapping.symbols.size() / mapping.symbolsPerKey, 256);
    std::vector<xcb_keycode_t> found;
    for (std::size_t key = mapping.firstKeyCode; key < end; ++key) {
        if (std::any_of(columns.begin(), columns.end(),
                        [&](std::size_t column) { return symbol(mapping, key, column) == wanted; })) {
            found.push_back(static_cast<xcb_keycode_t>(key));
        }
    }
    return found;
}

xcb_keysym_t symbolOf(Qt::Key key) {
    // Latin key symbols and Qt's keys both equal character codes; for letters, key symbols use the small
    // letter and Qt the capital one.
    const auto code = static_cast<xcb_keysym_t>(key);
    return key >= Qt::Key_A && key <= Qt::Key_Z ? code + ('a' - 'A') : code;
}

} // namespace

KeyGrabs grabsOf(const KeyChord& chord, const KeyboardMapping& mapping) {
    KeyGrabs grabs;
    grabs.keyCodes = keyCodesOf(mapping, symbolOf(chord.key));
    unsigned modifiers = 0;
    if (chord.modifiers.testFlag(Qt::ShiftModifier)) {
        modifiers |= XCB_MOD_MASK_SHIFT;
    }
    if (chord.modifiers.testFlag(Qt::ControlModifier)) {
        modifiers |= XCB_MOD_MASK_CONTROL;
    }
    if (chord.modifiers.testFlag(Qt::AltModifier)) {
        const auto alt = maskOf(mapping, {altLeft, altRight});
        modifiers |= alt != 0 ? alt : orElse(maskOf(mapping, {metaLeft, metaRight}), XCB_MOD_MASK_1);
    }
    if (chord.modifiers.testFlag(Qt::MetaModifier)) {
        modifiers |= orElse(maskOf(mapping, {superLeft, superRight}), XCB_MOD_MASK_4);
    }
    grabs.modifiers = static_cast<std::uint16_t>(modifiers);

    const unsigned locks =
        (XCB_MOD_MASK_LOCK | maskOf(mapping, {numLock}) | maskOf(mapping, {scrollLock})) & ~modifiers;
    // All subsets of the mask, from the whole to none.
    for (unsigned subset = locks;; subset = (subset - 1) & locks) {
        grabs.locks.push_back(static_cast<std::uint16_t>(subset));
        if (subset == 0) {
            break;
        }
    }
    return grabs;
}

bool matches(const KeyGrabs& grabs, xcb_keycode_t keyCode, std::uint16_t state) {
    const auto others = static_cast<std::uint16_t>(state & allModifiers & ~grabs.modifiers);
    return (state & grabs.modifiers) == grabs.modifiers &&
           std::find(grabs.keyCodes.begin(), grabs.keyCodes.end(), keyCode) != grabs.keyCodes.end() &&
           std::find(grabs.locks.begin(), grabs.locks.end(), others) != grabs.locks.end();
}

bool ChordPresses::press(std::uint8_t keyCode, std::uint32_t time) {
    const bool repeats = key_ && key_->code == keyCode &&
                         (key_->isDown ? time - key_->time < longestSilence : time == key_->time);
    key_ = Key{keyCode, time, true};
    return !repeats;
}

bool ChordPresses::release(std::uint8_t keyCode, std::uint32_t time) {
    if (!key_ || key_->code != keyCode || !key_->isDown) {
        return false;
    }
    key_ = Key{keyCode, time, false};
    return true;
}

} // namespace amberquill::desktop
