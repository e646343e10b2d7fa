#include "platform/linux/applications/icons/IconWorkers.h"

#include "platform/linux/decoder/channel/DecodingMessages.h"
#include "platform/linux/decoder/channel/IconBounds.h"
#include "platform/linux/decoder/channel/SharedMemory.h"

#include <QLoggingCategory>
#include <QThread>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace amberquill::desktop {

namespace {

Q_LOGGING_CATEGORY(iconLog, "amberquill.icons", QtCriticalMsg)

// How often one file is tried where that it failed says nothing about the file.
constexpr int mostStarved = 5;
constexpr int mostKilled = 10;
constexpr int mostStarts = 30; // that come to nothing
// How many processes a file ends before it is undecodable.
constexpr int mostFailed = 2;
// How often in a row a process is not ready before it is given a pause.
constexpr int mostFailedStarts = 3;

std::size_t countOr(int wanted, int usual) {
    return static_cast<std::size_t>(std::clamp(wanted > 0 ? wanted : usual, 1, IconWorkers::most));
}

} // namespace

IconWorkers::IconWorkers(Settings settings)
    : settings_(std::move(settings))
    , places_(std::span(allPlaces_).first(countOr(settings_.count, QThread::idealThreadCount()))) {}

IconWorkers::~IconWorkers() {
    end();
}

DecodedFile IconWorkers::decode(std::span<const std::byte> file, int edge) {
    using Kind = DecodingAttempt::Kind;
    if (file.empty() || file.size() > std::size_t{largestIconBytes} || edge < 1 || edge > largestIconEdge) {
        return {DecodedFile::Kind::NoPicture, {}};
    }
    const FileDescriptor memory = sealedMemory(file);
    if (!memory.isOpen()) {
        return {};
    }
    const DecodingRequest request{static_cast<std::uint32_t>(edge), static_cast<std::uint32_t>(file.size())};
    Need need;
    int starved = 0;
    int killed = 0;
    int starts = 0;
    int failed = 0;
    while (starved < mostStarved && killed < mostKilled && starts < mostStarts) {
        Place* const place = take(need);
        if (place == nullptr) {
            break;
        }
        auto attempt = place->worker->decode(memory, request);
        noteStart(attempt.kind);
        giveBack(*place, attempt.isUsable);
        switch (attempt.kind) {
        case Kind::Picture:
            return {DecodedFile::Kind::Picture, std::move(attempt.image)};
        case Kind::NoPicture:
            return {DecodedFile::Kind::NoPicture, {}};
        case Kind::NeedsFonts:
            need = {.fonts = true, .fresh = false};
            break;
        case Kind::Failed:
            if (++failed == mostFailed) {
                return {DecodedFile::Kind::Undecodable, {}};
            }
            need.fresh = true;
            break;
        case Kind::Overran:
            return {DecodedFile::Kind::Undecodable, {}};
        case Kind::Starved:
            ++starved;
            break;
        case Kind::Killed:
            ++killed;
            break;
        case Kind::StartFailed:
        case Kind::StartKilled:
            ++starts;
            break;
        }
    }
    return {};
}

void IconWorkers::prepare() {
    std::unique_lock lock(mutex_);
    for (Place& place : places_.first(countOr(settings_.count, QThread::idealThreadCount() - 1))) {
        if (!hasEnded_ && !place.isTaken && place.worker == nullptr && settings_.now() >= pausedUntil_) {
            place.isTaken = true;
            startIn(lock, place);
            place.isTaken = false;
        }
    }
    changed_.notify_all();
}

void IconWorkers::rest() {
    std::unique_lock lock(mutex_);
    for (Place& place : places_) {
        if (!place.isTaken && place.worker != nullptr) {
            // It keeps its place until it is gone.
            place.isTaken = true;
            clear(lock, place);
            place.isTaken = false;
        }
    }
    changed_.notify_all();
}

void IconWorkers::end() {
    const std::lock_guard lock(mutex_);
    hasEnded_ = true;
    for (const Place& place : places_) {
        if (place.worker != nullptr) {
            place.worker->interrupt();
        }
    }
    changed_.notify_all();
}

// Null: there is no process to be had.
IconWorkers::Place* IconWorkers::take(const Need& need) {
    // While one starts, another may become free. No call waits for both.
    constexpr std::chrono::milliseconds look{1};
    std::unique_lock lock(mutex_);
    while (!hasEnded_) {
        Place* const place = bestPlace(need);
        if (place == nullptr) {
            changed_.wait(lock);
            continue;
        }
        const bool serves = place->worker != nullptr && !need.fresh && (place->hasFonts || !need.fonts) &&
                            place->worker->isWell();
        if (!serves && settings_.now() < pausedUntil_) {
            break;
        }
        const bool mayWait = !need.fresh && !need.fonts && isOneBusy();
        if (serves && mayWait && place->worker->isStarting()) {
            changed_.wait_for(lock, look);
            continue;
        }
        place->isTaken = true;
        if (!serves) {
            place->hasFonts = need.fonts;
            const bool isStarted = startIn(lock, *place);
            if (!isStarted || mayWait) {
                place->isTaken = false;
                changed_.notify_all();
            }
            if (!isStarted) {
                break;
            }
            if (mayWait) {
                continue;
            }
        }
        return place;
    }
    return nullptr;
}

// Whether a process that can be waited for is at work.
bool IconWorkers::isOneBusy() const {
    return std::any_of(places_.begin(), places_.end(),
                       [](const Place& place) { return place.isTaken && place.worker != nullptr; });
}

// The best of those that are free. Null: wait.
IconWorkers::Place* IconWorkers::bestPlace(const Need& need) {
    // One with fonts is enough.
    if (need.fonts) {
        const auto fonts =
            std::find_if(places_.begin(), places_.end(), [](const Place& place) { return place.hasFonts; });
        if (fonts != places_.end()) {
            return fonts->isTaken ? nullptr : &*fonts;
        }
    }
    const auto worth = [&need](const Place& place) {
        if (place.worker == nullptr || !place.worker->isWell()) {
            return 1;
        }
        if (!need.fresh && !need.fonts && place.worker->isStarting()) {
            return 2;
        }
        // One with fonts can do all that others do; when one must go, it is the one that starts fast.
        if (need.fresh || need.fonts) {
            return place.hasFonts ? -1 : 0;
        }
        return place.hasFonts ? 3 : 4;
    };
    Place* best = nullptr;
    for (Place& place : places_) {
        if (!place.isTaken && (best == nullptr || worth(place) > worth(*best))) {
            best = &place;
        }
    }
    return best;
}

// The place is taken. What is in it goes. False: nothing takes its place, and there is a pause now.
bool IconWorkers::startIn(std::unique_lock<std::mutex>& lock, Place& place) {
    auto former = std::move(place.worker);
    const bool hasFonts = place.hasFonts;
    lock.unlock();
    former.reset();
    auto worker = IconWorker::start(settings_.program, settings_.limits, settings_.processorTime, hasFonts);
    const int error = errno;
    lock.lock();
    if (worker == nullptr) {
        place.hasFonts = false;
        pause(std::strerror(error));
        return false;
    }
    place.worker = std::move(worker);
    if (hasEnded_) {
        place.worker->interrupt();
    }
    return true;
}

// The place is taken. Others go on while its process ends.
void IconWorkers::clear(std::unique_lock<std::mutex>& lock, Place& place) {
    auto worker = std::move(place.worker);
    lock.unlock();
    worker.reset();
    lock.lock();
    place.hasFonts = false;
}

void IconWorkers::giveBack(Place& place, bool isUsable) {
    std::unique_lock lock(mutex_);
    if (!isUsable) {
        clear(lock, place);
    }
    place.isTaken = false;
    changed_.notify_all();
}

void IconWorkers::noteStart(DecodingAttempt::Kind kind) {
    const std::lock_guard lock(mutex_);
    if (kind == DecodingAttempt::Kind::StartFailed) {
        if (++failedStarts_ >= mostFailedStarts) {
            failedStarts_ = 0;
            pause("it is never ready");
        }
    } else if (kind != DecodingAttempt::Kind::StartKilled) {
        failedStarts_ = 0;
    }
}

void IconWorkers::pause(const char* why) {
    pausedUntil_ = settings_.now() + settings_.pause;
    if (!hasEnded_ && !std::exchange(hasWarned_, true)) {
        qCWarning(iconLog, "Icons cannot be decoded: the program for it does not start: %s", why);
    }
}

} // namespace amberquill::desktop
