#pragma once

#include "updates/updater/BundleKeys.h"
#include "updates/updater/Fetch.h"
#include "updates/updater/UpdaterDelegate.h"

#include <QUrl>
#include <functional>

class QMenu;

namespace amberquill {

// The updater's menu entries and the check that the user asks for. Hides the launcher while the updater shows
// windows. Main thread only.
class UpdateChecker final : public UpdaterDelegate {
public:
    // Functions of the updater.
    struct UpdaterControls {
        std::function<bool()> automaticallyChecks;
        std::function<void(bool)> setAutomaticallyChecks;
        std::function<void()> checkForUpdates; // with the updater's own dialogs
    };

    struct Services {
        BundleKeys keys;
        // Fetches the address once.
        std::function<void(const QUrl& address, std::function<void(const Fetched&)> done)> fetch;
        std::function<void()> bringToFront;
        // Shows the alert that this version is the latest; calls `closed` after it was closed.
        std::function<void(const QString& version, std::function<void()> closed)> alertUpToDate;
    };

    explicit UpdateChecker(Services services);

    [[nodiscard]] const BundleKeys& keys() const { return services_.keys; }

    // Called before any other function.
    void setControls(UpdaterControls controls) { controls_ = std::move(controls); }

    // Hides the launcher; may be empty.
    std::function<void()> hideLauncher;

    // Appends the two entries.
    void addItems(QMenu& menu);

    // A check by the user. If the feed cannot be reached, shows the alert that the program is up to date.
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
