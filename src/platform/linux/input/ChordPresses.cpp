#include "platform/linux/input/ChordPresses.h"

namespace amberquill::desktop {

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
