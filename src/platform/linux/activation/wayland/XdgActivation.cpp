#include "platform/linux/activation/wayland/XdgActivation.h"

#include "platform/linux/activation/Activation.h"

#include "platform/linux/applications/entries/EntryIndex.h"
#include "xdg-activation-v1-client-protocol.h"

#include <QGuiApplication>
#include <QWindow>
#include <algorithm>
#include <qpa/qplatformnativeinterface.h>
#include <wayland-client.h>

namespace amberquill::desktop {

void XdgActivation::Delete::operator()(wl_registry* registry) const {
    wl_registry_destroy(registry);
}

void XdgActivation::Delete::operator()(xdg_activation_v1* manager) const {
    xdg_activation_v1_destroy(manager);
}

void XdgActivation::Delete::operator()(xdg_activation_token_v1* token) const {
    xdg_activation_token_v1_destroy(token);
}

XdgActivation::XdgActivation(wl_display* display, MainQueue& queue)
    : display_(display)
    , queue_(queue)
    , registry_(wl_display_get_registry(display)) {
    static constexpr wl_registry_listener listener{
        .global = [](void* self, wl_registry*, std::uint32_t name, const char* interface,
                     std::uint32_t) { static_cast<XdgActivation*>(self)->offered(name, interface); },
        .global_remove = [](void* self, wl_registry*,
                            std::uint32_t name) { static_cast<XdgActivation*>(self)->withdrawn(name); },
    };
    wl_registry_add_listener(registry_.get(), &listener, this);
    wl_display_flush(display_);
}

XdgActivation::~XdgActivation() = default;

void XdgActivation::offered(std::uint32_t name, std::string_view interface) {
    if (manager_ == nullptr && interface == xdg_activation_v1_interface.name) {
        manager_.reset(static_cast<xdg_activation_v1*>(
            wl_registry_bind(registry_.get(), name, &xdg_activation_v1_interface, 1)));
        managerName_ = name;
    } else if (interface == wl_seat_interface.name) {
        seatNames_.push_back(name);
    }
}

void XdgActivation::withdrawn(std::uint32_t name) {
    if (manager_ != nullptr && name == managerName_) {
        manager_.reset();
    }
    std::erase(seatNames_, name);
}

void XdgActivation::requestToken(const ActivationProof& proof, const QString& applicationId,
                                 std::function<void(QString)> then) {
    if (manager_ == nullptr) {
        qCDebug(activationLog) << "the compositor offers no activation tokens";
        then({});
        return;
    }
    Request request;
    request.token.reset(xdg_activation_v1_get_activation_token(manager_.get()));
    xdg_activation_token_v1* const token = request.token.get();
    static constexpr xdg_activation_token_v1_listener listener{
        .done =
            [](void* self, xdg_activation_token_v1* done, const char* text) {
                static_cast<XdgActivation*>(self)->finish(done, QString::fromUtf8(text));
            },
    };
    xdg_activation_token_v1_add_listener(token, &listener, this);
    if (proof.seat != nullptr && proof.serial != 0) {
        xdg_activation_token_v1_set_serial(token, proof.serial, proof.seat);
    }
    if (proof.surface != nullptr) {
        xdg_activation_token_v1_set_surface(token, proof.surface);
    }
    if (!applicationId.isEmpty()) {
        xdg_activation_token_v1_set_app_id(token, applicationId.toUtf8().constData());
    }
    xdg_activation_token_v1_commit(token);
    // Flush now, not when the event loop is next idle: the surface is about to lose the focus.
    wl_display_flush(display_);

    request.then = std::move(then);
    request.limit = queue_.postAfter(longestWait, [this, token] {
        qCDebug(activationLog) << "no token within" << longestWait << "s";
        finish(token, {});
    });
    requests_.push_back(std::move(request));
}

void XdgActivation::finish(xdg_activation_token_v1* token, const QString& text) {
    const auto found = std::find_if(requests_.begin(), requests_.end(),
                                    [token](const Request& request) { return request.token.get() == token; });
    if (found == requests_.end()) {
        return;
    }
    Request request = std::move(*found);
    requests_.erase(found);
    request.limit.cancel();
    request.token.reset();
    request.then(text);
}

namespace {

// Qt 6.4 has no public API for these resources.
template<typename Resource>
Resource* integrationResource(const char* name) {
    return static_cast<Resource*>(
        QGuiApplication::platformNativeInterface()->nativeResourceForIntegration(name));
}

ActivationProof proofFor(QWindow& window, bool hasSeat) {
    QPlatformNativeInterface* const native = QGuiApplication::platformNativeInterface();
    ActivationProof proof;
    proof.surface = static_cast<wl_surface*>(native->nativeResourceForWindow("surface", &window));
    if (hasSeat) { // without a seat, Qt 6.4 would dereference a null pointer here
        proof.seat = integrationResource<wl_seat>("wl_seat");
        proof.serial = static_cast<std::uint32_t>(
            reinterpret_cast<quintptr>(native->nativeResourceForIntegration("serial")));
    }
    return proof;
}

} // namespace

WaylandActivationTokens::WaylandActivationTokens(MainQueue& queue)
    : folders_(dataFoldersFromEnvironment(processEnvironment()))
    , activation_(integrationResource<wl_display>("wl_display"), queue) {}

void WaylandActivationTokens::request(QWindow& window, const QString& applicationPath,
                                      std::function<void(QString)> then) {
    if (!activation_.isOffered()) {
        then({});
        return;
    }
    activation_.requestToken(proofFor(window, activation_.hasSeat()),
                             applicationIdFor(applicationPath, folders_), std::move(then));
}

} // namespace amberquill::desktop
