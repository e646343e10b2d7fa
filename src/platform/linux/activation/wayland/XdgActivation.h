#pragma once

#include "platform/ActivationTokens.h"
#include "platform/MainQueue.h"
#include "platform/linux/environment/BaseFolders.h"

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

struct wl_display;
struct wl_registry;
struct wl_seat;
struct wl_surface;
struct xdg_activation_v1;
struct xdg_activation_token_v1;

namespace amberquill {
class MainQueue;
}

namespace amberquill::desktop {

// Sent with a token request: proof that the user has just used one of our surfaces.
struct ActivationProof {
    wl_seat* seat = nullptr;       // null: none
    std::uint32_t serial = 0;      // of the last click or key of that seat; 0: none
    wl_surface* surface = nullptr; // null: none
};

// The protocol xdg-activation-v1 on a connection that its owner (Qt) reads. Nothing here blocks: answers
// arrive when the owner dispatches the default queue. Main thread only; destroyed before the connection is
// closed.
class XdgActivation {
public:
    // A compositor has this many seconds to answer.
    static constexpr double longestWait = 0.3;

    // Learns the compositor's globals in the background; until then the protocol counts as not offered.
    XdgActivation(wl_display* display, MainQueue& queue);
    XdgActivation(const XdgActivation&) = delete;
    XdgActivation& operator=(const XdgActivation&) = delete;
    ~XdgActivation();

    // Whether a token can be asked for.
    [[nodiscard]] bool isOffered() const { return manager_ != nullptr; }

    // Whether the compositor has a seat. A compositor without a screen or a keyboard may have none.
    [[nodiscard]] bool hasSeat() const { return !seatNames_.empty(); }

    // `applicationId` may be empty. `then` is called once: with the token, or with an empty text if the
    // compositor does not offer the protocol or does not answer in time. It is not called if this object is
    // destroyed first.
    void requestToken(const ActivationProof& proof, const QString& applicationId,
                      std::function<void(QString)> then);

private:
    struct Delete {
        void operator()(wl_registry* registry) const;
        void operator()(xdg_activation_v1* manager) const;
        void operator()(xdg_activation_token_v1* token) const;
    };
    struct Request {
        std::unique_ptr<xdg_activation_token_v1, Delete> token;
        std::function<void(QString)> then;
        DelayedWork limit;
    };

    void offered(std::uint32_t name, std::string_view interface);
    void withdrawn(std::uint32_t name);
    void finish(xdg_activation_token_v1* token, const QString& text);

    wl_display* display_;
    MainQueue& queue_;
    std::unique_ptr<wl_registry, Delete> registry_;
    std::unique_ptr<xdg_activation_v1, Delete> manager_;
    std::uint32_t managerName_ = 0;
    std::vector<std::uint32_t> seatNames_;
    std::vector<Request> requests_;
};

// Tokens of the compositor that Qt is connected to. Wayland only; the application object outlives it.
class WaylandActivationTokens final : public ActivationTokens {
public:
    explicit WaylandActivationTokens(MainQueue& queue);

    void request(QWindow& window, const QString& applicationPath, std::function<void(QString)> then) override;

private:
    DataFolders folders_; // an application's id depends on them
    XdgActivation activation_;
};

} // namespace amberquill::desktop
