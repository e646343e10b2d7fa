#include "platform/linux/capture/x11/RootReader.h"

#include "platform/linux/capture/ScreenRows.h"
#include "platform/linux/files/FileDescriptor.h"

#include <algorithm>
#include <deque>
#include <fcntl.h>
#include <string_view>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>
#include <xcb/xcbext.h>

namespace amberquill::desktop {

SharedPixels::SharedPixels(xcb_connection_t* connection, std::size_t size)
    : connection_(connection) {
    FileDescriptor file(::memfd_create("amberquill-pixels", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    // Sealed: the server cannot shrink the file while it is mapped here.
    if (!file.isOpen() || ::ftruncate(file.get(), static_cast<off_t>(size)) != 0 ||
        ::fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK) != 0) {
        return;
    }
    void* const memory = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, file.get(), 0);
    if (memory == MAP_FAILED) {
        return;
    }
    bytes_ = static_cast<unsigned char*>(memory);
    size_ = size;
    segment_ = xcb_generate_id(connection_);
    // Sending the descriptor closes it.
    xcb_shm_attach_fd(connection_, segment_, file.release(), 0);
}

SharedPixels::~SharedPixels() {
    if (bytes_ != nullptr) {
        xcb_shm_detach(connection_, segment_);
        ::munmap(bytes_, size_);
    }
}

namespace {

// Bytes of a strip through shared memory: while one strip is scaled down, the server copies the next.
constexpr std::size_t stripBytes = std::size_t{1} << 20U;
constexpr std::size_t stripsAtATime = 2;
// Bytes of a strip through the socket: small, so that a read that runs out of time stops soon.
constexpr std::size_t plainStripBytes = std::size_t{1} << 18U;

constexpr std::uint32_t allPlanes = 0xFFFFFFFF;

// Rows read of the wallpaper and columns kept of each: the picture is blurred anyway.
constexpr int wallpaperRows = 48;
constexpr int wallpaperColumns = 96;
constexpr int widestWallpaper = 16384; // pixels; wider than any screen

bool isOnThisMachine(xcb_connection_t* connection) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    return ::getsockname(xcb_get_file_descriptor(connection), reinterpret_cast<sockaddr*>(&address), &size) ==
               0 &&
           address.ss_family == AF_UNIX;
}

const xcb_screen_t* screenOf(xcb_connection_t* connection, int number) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screens.rem > 0 && number > 0; --number) {
        xcb_screen_next(&screens);
    }
    return screens.rem > 0 ? screens.data : nullptr;
}

// Rows of the area, and the request for them.
struct Strip {
    int y;
    int height;
    std::size_t offset; // in the shared memory
    unsigned sequence;
};

} // namespace

RootReader::RootReader(const QByteArray& display)
    : connection_(xcb_connect(display.isEmpty() ? nullptr : display.constData(), &screenNumber_),
                  xcb_disconnect) {}

ScreenRows RootReader::read(const QRect& area, const Wanted& wanted, bool sharesMemory,
                            const Patience& patience) {
    ScreenRows rows(area.size(), wanted.shrink, wanted.alsoWhole);
    if (!isFree()) {
        return rows;
    }
    TimedReplies replies(get(), patience.forEach, patience.forAll);
    if (isReadable(replies)) {
        const auto root = replies.wait<xcb_get_geometry_reply_t>(xcb_get_geometry(get(), root_));
        const QRect seen = root ? area & QRect(0, 0, root->width, root->height) : QRect();
        if (!seen.isEmpty() && root->depth == format_->depth) {
            if (seen != area) {
                rows = ScreenRows(seen.size(), wanted.shrink, wanted.alsoWhole);
            }
            if (sharesMemory && shares(seen, replies)) {
                readShared(seen, rows, replies);
            } else {
                readPlain(seen, rows, replies);
            }
        }
    }
    end(replies);
    return rows;
}

void RootReader::end(const TimedReplies& replies) {
    unanswered_ = replies.unanswered();
    // Discards errors of requests without a reply.
    while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(get())}) {
    }
}

QImage RootReader::wallpaper(const QRect& area, std::chrono::milliseconds patience) {
    if (isGone()) {
        return {};
    }
    TimedReplies replies(get(), patience, patience);
    if (unanswered_ && !replies.settle(*unanswered_)) {
        return {};
    }
    QImage picture = isReadable(replies) ? readWallpaper(area, replies) : QImage();
    end(replies);
    return picture;
}

std::optional<xcb_pixmap_t> RootReader::rootPixmap(TimedReplies& replies) const {
    constexpr std::string_view name = "_XROOTPMAP_ID";
    const auto atom = replies.wait<xcb_intern_atom_reply_t>(
        xcb_intern_atom(get(), 1, static_cast<std::uint16_t>(name.size()), name.data()));
    if (!atom || atom->atom == XCB_ATOM_NONE) {
        return std::nullopt;
    }
    const auto property = replies.wait<xcb_get_property_reply_t>(
        xcb_get_property(get(), 0, root_, atom->atom, XCB_ATOM_PIXMAP, 0, 1));
    if (!property || property->format != 32 ||
        xcb_get_property_value_length(property.get()) != sizeof(xcb_pixmap_t)) {
        return std::nullopt;
    }
    return *static_cast<const xcb_pixmap_t*>(xcb_get_property_value(property.get()));
}

QImage RootReader::readWallpaper(const QRect& area, TimedReplies& replies) {
    const auto pixmap = rootPixmap(replies);
    const auto size = pixmap ? replies.wait<xcb_get_geometry_reply_t>(xcb_get_geometry(get(), *pixmap))
                             : XcbReply<xcb_get_geometry_reply_t>();
    if (!size || size->depth != format_->depth || size->width > widestWallpaper) {
        return {};
    }
    const QRect all(0, 0, size->width, size->height);
    // A tiled pixmap may be smaller than the screen.
    const QRect part = all.contains(area) ? area : all;
    const int count = std::min(wallpaperRows, part.height());
    std::vector<xcb_get_image_cookie_t> asked;
    for (int i = 0; i < count; ++i) {
        const int y = part.y() + (2 * i + 1) * part.height() / (2 * count);
        asked.push_back(xcb_get_image(get(), XCB_IMAGE_FORMAT_Z_PIXMAP, *pixmap,
                                      static_cast<std::int16_t>(part.x()), static_cast<std::int16_t>(y),
                                      static_cast<std::uint16_t>(part.width()), 1, allPlanes));
    }
    const int shrink = std::clamp(part.width() / wallpaperColumns, 1, RowShrinker::most);
    QImage picture;
    bool failed = false;
    for (int i = 0; i < count; ++i) {
        const auto answer = replies.wait<xcb_get_image_reply_t>(asked[static_cast<std::size_t>(i)]);
        failed = failed || !answer || answer->depth != format_->depth ||
                 static_cast<std::size_t>(xcb_get_image_data_length(answer.get())) <
                     format_->bytesPerRow(part.width());
        if (!failed) {
            RowShrinker row({part.width(), 1}, shrink);
            row.add(unpacked(xcb_get_image_data(answer.get()), part.width()));
            const QImage line = row.image();
            if (i == 0) {
                picture = QImage(line.width(), count, QImage::Format_RGB32);
            }
            std::copy_n(line.constScanLine(0), line.bytesPerLine(), picture.scanLine(i));
        }
    }
    return failed ? QImage() : picture;
}

// Whether all replies to an earlier reading have arrived.
bool RootReader::isFree() {
    if (unanswered_) {
        void* reply = nullptr;
        xcb_generic_error_t* error = nullptr;
        if (xcb_poll_for_reply(get(), *unanswered_, &reply, &error) == 0) {
            return false;
        }
        const XcbReply<void> answer(reply);
        const XcbReply<xcb_generic_error_t> refusal(error);
        unanswered_.reset();
    }
    return xcb_connection_has_error(get()) == 0;
}

bool RootReader::isReadable(TimedReplies& replies) {
    if (isReadable_) {
        return *isReadable_;
    }
    const auto* screen = screenOf(get(), screenNumber_);
    if (screen == nullptr || !isOnThisMachine(get())) {
        isReadable_ = false;
        return false;
    }
    // Requested first: the reply arrives with the next one, whose wait is bounded.
    xcb_prefetch_extension_data(get(), &xcb_shm_id);
    constexpr std::string_view name = "XWAYLAND";
    const auto xwayland =
        replies.wait<xcb_query_extension_reply_t>(xcb_query_extension(get(), name.size(), name.data()));
    if (!xwayland) {
        return false;
    }
    root_ = screen->root;
    format_ = RootImage::of(*xcb_get_setup(get()), *screen);
    isReadable_ = format_ && xwayland->present == 0;
    return *isReadable_;
}

int RootReader::rowsIn(std::size_t bytes, int width) const {
    return static_cast<int>(std::max(bytes / format_->bytesPerRow(width), std::size_t{1}));
}

// Whether the server shares memory with us. Requested once, and again for longer rows.
bool RootReader::shares(const QRect& area, TimedReplies& replies) {
    const std::size_t rows = stripsAtATime * static_cast<std::size_t>(rowsIn(stripBytes, area.width()));
    const std::size_t needed = rows * format_->bytesPerRow(area.width());
    if (pixels_ && pixels_->size() >= needed) {
        return true;
    }
    pixels_.reset();
    if (!sharesMemory_.value_or(true) || !takesDescriptors(replies)) {
        sharesMemory_ = replies.unanswered() ? sharesMemory_ : false;
        return false;
    }
    pixels_ = std::make_unique<SharedPixels>(get(), std::max(needed, stripsAtATime * stripBytes));
    if (!pixels_->isShared() || !isAttached(replies)) {
        pixels_.reset();
        sharesMemory_ = replies.unanswered() ? sharesMemory_ : false;
        return false;
    }
    sharesMemory_ = true;
    return true;
}

bool RootReader::takesDescriptors(TimedReplies& replies) const {
    const auto* extension = xcb_get_extension_data(get(), &xcb_shm_id);
    if (extension == nullptr || extension->present == 0) {
        return false;
    }
    const auto version = replies.wait<xcb_shm_query_version_reply_t>(xcb_shm_query_version(get()));
    return version && (version->major_version > 1 || version->minor_version >= 2);
}

// Attaching has no reply, so a request that uses the segment is sent.
bool RootReader::isAttached(TimedReplies& replies) const {
    return replies.wait<xcb_shm_get_image_reply_t>(getShared(QRect(0, 0, 1, 1), 0)) != nullptr;
}

xcb_shm_get_image_cookie_t RootReader::getShared(const QRect& part, std::size_t offset) const {
    return xcb_shm_get_image(get(), root_, static_cast<std::int16_t>(part.x()),
                             static_cast<std::int16_t>(part.y()), static_cast<std::uint16_t>(part.width()),
                             static_cast<std::uint16_t>(part.height()), allPlanes, XCB_IMAGE_FORMAT_Z_PIXMAP,
                             pixels_->segment(), static_cast<std::uint32_t>(offset));
}

void RootReader::readShared(const QRect& area, ScreenRows& screen, TimedReplies& replies) {
    const std::size_t row = format_->bytesPerRow(area.width());
    const int rows = rowsIn(stripBytes, area.width());
    std::deque<Strip> asked;
    int next = 0;
    const auto ask = [&](std::size_t offset) {
        if (next < area.height()) {
            const int height = std::min(rows, area.height() - next);
            const auto cookie = getShared({area.x(), area.y() + next, area.width(), height}, offset);
            asked.push_back({next, height, offset, cookie.sequence});
            next += height;
        }
    };
    for (std::size_t i = 0; i < stripsAtATime; ++i) {
        ask(i * row * static_cast<std::size_t>(rows));
    }
    bool failed = false;
    while (!asked.empty()) {
        const Strip strip = asked.front();
        asked.pop_front();
        const auto answer =
            replies.wait<xcb_shm_get_image_reply_t>(xcb_shm_get_image_cookie_t{strip.sequence});
        failed = failed || !answer || answer->depth != format_->depth ||
                 answer->size < row * static_cast<std::size_t>(strip.height);
        if (!failed) {
            add(screen, pixels_->bytes() + strip.offset, strip.height, area.width());
            ask(strip.offset);
        }
    }
}

void RootReader::readPlain(const QRect& area, ScreenRows& screen, TimedReplies& replies) {
    const std::size_t row = format_->bytesPerRow(area.width());
    const int rows = rowsIn(plainStripBytes, area.width());
    for (int y = 0; y < area.height(); y += rows) {
        const int height = std::min(rows, area.height() - y);
        const auto answer = replies.wait<xcb_get_image_reply_t>(
            xcb_get_image(get(), XCB_IMAGE_FORMAT_Z_PIXMAP, root_, static_cast<std::int16_t>(area.x()),
                          static_cast<std::int16_t>(area.y() + y), static_cast<std::uint16_t>(area.width()),
                          static_cast<std::uint16_t>(height), allPlanes));
        if (!answer || answer->depth != format_->depth ||
            static_cast<std::size_t>(xcb_get_image_data_length(answer.get())) <
                row * static_cast<std::size_t>(height)) {
            return;
        }
        add(screen, xcb_get_image_data(answer.get()), height, area.width());
    }
}

void RootReader::add(ScreenRows& screen, const unsigned char* bytes, int height, int width) {
    const std::size_t row = format_->bytesPerRow(width);
    for (int y = 0; y < height; ++y, bytes += row) {
        screen.add(unpacked(bytes, width));
    }
}

// A row as Qt's pixels, valid until the next call.
const QRgb* RootReader::unpacked(const unsigned char* bytes, int width) {
    if (format_->layout.isQtRgb()) {
        return reinterpret_cast<const QRgb*>(bytes);
    }
    unpacked_.resize(static_cast<std::size_t>(width));
    format_->layout.unpack(bytes, width, unpacked_.data());
    return unpacked_.data();
}

} // namespace amberquill::desktop
