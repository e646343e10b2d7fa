#include "platform/linux/capture/wayland/OutputReader.h"

#include "platform/linux/capture/wayland/StoredFrame.h"

#include "wlr-screencopy-unstable-v1-client-protocol.h"

#include <algorithm>
#include <wayland-client.h>

namespace amberquill::desktop {

namespace {

// The version with the output's name.
constexpr std::uint32_t newestOutput = 4;

} // namespace

void OutputReader::Delete::operator()(wl_display* display) const {
    wl_display_disconnect(display);
}

void OutputReader::Delete::operator()(wl_shm* shm) const {
    wl_shm_destroy(shm);
}

void OutputReader::Delete::operator()(zwlr_screencopy_frame_v1* frame) const {
    zwlr_screencopy_frame_v1_destroy(frame);
}

void OutputReader::Delete::operator()(zwlr_screencopy_manager_v1* manager) const {
    zwlr_screencopy_manager_v1_destroy(manager);
}

struct OutputReader::Output {
    Output(std::uint32_t of, wl_output* bound)
        : global(of)
        , object(bound, [](wl_output* it) {
            if (wl_output_get_version(it) >= WL_OUTPUT_RELEASE_SINCE_VERSION) {
                wl_output_release(it);
            } else {
                wl_output_destroy(it);
            }
        }) {
        static constexpr wl_output_listener listener{
            .geometry = [](void* self, wl_output*, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                           std::int32_t, const char*, const char*,
                           std::int32_t turned) { static_cast<Output*>(self)->transform = turned; },
            .mode = [](void*, wl_output*, std::uint32_t, std::int32_t, std::int32_t, std::int32_t) {},
            .done = [](void*, wl_output*) {},
            .scale = [](void*, wl_output*, std::int32_t) {},
            .name = [](void* self, wl_output*,
                       const char* told) { static_cast<Output*>(self)->name = QString::fromUtf8(told); },
            .description = [](void*, wl_output*, const char*) {},
        };
        wl_output_add_listener(object.get(), &listener, this);
    }

    std::uint32_t global;
    std::unique_ptr<wl_output, void (*)(wl_output*)> object;
    QString name = {};
    std::int32_t transform = WL_OUTPUT_TRANSFORM_NORMAL;
};

// The events of one requested copy.
struct OutputReader::Frame {
    explicit Frame(zwlr_screencopy_frame_v1* asked)
        : object(asked) {
        static constexpr zwlr_screencopy_frame_v1_listener listener{
            .buffer =
                [](void* self, zwlr_screencopy_frame_v1*, std::uint32_t format, std::uint32_t width,
                   std::uint32_t height, std::uint32_t stride) {
                    auto* const frame = static_cast<Frame*>(self);
                    frame->isProposed = true;
                    frame->layout = StoredFrame::of(format, width, height, stride);
                },
            .flags =
                [](void* self, zwlr_screencopy_frame_v1*, std::uint32_t flags) {
                    static_cast<Frame*>(self)->bottomUp =
                        (flags & ZWLR_SCREENCOPY_FRAME_V1_FLAGS_Y_INVERT) != 0;
                },
            .ready = [](void* self, zwlr_screencopy_frame_v1*, std::uint32_t, std::uint32_t,
                        std::uint32_t) { static_cast<Frame*>(self)->isReady = true; },
            .failed = [](void* self,
                         zwlr_screencopy_frame_v1*) { static_cast<Frame*>(self)->hasFailed = true; },
        };
        zwlr_screencopy_frame_v1_add_listener(object.get(), &listener, this);
    }

    [[nodiscard]] bool isOver() const { return isReady || hasFailed; }

    std::unique_ptr<zwlr_screencopy_frame_v1, Delete> object;
    bool isProposed = false;
    std::optional<StoredFrame> layout = {}; // none: not received, or not readable
    bool bottomUp = false;
    bool isReady = false;
    bool hasFailed = false;
};

OutputReader::OutputReader(const QByteArray& display)
    : display_(wl_display_connect(display.isEmpty() ? nullptr : display.constData())) {
    if (display_) {
        events_ = std::make_unique<EventQueue>(display_.get());
        globals_ = std::make_unique<Globals>(*events_);
    }
}

OutputReader::~OutputReader() = default;

ScreenPicture OutputReader::read(const QString& output, const Wanted& wanted,
                                 std::chrono::milliseconds patience) {
    const QDeadlineTimer deadline(patience);
    if (!isReady(deadline)) {
        return {};
    }
    const Output* const found = find(output, deadline);
    return found != nullptr ? copy(*found, wanted, deadline) : ScreenPicture();
}

bool OutputReader::isGone() const {
    return !display_ || wl_display_get_error(display_.get()) != 0;
}

bool OutputReader::isReady(QDeadlineTimer deadline) {
    if (!display_) {
        return false;
    }
    events_->handle();
    if (wl_display_get_error(display_.get()) != 0 || (unanswered_ && !unanswered_->isOver())) {
        return false;
    }
    unanswered_.reset();
    return bindGlobals(deadline);
}

// Binds the globals that are offered now. If copying is not offered, waits for one round trip only.
bool OutputReader::bindGlobals(QDeadlineTimer deadline) {
    if (!manager_ && !events_->roundTrip(deadline)) {
        return false;
    }
    if (const auto* offered = globals_->find(zwlr_screencopy_manager_v1_interface.name);
        !manager_ && offered != nullptr) {
        manager_.reset(static_cast<zwlr_screencopy_manager_v1*>(
            globals_->bind(*offered, zwlr_screencopy_manager_v1_interface, 1)));
    }
    if (const auto* offered = globals_->find(wl_shm_interface.name); !shm_ && offered != nullptr) {
        shm_.reset(static_cast<wl_shm*>(globals_->bind(*offered, wl_shm_interface, 1)));
    }
    if (!manager_ || !shm_) {
        return false;
    }
    const std::size_t known = outputs_.size();
    followOutputs();
    return outputs_.size() <= known || events_->roundTrip(deadline);
}

void OutputReader::followOutputs() {
    std::erase_if(outputs_, [this](const auto& output) { return !globals_->holds(output->global); });
    for (const auto& offered : globals_->all()) {
        const bool isKnown = std::any_of(outputs_.begin(), outputs_.end(), [&offered](const auto& output) {
            return output->global == offered.name;
        });
        if (offered.interface == wl_output_interface.name && !isKnown) {
            outputs_.push_back(std::make_unique<Output>(
                offered.name,
                static_cast<wl_output*>(globals_->bind(offered, wl_output_interface, newestOutput))));
        }
    }
}

const OutputReader::Output* OutputReader::find(const QString& name, QDeadlineTimer deadline) {
    if (name.isEmpty() && outputs_.size() == 1) {
        return outputs_.front().get();
    }
    const wl_output* chosen = nullptr;
    if (name.isEmpty()) {
        if (!choice_) {
            choice_ = std::make_unique<OutputChoice>(*events_, *globals_, shm_.get());
        }
        chosen = choice_->ask(deadline);
    }
    const auto found = std::find_if(outputs_.begin(), outputs_.end(), [&name, chosen](const auto& output) {
        return name.isEmpty() ? output->object.get() == chosen : output->name == name;
    });
    return found != outputs_.end() ? found->get() : nullptr;
}

ScreenPicture OutputReader::copy(const Output& output, const Wanted& wanted, QDeadlineTimer deadline) {
    constexpr std::int32_t withoutPointer = 0;
    unanswered_ = std::make_unique<Frame>(
        zwlr_screencopy_manager_v1_capture_output(manager_.get(), withoutPointer, output.object.get()));
    Frame& frame = *unanswered_;
    if (!events_->handleUntil([&frame] { return frame.isProposed || frame.isOver(); }, deadline)) {
        return {};
    }
    const auto layout = frame.layout;
    if (!layout || frame.isOver()) {
        unanswered_.reset();
        return {};
    }
    const SharedFrame memory(shm_.get(), *layout);
    if (memory.buffer() == nullptr) {
        unanswered_.reset();
        return {};
    }
    zwlr_screencopy_frame_v1_copy(frame.object.get(), memory.buffer());
    if (!events_->handleUntil([&frame] { return frame.isOver(); }, deadline)) {
        return {};
    }
    const std::unique_ptr<Frame> over = std::move(unanswered_);
    return over->isReady ? uprightPicture(*layout, Orientation::of(output.transform, over->bottomUp),
                                          memory.bytes(), wanted.shrink, wanted.alsoWhole)
                         : ScreenPicture();
}

} // namespace amberquill::desktop
