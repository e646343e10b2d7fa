#pragma once

#include "support/LoopbackServer.h"
#include "support/ManualQueue.h"
#include "support/MemoryPreferences.h"
#include "support/SigningKey.h"
#include "support/TemporaryTree.h"
#include "support/WaitUntil.h"
#include "updates/updater/Updater.h"

#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace amberquill {

// Records all calls in order.
class RecordingInterface final : public UpdaterUserInterface, public UpdaterDelegate {
public:
    void showChecking() override { add("checking"); }
    void showUpdateFound(const UpdateOffer& offer) override {
        add(QStringLiteral("found ") + offer.item.version + QStringLiteral(" over ") +
            offer.installedVersion);
        lastOffer = offer;
    }
    void showNoUpdate(const QString& installed) override { add(QStringLiteral("none over ") + installed); }
    void showError(UpdateError error) override {
        add("error");
        lastError = error;
    }
    void showProgress(qint64 received, qint64 length) override {
        if (log.isEmpty() || log.last() != QStringLiteral("progress")) {
            add("progress");
        }
        lastReceived = received;
        lastLength = length;
        if (progressed) {
            progressed();
        }
    }
    void showPaused(qint64 received, qint64 length) override {
        add("paused");
        lastReceived = received;
        lastLength = length;
    }
    void showInstalling() override { add("installing"); }
    void showReadyToRestart(const FeedItem& update) override {
        add(QStringLiteral("ready ") + update.version);
    }
    void bringToFront() override { add("front"); }
    void dismiss() override { add("dismiss"); }

    void standardUserDriverWillHandleShowingUpdate(bool handles, const FeedItem& update,
                                                   UpdateCheck check) override {
        add(QStringLiteral("will show ") + update.version +
            (handles ? QStringLiteral(" itself") : QStringLiteral(" not")) + nameOf(check));
    }
    void standardUserDriverWillFinishUpdateSession() override { add("session over"); }
    void didFinishUpdateCycle(UpdateCheck check, std::optional<UpdateError> error) override {
        add(QStringLiteral("cycle over") + nameOf(check) +
            (error ? QStringLiteral(" with error") : QString()));
    }

    QStringList take() { return std::exchange(log, {}); }

    QStringList log;
    std::optional<UpdateOffer> lastOffer;
    std::optional<UpdateError> lastError;
    qint64 lastReceived = -1;
    qint64 lastLength = -1;
    std::function<void()> progressed;

private:
    void add(const char* what) { add(QString::fromLatin1(what)); }
    void add(const QString& what) { log += what; }
    static QString nameOf(UpdateCheck check) {
        return check == UpdateCheck::UserInitiated ? QStringLiteral(", asked for")
                                                   : QStringLiteral(", scheduled");
    }
};

class FakeInstaller final : public ProgramInstaller {
public:
    [[nodiscard]] InstallKind kind() const override { return installKind; }
    [[nodiscard]] std::optional<QString> stage(const QString& file) override {
        QFile opened(file);
        staged = opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray();
        return stagedVersion;
    }
    [[nodiscard]] bool replace() override {
        program = replaces ? staged : program;
        return replaces;
    }
    void discard() override { staged.clear(); }
    [[nodiscard]] bool startAgainAfterExit() override {
        starts += canStart ? 1 : 0;
        return canStart;
    }

    InstallKind installKind = InstallKind::Image;
    std::optional<QString> stagedVersion = QStringLiteral("2.0");
    bool replaces = true;
    bool canStart = true;
    QByteArray staged;
    QByteArray program = "the old program";
    int starts = 0;
};

// An updater of program version 1.0 with a feed on a real server, in virtual time.
class UpdaterFixture : public testing::Test {
protected:
    UpdaterFixture() { queue.setDate(std::chrono::sys_days(std::chrono::year(2026) / 11 / 21)); }

    Updater& updater() {
        if (!updater_) {
            updater_ = std::make_unique<Updater>(Updater::Services{.queue = queue,
                                                                   .preferences = preferences,
                                                                   .installer = installer,
                                                                   .userInterface = interface,
                                                                   .delegate = interface,
                                                                   .keys = keys,
                                                                   .systemVersion = QStringLiteral("6.1"),
                                                                   .downloadFolder = tree.path("updates"),
                                                                   .isBusy = [this] { return isBusy; },
                                                                   .random = [this] { return random; },
                                                                   .quit = [this] { ++quits; },
                                                                   .timeouts = {}});
        }
        return *updater_;
    }

    // As if the program was restarted.
    void restartUpdater() { updater_.reset(); }

    // Runs network and background work until the condition holds; no virtual time passes.
    bool settle(const std::function<bool()>& condition) {
        return waitUntil([&] {
            queue.runPosted();
            return condition();
        });
    }
    bool settleAt(Updater::State state) {
        return settle([&] { return updater().state() == state; });
    }

    // Lets virtual time and the date pass in small steps. Stops when a check starts: the network's time is
    // real.
    void pass(double seconds) {
        constexpr double stepSeconds = 10;
        const bool wasIdle = updater().state() == Updater::State::Idle;
        const auto begins = [&] { return wasIdle && updater().state() != Updater::State::Idle; };
        for (double left = seconds; left > 0 && !begins(); left -= stepSeconds) {
            const double step = std::min(left, stepSeconds);
            queue.setDate(queue.date() + std::chrono::seconds(static_cast<qint64>(step)));
            queue.advance(step);
        }
    }

    void serveFeed(const QByteArray& items) {
        server.serve(
            "/feed",
            LoopbackServer::ok("<rss xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\">"
                               "<channel>" +
                               items + "</channel></rss>"));
    }

    // An item whose enclosure has these attributes.
    static QByteArray itemOf(const QByteArray& version, const QByteArray& enclosure) {
        return "<item><link>https://example.org/</link><sparkle:version>" + version +
               "</sparkle:version><enclosure " + enclosure + "/></item>";
    }

    [[nodiscard]] QByteArray enclosureOf(const QByteArray& bytes) const {
        return "url='" + server.address("/program").toEncoded() + "' length='" +
               QByteArray::number(bytes.size()) + "' sparkle:edSignature='" +
               key.signatureText(bytes).toLatin1() + "'";
    }

    // A feed with one version, whose program has a valid signature.
    void serveVersion(const QByteArray& version) {
        server.serve("/program", LoopbackServer::ok(program));
        serveFeed(itemOf(version, enclosureOf(program)));
    }

    [[nodiscard]] std::size_t feedRequests() const {
        const auto& requests = server.requests();
        return static_cast<std::size_t>(std::count_if(
            requests.begin(), requests.end(), [](const auto& request) { return request.path == "/feed"; }));
    }

    [[nodiscard]] QStringList filesLeft() const {
        return QDir(tree.path("updates")).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }

    // Checks, up to the offer of version 2.0.
    void findUpdate() {
        updater().checkForUpdates();
        ASSERT_TRUE(settleAt(Updater::State::Found));
        interface.take();
    }

    // Checks and installs, up to an error, acknowledges it and returns it.
    std::optional<UpdateError> errorOfInstalling() {
        findUpdate();
        updater().install();
        EXPECT_TRUE(settleAt(Updater::State::Failed));
        updater().acknowledge();
        EXPECT_EQ(updater().state(), Updater::State::Idle);
        EXPECT_EQ(installer.program, "the old program");
        return std::exchange(interface.lastError, std::nullopt);
    }

    TemporaryTree tree;
    ManualQueue queue;
    MemoryPreferences preferences;
    FakeInstaller installer;
    RecordingInterface interface;
    LoopbackServer server;
    SigningKey key;
    QByteArray program = QByteArray("the new program ").repeated(10'000);
    BundleKeys keys = {.version = QStringLiteral("1.0"),
                       .shownVersion = QStringLiteral("1.0 shown"),
                       .feedAddress = server.address("/feed"),
                       .publicKey = key.publicKey()};
    bool isBusy = false;
    double random = 0.5;
    int quits = 0;

private:
    std::unique_ptr<Updater> updater_;
};

} // namespace amberquill
