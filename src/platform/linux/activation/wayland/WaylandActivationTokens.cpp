#include "platform/linux/activation/wayland/WaylandActivationTokens.h"

#include "platform/linux/applications/entries/EntryIndex.h"

#include <QGuiApplication>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>

namespace amberquill::desktop {

namespace {

// Qt 6.4 has no public way to any of these.
template<typename Resource>
Resource* integrationResource(const char* name) {
    return static_cast<Resource*>(
        QGuiApplication::platformNativeInterface()->nativeResourceForIntegration(name));
}

ActivationProof proofFor(QWindow& window, bool hasSeat) {
    QPlatformNativeInterface* const native = QGuiApplication::platformNativeInterface();
    ActivationProof proof;
    proof.surface = static_cast<wl_surface*>(native->nativeResourceForWindow("surface", &window));
    if (hasSeat) { // Qt 6.4 asks its seat without looking whether it has one
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
