#pragma once

#include "platform/UserTime.h"

#include <QString>
#include <Qt>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

namespace amberquill {

// A key with the modifiers that are held meanwhile.
struct KeyChord {
    Qt::Key key = Qt::Key_unknown;
    Qt::KeyboardModifiers modifiers;

    bool operator==(const KeyChord&) const = default;
};

// What lets the program come to the front for a press of a shortcut.
struct PressOrigin {
    QString token = {};                // an activation token; empty: none
    std::optional<UserTime> time = {}; // none: not known

    bool operator==(const PressOrigin&) const = default;
};

// Keys that reach the program whatever window has the focus. Main thread only. A chord that the desktop
// refuses, for instance because another program has it, is never delivered; nothing else tells of it.
class GlobalShortcut {
public:
    using Handler = std::function<void(std::uint32_t id)>;

    GlobalShortcut() = default;
    GlobalShortcut(const GlobalShortcut&) = delete;
    GlobalShortcut& operator=(const GlobalShortcut&) = delete;
    virtual ~GlobalShortcut() = default;

    // From now on each press of the chord is delivered under the id, once, however long it is held.
    virtual void add(std::uint32_t id, const KeyChord& chord) = 0;

    // Presses under this id are no longer delivered. Ids that were not added are ignored.
    virtual void remove(std::uint32_t id) = 0;

    // The desktop's service for shortcuts may be back after it had gone: registers the chords again.
    virtual void serviceCameBack() {}

    // There is one handler for all ids.
    [[nodiscard]] bool hasHandler() const { return handler_ != nullptr; }
    void setHandler(Handler handler) { handler_ = std::move(handler); }

    // Valid while a press is delivered.
    [[nodiscard]] const PressOrigin& origin() const { return origin_; }

protected:
    void deliver(std::uint32_t id, PressOrigin origin) {
        origin_ = std::move(origin);
        if (handler_) {
            handler_(id);
        }
        origin_ = {};
    }

private:
    Handler handler_;
    PressOrigin origin_;
};

// A desktop without such keys.
class NullGlobalShortcut final : public GlobalShortcut {
public:
    void add(std::uint32_t /*id*/, const KeyChord& /*chord*/) override {}
    void remove(std::uint32_t /*id*/) override {}
};

} // namespace amberquill
