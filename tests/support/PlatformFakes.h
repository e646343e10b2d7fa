// Test doubles for the small abstract classes of platform/.
#pragma once

#include "platform/ApplicationIcons.h"
#include "platform/ApplicationOpener.h"
#include "platform/BundleInformation.h"
#include "platform/FolderWatcher.h"
#include "platform/RegisteredApplications.h"
#include "platform/SystemLanguages.h"
#include "platform/TrayHosts.h"

#include <QColor>
#include <utility>

namespace amberquill {

// Icons of one colour each, which fill their square.
class ColourIcons final : public ApplicationIcons {
public:
    // The colour of the application with this number in its path, "/Applications/12.app".
    static QColor colour(int number) {
        return QColor::fromHsv(number * 137 % 360, 150 + number % 3 * 40, 230);
    }

    [[nodiscard]] QImage image(const QString& path, int edge) const override {
        const QString digits = path.section(QLatin1Char('/'), -1).section(QLatin1Char('.'), 0, 0);
        QImage icon(edge, edge, QImage::Format_ARGB32_Premultiplied);
        icon.fill(colour(digits.toInt()));
        return icon;
    }
    [[nodiscard]] QImage genericIcon(int) const override { return {}; }
    void forget() override {}
    void rest() override {}
};

// Applications without icons.
class NoIcons final : public ApplicationIcons {
public:
    [[nodiscard]] QImage image(const QString&, int) const override { return {}; }
    [[nodiscard]] QImage genericIcon(int) const override { return {}; }
    void forget() override {}
    void rest() override {}
};

// No path is a bundle with an identifier.
class NoBundles final : public BundleInformation {
public:
    [[nodiscard]] std::optional<QString> bundleIdentifier(const QString&) const override {
        return std::nullopt;
    }
};

class NoRegisteredApplications final : public RegisteredApplications {
public:
    using RegisteredApplications::list;

    [[nodiscard]] std::vector<RegisteredApplication> list(ScannedFolders&) const override { return {}; }
    [[nodiscard]] QStringList watchedFolders() const override { return {}; }
};

// Starts nothing.
class FailingOpener final : public ApplicationOpener {
public:
    void open(const QString&, const QString&, std::function<void(bool)> done) override { done(false); }
    void openPage(const QUrl&, const QString&, std::function<void(bool)> done) override { done(false); }
};

// One tray, which tells nothing of its items.
class SilentTray final : public TrayHosts {
public:
    void follow(std::function<void()> came, std::function<void()> /*gone*/) override { came(); }
    [[nodiscard]] QImage itemPicture() const override { return {}; }
};

// A folder watcher that reports a change when a test says so.
class ManualFolderWatcher final : public FolderWatcher {
public:
    void watch(const QStringList& folders, std::function<void()> changed) override {
        watched = folders;
        changed_ = std::move(changed);
    }

    void change() const { changed_(); }

    QStringList watched;

private:
    std::function<void()> changed_;
};

// A system with the languages that a test sets.
class FixedSystemLanguages final : public SystemLanguages {
public:
    explicit FixedSystemLanguages(QStringList preferred)
        : preferred_(std::move(preferred)) {}

    [[nodiscard]] std::optional<QStringList> systemWideList() const override { return systemWide_; }
    [[nodiscard]] QStringList preferred() const override { return preferred_; }

    void setPreferred(const QStringList& languages) { preferred_ = languages; }
    void setSystemWide(const std::optional<QStringList>& languages) { systemWide_ = languages; }

private:
    QStringList preferred_;
    std::optional<QStringList> systemWide_;
};

} // namespace amberquill
