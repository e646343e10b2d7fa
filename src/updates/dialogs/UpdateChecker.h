#pragma once

#include "updates/updater/BundleKeys.h"
#include "updates/updater/Fetch.h"
#include "updates/updater/UpdaterDelegate.h"

#include <QUrl>
#include <functional>

class QMenu;

namespace amberquill {

// The front of the updater: its entries in the menus, the check by hand, and the launcher kept out of the way
// of the updater's windows. Main thread only.
class UpdateChecker final : public UpdaterDelegate {
public:
    // What of the updater it needs.
    struct UpdaterControls {
        std::function<bool()> automaticallyChecks;
        std::function<void(bool)> setAutomaticallyChecks;
        std::function<void()> checkForUpdates; // with the updater's own dialogs
    };

    struct Services {
        BundleKeys keys;
        // Fetches the address once and tells what came.
        std::function<void(const QUrl& address, std::function<void(const Fetched&)> done)> fetch;
        std::function<void()> bringToFront;
        // The alert that this version is the latest; `closed` once it is answered.
        std::function<void(const QString& version, std::function<void()> closed)> alertUpToDate;
    };

    explicit UpdateChecker(Services services);

    [[nodiscard]] const BundleKeys& keys() const { return services_.keys; }

    // Before anything else is called.
    void setControls(UpdaterControls controls) { controls_ = std::move(controls); }

    // Hides the launcher; set by who has one.
    std::function<void()> hideLauncher;

    // Appends its two entries.
    void addItems(QMenu& menu);

    // A check by hand. A feed that cannot be reached counts as one without anything new.
    void checkNow();

    void standardUserDriverWillHandleShowingUpdate(bool handlesShowingUpdate, const FeedItem& update,
                                                   UpdateCheck check) override;
    void standardUserDriverWillFinishUpdateSession() override;
    void didFinishUpdateCycle(UpdateCheck check, std::optional<UpdateError> error) override;

private:
    void beginFlow() const;
    void showUpToDate() const;

    Services services_;
    UpdaterControls controls_;
};

} // namespace amberquill
