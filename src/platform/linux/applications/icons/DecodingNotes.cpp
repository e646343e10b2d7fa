#include "platform/linux/applications/icons/DecodingNotes.h"

#include "platform/linux/files/FolderReader.h"

#include <array>
#include <bit>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <zlib.h>

namespace amberquill::desktop {

namespace {

constexpr std::string_view filePrefix = "decoding-";
constexpr std::size_t maximumNotedPath = 4096;
constexpr int maximumFiles = 256; // more than processes ever die between two starts

struct Header {
    std::uint32_t pathBytes = 0; // 0: a free slot
    std::uint32_t checksum = 0;  // of all the rest
    std::int64_t modified = 0;
    std::int64_t size = 0;
};
constexpr std::size_t slotBytes = sizeof(Header) + maximumNotedPath;

std::uint32_t checksumOf(const FileState& file) {
    auto sum = ::crc32(0, reinterpret_cast<const Bytef*>(&file.modified), sizeof file.modified);
    sum = ::crc32(sum, reinterpret_cast<const Bytef*>(&file.size), sizeof file.size);
    sum = ::crc32(sum, reinterpret_cast<const Bytef*>(file.path.data()), static_cast<uInt>(file.path.size()));
    return static_cast<std::uint32_t>(sum);
}

off_t offsetOf(unsigned slot) {
    return static_cast<off_t>(slot * slotBytes);
}

std::optional<FileState> readNote(int file, unsigned slot) {
    std::array<char, slotBytes> bytes{};
    const auto got = ::pread(file, bytes.data(), bytes.size(), offsetOf(slot));
    Header header;
    if (got < static_cast<ssize_t>(sizeof header)) {
        return std::nullopt;
    }
    std::memcpy(&header, bytes.data(), sizeof header);
    if (header.pathBytes == 0 || header.pathBytes > static_cast<std::size_t>(got) - sizeof header) {
        return std::nullopt;
    }
    const FileState state{.path = std::string(bytes.data() + sizeof header, header.pathBytes),
                          .modified = header.modified,
                          .size = header.size};
    return header.checksum == checksumOf(state) ? std::optional(state) : std::nullopt;
}

bool lockNow(int file) {
    return ::flock(file, LOCK_EX | LOCK_NB) == 0;
}

} // namespace

DecodingNotes::DecodingNotes(std::string folder)
    : folder_(std::move(folder)) {}

DecodingNotes::~DecodingNotes() {
    if (file_.isOpen()) {
        ::unlink(path_.c_str());
    }
}

void DecodingNotes::open() {
    constexpr mode_t onlyTheUser = 0700;
    for (auto slash = folder_.find('/', 1); slash != std::string::npos;
         slash = folder_.find('/', slash + 1)) {
        ::mkdir(folder_.substr(0, slash).c_str(), onlyTheUser);
    }
    ::mkdir(folder_.c_str(), onlyTheUser);
    // A process that looks for abandoned notes may take the new file for one before it is locked.
    for (int attempt = 0; attempt < 4 && !file_.isOpen(); ++attempt) {
        path_ = folder_ + '/' + std::string(filePrefix) + "XXXXXX";
        FileDescriptor file(::mkostemp(path_.data(), O_CLOEXEC));
        struct stat status = {};
        if (file.isOpen() && lockNow(file.get()) && ::fstat(file.get(), &status) == 0 &&
            status.st_nlink > 0) {
            file_ = std::move(file);
        }
    }
}

std::optional<unsigned> DecodingNotes::write(const FileState& file) {
    std::call_once(opened_, [this] { open(); });
    if (!file_.isOpen() || file.path.size() > maximumNotedPath) {
        return std::nullopt;
    }
    auto taken = taken_.load();
    unsigned slot = 0;
    do {
        slot = static_cast<unsigned>(std::countr_one(taken));
        if (slot >= slotCount) {
            return std::nullopt;
        }
    } while (!taken_.compare_exchange_weak(taken, taken | (std::uint64_t{1} << slot)));

    const Header header{.pathBytes = static_cast<std::uint32_t>(file.path.size()),
                        .checksum = checksumOf(file),
                        .modified = file.modified,
                        .size = file.size};
    std::string bytes(sizeof header, '\0');
    std::memcpy(bytes.data(), &header, sizeof header);
    bytes += file.path;
    if (::pwrite(file_.get(), bytes.data(), bytes.size(), offsetOf(slot)) !=
        static_cast<ssize_t>(bytes.size())) {
        erase(slot);
        return std::nullopt;
    }
    return slot;
}

void DecodingNotes::erase(unsigned slot) {
    const std::uint32_t none = 0;
    // A note that cannot be erased keeps its slot: it would speak of another file otherwise.
    if (::pwrite(file_.get(), &none, sizeof none, offsetOf(slot)) == static_cast<ssize_t>(sizeof none)) {
        taken_ &= ~(std::uint64_t{1} << slot);
    }
}

void DecodingNotes::withdraw() {
    std::call_once(opened_, [] {});
    if (file_.isOpen()) {
        ::unlink(path_.c_str());
    }
}

std::vector<std::vector<FileState>> takeAbandonedNotes(const std::string& folder) {
    std::vector<std::vector<FileState>> all;
    FolderReader reader(openFolder(AT_FDCWD, folder.c_str()));
    if (!reader.isOpen()) {
        return all;
    }
    int files = 0;
    for (auto child = reader.next(); child && files < maximumFiles; child = reader.next()) {
        if (!child->nameView().starts_with(filePrefix)) {
            continue;
        }
        ++files;
        const FileDescriptor file(
            ::openat(reader.descriptor(), child->name, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        struct stat status = {};
        if (!file.isOpen() || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
            !lockNow(file.get())) {
            continue;
        }
        std::vector<FileState> notes;
        for (unsigned slot = 0; slot < DecodingNotes::slotCount; ++slot) {
            if (auto note = readNote(file.get(), slot)) {
                notes.push_back(*std::move(note));
            }
        }
        if (!notes.empty()) {
            all.push_back(std::move(notes));
        }
        ::unlinkat(reader.descriptor(), child->name, 0);
    }
    return all;
}

} // namespace amberquill::desktop
