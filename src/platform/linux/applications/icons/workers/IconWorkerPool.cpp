#include "platform/linux/applications/icons/workers/IconWorkerPool.h"

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

Q_LOGGING_CATEGORY(poolLog, "amberquill.decoder", QtCriticalMsg)

// How often one file is tried again after failures that are not the file's.
constexpr int maximumStarved = IconWorker::maximumWaits;
constexpr int maximumKilled = 10;
constexpr int maximumStarts = 30; // that failed
// A file is undecodable when so many processes have crashed on it.
constexpr int maximumFailed = 2;
// After so many failed starts in a row there is a pause.
constexpr int maximumFailedStarts = 3;

// For the log. Null: not a failure.
const char* failureOf(DecodingAttempt::Kind kind) {
    using Kind = DecodingAttempt::Kind;
    switch (kind) {
    case Kind::Picture:
    case Kind::NoPicture:
    case Kind::NeedsFonts:
        break;
    case Kind::Failed:
        return "the process ended, or its answer was invalid";
    case Kind::TimedOut:
        return "it takes too long";
    case Kind::Starved:
        return "the process got too little processor time";
    case Kind::Killed:
        return "the process was killed";
    case Kind::StartFailed:
        return "the process was not ready in time";
    case Kind::StartKilled:
        return "the process was killed before it was ready";
    }
    return nullptr;
}

std::size_t countOr(int wanted, int usual) {
    return static_cast<std::size_t>(
        std::clamp(wanted > 0 ? wanted : usual, 1, IconWorkerPool::maximumWorkers));
}

} // namespace

IconWorkerPool::IconWorkerPool(Settings settings)
    : settings_(std::move(settings))
    , slots_(std::span(allSlots_).first(countOr(settings_.count, QThread::idealThreadCount()))) {}

IconWorkerPool::~IconWorkerPool() {
    shutDown();
}

DecodedFile IconWorkerPool::decode(std::span<const std::byte> file, int edge) {
    using Kind = DecodingAttempt::Kind;
    if (file.empty() || file.size() > std::size_t{maximumIconBytes} || edge < 1 || edge > maximumIconEdge) {
        return {DecodedFile::Kind::NoPicture, {}};
    }
    const FileDescriptor memory = sealedMemory(file);
    if (!memory.isOpen()) {
        return {};
    }
    const DecodingRequest request{static_cast<std::uint32_t>(edge), static_cast<std::uint32_t>(file.size())};
    Requirement requirement;
    int starved = 0;
    int killed = 0;
    int starts = 0;
    int failed = 0;
    while (starved < maximumStarved && killed < maximumKilled && starts < maximumStarts) {
        Slot* const slot = acquire(requirement);
        if (slot == nullptr) {
            break;
        }
        auto attempt = slot->worker->decode(memory, request);
        noteStart(attempt.kind);
        release(*slot, attempt.isUsable);
        if (const char* const failure = failureOf(attempt.kind)) {
            qCDebug(poolLog, "A file of %zu bytes was not decoded: %s", file.size(), failure);
        }
        switch (attempt.kind) {
        case Kind::Picture:
            return {DecodedFile::Kind::Picture, std::move(attempt.image)};
        case Kind::NoPicture:
            return {DecodedFile::Kind::NoPicture, {}};
        case Kind::NeedsFonts:
            requirement = {.fonts = true, .fresh = false};
            break;
        case Kind::Failed:
            if (++failed == maximumFailed) {
                return {DecodedFile::Kind::Undecodable, {}};
            }
            requirement.fresh = true;
            break;
        case Kind::TimedOut:
            return {DecodedFile::Kind::Undecodable, {}};
        case Kind::Starved:
            starved += attempt.waits;
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

void IconWorkerPool::prepare() {
    std::unique_lock lock(mutex_);
    for (Slot& slot : slots_.first(countOr(settings_.count, QThread::idealThreadCount() - 1))) {
        if (!isShutDown_ && !slot.isTaken && slot.worker == nullptr && settings_.now() >= pausedUntil_) {
            slot.isTaken = true;
            startIn(lock, slot);
            slot.isTaken = false;
        }
    }
    changed_.notify_all();
}

void IconWorkerPool::rest() {
    std::unique_lock lock(mutex_);
    for (Slot& slot : slots_) {
        if (!slot.isTaken && slot.worker != nullptr) {
            // The slot stays taken until its process has ended.
            slot.isTaken = true;
            clear(lock, slot);
            slot.isTaken = false;
        }
    }
    changed_.notify_all();
}

void IconWorkerPool::shutDown() {
    const std::lock_guard lock(mutex_);
    isShutDown_ = true;
    for (const Slot& slot : slots_) {
        if (slot.worker != nullptr) {
            slot.worker->interrupt();
        }
    }
    changed_.notify_all();
}

// Waits for a free process, or starts one. Null: none can be started, or the pool was shut down.
IconWorkerPool::Slot* IconWorkerPool::acquire(const Requirement& requirement) {
    // Polls: while one process starts, another may become free, and no system call waits for both.
    constexpr std::chrono::milliseconds pollInterval{1};
    std::unique_lock lock(mutex_);
    while (!isShutDown_) {
        Slot* const slot = bestFreeSlot(requirement);
        if (slot == nullptr) {
            changed_.wait(lock);
            continue;
        }
        const bool isSuitable = slot->worker != nullptr && !requirement.fresh &&
                                (slot->hasFonts || !requirement.fonts) && slot->worker->isHealthy();
        if (!isSuitable && settings_.now() < pausedUntil_) {
            break;
        }
        const bool mayWait = !requirement.fresh && !requirement.fonts && isAnyBusy();
        if (isSuitable && mayWait && slot->worker->isStarting()) {
            changed_.wait_for(lock, pollInterval);
            continue;
        }
        slot->isTaken = true;
        if (!isSuitable) {
            slot->hasFonts = requirement.fonts;
            const bool isStarted = startIn(lock, *slot);
            if (!isStarted || mayWait) {
                slot->isTaken = false;
                changed_.notify_all();
            }
            if (!isStarted) {
                break;
            }
            if (mayWait) {
                continue;
            }
        }
        return slot;
    }
    return nullptr;
}

// Whether a process is at work, for which a caller may wait.
bool IconWorkerPool::isAnyBusy() const {
    return std::any_of(slots_.begin(), slots_.end(),
                       [](const Slot& slot) { return slot.isTaken && slot.worker != nullptr; });
}

// Null: wait for a slot.
IconWorkerPool::Slot* IconWorkerPool::bestFreeSlot(const Requirement& requirement) {
    // At most one process has fonts.
    if (requirement.fonts) {
        const auto fonts =
            std::find_if(slots_.begin(), slots_.end(), [](const Slot& slot) { return slot.hasFonts; });
        if (fonts != slots_.end()) {
            return fonts->isTaken ? nullptr : &*fonts;
        }
    }
    const auto rank = [&requirement](const Slot& slot) {
        if (slot.worker == nullptr || !slot.worker->isHealthy()) {
            return 1;
        }
        if (!requirement.fresh && !requirement.fonts && slot.worker->isStarting()) {
            return 2;
        }
        // A process with fonts can decode any file. If a process must be replaced, it is the one without: it
        // starts faster.
        if (requirement.fresh || requirement.fonts) {
            return slot.hasFonts ? -1 : 0;
        }
        return slot.hasFonts ? 3 : 4;
    };
    Slot* best = nullptr;
    for (Slot& slot : slots_) {
        if (!slot.isTaken && (best == nullptr || rank(slot) > rank(*best))) {
            best = &slot;
        }
    }
    return best;
}

// Replaces the process in a slot that the caller has taken. False: the start failed, and a pause begins.
bool IconWorkerPool::startIn(std::unique_lock<std::mutex>& lock, Slot& slot) {
    auto former = std::move(slot.worker);
    const bool hasFonts = slot.hasFonts;
    lock.unlock();
    former.reset();
    auto worker = IconWorker::start(settings_.program, settings_.limits, settings_.processorTime, hasFonts);
    const int error = errno;
    lock.lock();
    if (worker == nullptr) {
        slot.hasFonts = false;
        pause(std::strerror(error));
        return false;
    }
    slot.worker = std::move(worker);
    if (isShutDown_) {
        slot.worker->interrupt();
    }
    return true;
}

// Ends the process in a slot that the caller has taken. Unlocks meanwhile, because this may take time.
void IconWorkerPool::clear(std::unique_lock<std::mutex>& lock, Slot& slot) {
    auto worker = std::move(slot.worker);
    lock.unlock();
    worker.reset();
    lock.lock();
    slot.hasFonts = false;
}

void IconWorkerPool::release(Slot& slot, bool isUsable) {
    std::unique_lock lock(mutex_);
    if (!isUsable) {
        clear(lock, slot);
    }
    slot.isTaken = false;
    changed_.notify_all();
}

void IconWorkerPool::noteStart(DecodingAttempt::Kind kind) {
    const std::lock_guard lock(mutex_);
    if (kind == DecodingAttempt::Kind::StartFailed) {
        if (++failedStarts_ >= maximumFailedStarts) {
            failedStarts_ = 0;
            pause("it is never ready");
        }
    } else if (kind != DecodingAttempt::Kind::StartKilled) {
        failedStarts_ = 0;
    }
}

void IconWorkerPool::pause(const char* reason) {
    pausedUntil_ = settings_.now() + settings_.pause;
    qCDebug(poolLog, "No process is started for a while: %s", reason);
    if (!isShutDown_ && !std::exchange(hasWarned_, true)) {
        qCWarning(poolLog, "Icons cannot be decoded: the program for it does not start: %s", reason);
    }
}

} // namespace amberquill::desktop
