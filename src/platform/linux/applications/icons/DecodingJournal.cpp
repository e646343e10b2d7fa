#include "platform/linux/applications/icons/DecodingJournal.h"

#include "platform/linux/files/AtomicWriter.h"
#include "platform/linux/files/RegularFile.h"

#include <fcntl.h>
#include <sys/file.h>

namespace amberquill::desktop {

namespace {

constexpr std::size_t rememberedHarmless = 10'000;
constexpr qsizetype maximumSuspectBytes = qsizetype{4} * 1024 * 1024;

// The right to change the list of suspects. Not waited for: a process that has it may be stopped.
FileDescriptor lockedFolder(const std::string& folder) {
    FileDescriptor lock(::open((folder + "/lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (lock.isOpen() && ::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
        lock.close();
    }
    return lock;
}

std::string suspectsFile(const std::string& folder) {
    return folder + "/suspects";
}

DecodingSuspects readSuspects(const std::string& folder) {
    QByteArray buffer;
    const auto text = readRegularFile(AT_FDCWD, suspectsFile(folder).c_str(), maximumSuspectBytes, buffer);
    return text ? DecodingSuspects::read(*text) : DecodingSuspects();
}

void writeSuspects(const std::string& folder, const DecodingSuspects& suspects) {
    const auto path = QByteArray::fromStdString(suspectsFile(folder));
    if (suspects.isEmpty()) {
        ::unlink(path.constData());
    } else {
        static_cast<void>(replaceFile(path, suspects.written()));
    }
}

} // namespace

DecodingJournal::DecodingJournal(const std::string& folder)
    : folder_(folder)
    , notes_(folder) {}

void DecodingJournal::start() {
    suspects_ = readSuspects(folder_);
    const auto lock = lockedFolder(folder_);
    if (!lock.isOpen()) {
        return; // no folder yet, or another process is at it
    }
    const auto deaths = takeAbandonedNotes(folder_);
    if (!deaths.empty()) {
        suspects_ = readSuspects(folder_);
        for (const auto& notes : deaths) {
            suspects_.addDeath(notes);
        }
        writeSuspects(folder_, suspects_);
    }
}

std::pair<bool, DecodingSuspects::Standing> DecodingJournal::judged(const FileState& file) {
    const std::lock_guard lock(mutex_);
    return {harmless_.contains(file), suspects_.standing(file)};
}

QImage DecodingJournal::decode(const FileState& file, const std::function<QImage()>& work) {
    std::call_once(started_, [this] { start(); });
    const auto [isHarmless, standing] = judged(file);
    if (isHarmless) {
        return work();
    }
    if (standing == DecodingSuspects::Standing::Guilty) {
        return {};
    }
    std::unique_lock trial(trial_, std::defer_lock);
    if (standing == DecodingSuspects::Standing::Suspect) {
        trial.lock();
    }
    const auto slot = notes_.write(file);
    auto image = work();
    if (slot) {
        notes_.erase(*slot);
    }
    const std::lock_guard lock(mutex_);
    if (harmless_.size() >= rememberedHarmless) {
        harmless_.clear();
    }
    harmless_.insert(file);
    if (standing == DecodingSuspects::Standing::Suspect && suspects_.clear(file.path)) {
        clearOnDisk(file.path);
    }
    return image;
}

// Another process may have changed the list since it was read here.
void DecodingJournal::clearOnDisk(const std::string& path) {
    if (const auto lock = lockedFolder(folder_); lock.isOpen()) {
        auto suspects = readSuspects(folder_);
        if (suspects.clear(path)) {
            writeSuspects(folder_, suspects);
        }
    }
}

} // namespace amberquill::desktop
