#pragma once

#include "platform/ScreenCapture.h"
#include "platform/linux/capture/wayland/OutputChoice.h"
#include "platform/linux/wayland/Globals.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QString>
#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

struct wl_display;
struct wl_output;
struct wl_shm;
struct zwlr_screencopy_frame_v1;
struct zwlr_screencopy_manager_v1;

namespace amberquill::desktop {

// Reads the outputs of a compositor, on a connection of its own.
class OutputReader {
public:
    // `display`: see WlrScreenCapture.
    explicit OutputReader(const QByteArray& display);
    OutputReader(const OutputReader&) = delete;
    OutputReader& operator=(const OutputReader&) = delete;
    ~OutputReader();

    struct Wanted {
        int shrink;
        bool alsoWhole;
    };

    // Like ScreenCapture::capture. An empty name: the output that the compositor would choose. Also null
    // while an earlier request is unanswered.
    [[nodiscard]] ScreenPicture read(const QString& output, const Wanted& wanted,
                                     std::chrono::milliseconds patience);

    // Whether the compositor has closed the connection.
    [[nodiscard]] bool isGone() const;

private:
    struct Output;
    struct Frame;
    struct Delete {
        void operator()(wl_display* display) const;
        void operator()(wl_shm* shm) const;
        void operator()(zwlr_screencopy_frame_v1* frame) const;
        void operator()(zwlr_screencopy_manager_v1* manager) const;
    };

    [[nodiscard]] bool isReady(QDeadlineTimer deadline);
    [[nodiscard]] bool bindGlobals(QDeadlineTimer deadline);
    void followOutputs();
    [[nodiscard]] const Output* find(const QString& name, QDeadlineTimer deadline);
    [[nodiscard]] ScreenPicture copy(const Output& output, const Wanted& wanted, QDeadlineTimer deadline);

    std::unique_ptr<wl_display, Delete> display_; // null: no compositor
    std::unique_ptr<EventQueue> events_;
    std::unique_ptr<Globals> globals_;
    std::unique_ptr<wl_shm, Delete> shm_;
    std::unique_ptr<zwlr_screencopy_manager_v1, Delete> manager_;
    std::unique_ptr<OutputChoice> choice_;
    std::vector<std::unique_ptr<Output>> outputs_;
    std::unique_ptr<Frame> unanswered_; // an earlier request without an answer
};

} // namespace amberquill::desktop
