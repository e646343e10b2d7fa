#include "updates/dialogs/ProgramUpdates.h"

#include "updates/updater/Feed.h"
#include "updates/updater/Fetch.h"
#include "updates/updater/Updater.h"

#include <QRandomGenerator>
#include <utility>

namespace amberquill {

struct ProgramUpdates::Parts {
    explicit Parts(Services services);

    Fetch probe;
    UpdateDialogs dialogs;
    UpdateChecker checker;
    Updater updater;
};

ProgramUpdates::Parts::Parts(Services services)
    : probe(services.queue)
    , dialogs(std::move(services.dialogs))
    , checker({
          .keys = readBundleKeys(services.bundle),
          .fetch =
              [this](const QUrl& address, std::function<void(const Fetched&)> done) {
                  probe.get(address, maximumFeedBytes, std::move(done));
              },
          .bringToFront = [this] { dialogs.bringToFront(); },
          .alertUpToDate =
              [this](const QString& version, std::function<void()> closed) {
                  dialogs.alertUpToDate(version, std::move(closed));
              },
      })
    , updater({
          .queue = services.queue,
          .preferences = services.preferences,
          .installer = services.installer,
          .userInterface = dialogs,
          .delegate = checker,
          .keys = checker.keys(),
          .systemVersion = systemVersion(),
          .downloadFolder = services.downloadFolder,
          .isBusy = std::move(services.isBusy),
          .random = [] { return QRandomGenerator::system()->generateDouble(); },
          .quit = std::move(services.quit),
      }) {
    checker.setControls({
        .automaticallyChecks = [this] { return updater.automaticallyChecksForUpdates(); },
        .setAutomaticallyChecks = [this](bool on) { updater.setAutomaticallyChecksForUpdates(on); },
        .checkForUpdates = [this] { updater.checkForUpdates(); },
    });
    dialogs.setAnswers({
        .install = [this] { updater.install(); },
        .later = [this] { updater.later(); },
        .skip = [this] { updater.skip(); },
        .acknowledge = [this] { updater.acknowledge(); },
        .pause = [this] { updater.pause(); },
        .resume = [this] { updater.resume(); },
        .cancel = [this] { updater.cancel(); },
        .restart = [this] { updater.restart(); },
    });
}

ProgramUpdates::ProgramUpdates(Services services)
    : parts_(std::make_unique<Parts>(std::move(services))) {}

ProgramUpdates::~ProgramUpdates() = default;

void ProgramUpdates::start() {
    parts_->updater.start();
}

UpdateChecker& ProgramUpdates::checker() {
    return parts_->checker;
}

} // namespace amberquill
