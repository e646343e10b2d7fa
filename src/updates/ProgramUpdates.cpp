#include "updates/ProgramUpdates.h"

#include "updates/Feed.h"

#include <QRandomGenerator>
#include <utility>

namespace amberquill {

ProgramUpdates::ProgramUpdates(Services services)
    : probe_(services.queue)
    , dialogs_(std::move(services.dialogs))
    , checker_({
          .keys = readBundleKeys(services.bundle),
          .fetch =
              [this](const QUrl& address, std::function<void(const Fetched&)> done) {
                  probe_.get(address, maximumFeedBytes, std::move(done));
              },
          .bringToFront = [this] { dialogs_.bringToFront(); },
          .alertUpToDate =
              [this](const QString& version, std::function<void()> closed) {
                  dialogs_.alertUpToDate(version, std::move(closed));
              },
      })
    , updater_({
          .queue = services.queue,
          .preferences = services.preferences,
          .installer = services.installer,
          .userInterface = dialogs_,
          .delegate = checker_,
          .keys = checker_.keys(),
          .systemVersion = systemVersion(),
          .downloadFolder = services.downloadFolder,
          .isBusy = std::move(services.isBusy),
          .random = [] { return QRandomGenerator::system()->generateDouble(); },
          .quit = std::move(services.quit),
      }) {
    checker_.setControls({
        .automaticallyChecks = [this] { return updater_.automaticallyChecksForUpdates(); },
        .setAutomaticallyChecks = [this](bool on) { updater_.setAutomaticallyChecksForUpdates(on); },
        .checkForUpdates = [this] { updater_.checkForUpdates(); },
    });
    dialogs_.setAnswers({
        .install = [this] { updater_.install(); },
        .later = [this] { updater_.later(); },
        .skip = [this] { updater_.skip(); },
        .acknowledge = [this] { updater_.acknowledge(); },
        .pause = [this] { updater_.pause(); },
        .resume = [this] { updater_.resume(); },
        .cancel = [this] { updater_.cancel(); },
        .restart = [this] { updater_.restart(); },
    });
}

ProgramUpdates::~ProgramUpdates() = default;

} // namespace amberquill
