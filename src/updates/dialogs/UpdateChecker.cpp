#include "updates/dialogs/UpdateChecker.h"

#include "localization/L.h"
#include "window/ClosureMenuItem.h"
#include "window/LauncherWindowController.h"

#include <QMenu>
#include <utility>

namespace amberquill {

namespace {

// The updater's name in LauncherWindowController::auxiliaryFlows().
const QString flow = QStringLiteral("updates");

void endFlow() {
    LauncherWindowController::auxiliaryFlows().remove(flow);
}

bool isReachable(const Fetched& fetched) {
    const auto* body = std::get_if<QByteArray>(&fetched);
    return body != nullptr && !body->isEmpty();
}

} // namespace

UpdateChecker::UpdateChecker(Services services)
    : services_(std::move(services)) {}

void UpdateChecker::addItems(QMenu& menu) {
    menu.addAction(new ClosureMenuItem(
        L::checkForUpdates(), [this] { checkNow(); }, &menu));
    auto* automatically = new ClosureMenuItem(
        L::checkAutomatically(),
        [this] { controls_.setAutomaticallyChecks(!controls_.automaticallyChecks()); }, &menu);
    automatically->setCheckable(true);
    automatically->setChecked(controls_.automaticallyChecks());
    menu.addAction(automatically);
}

void UpdateChecker::checkNow() {
    beginFlow();
    services_.bringToFront();
    if (!services_.keys.feedAddress) {
        showUpToDate();
        return;
    }
    services_.fetch(*services_.keys.feedAddress, [this](const Fetched& fetched) {
        if (isReachable(fetched)) {
            controls_.checkForUpdates();
        } else {
            showUpToDate();
        }
    });
}

void UpdateChecker::showUpToDate() const {
    services_.alertUpToDate(services_.keys.shownVersion, endFlow);
}

void UpdateChecker::beginFlow() const {
    LauncherWindowController::auxiliaryFlows().insert(flow);
    if (hideLauncher) {
        hideLauncher();
    }
}

void UpdateChecker::standardUserDriverWillHandleShowingUpdate(bool handlesShowingUpdate, const FeedItem&,
                                                              UpdateCheck) {
    if (handlesShowingUpdate) {
        beginFlow();
    }
}

void UpdateChecker::standardUserDriverWillFinishUpdateSession() {
    endFlow();
}

void UpdateChecker::didFinishUpdateCycle(UpdateCheck, std::optional<UpdateError>) {
    endFlow();
}

} // namespace amberquill
