#include "shell/HotKey.h"

#include <map>

namespace amberquill {

namespace {

// Also of hot keys that no longer exist: the service delivers none of their presses.
std::map<std::uint32_t, HotKey::Action>& actions() {
    static std::map<std::uint32_t, HotKey::Action> byId;
    return byId;
}

} // namespace

HotKey::HotKey(GlobalShortcut& service, const KeyChord& chord, std::uint32_t id, Action action)
    : service_(service)
    , id_(id) {
    installHandlerIfNeeded(service_);
    actions().insert_or_assign(id_, std::move(action));
    service_.add(id_, chord);
}

HotKey::~HotKey() {
    service_.remove(id_);
}

void HotKey::installHandlerIfNeeded(GlobalShortcut& service) {
    if (service.hasHandler()) {
        return;
    }
    service.setHandler([](std::uint32_t id) {
        const auto found = actions().find(id);
        if (found != actions().end() && found->second) {
            // A copy: the action may end its own hot key.
            const Action action = found->second;
            action();
        }
    });
}

} // namespace amberquill
