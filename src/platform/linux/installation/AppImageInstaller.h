// platform/linux/installation/: how the program was installed, and its replacement by a newer version.
//
// Parts: AppImageInstaller replaces the one file of an AppImage; ProgramVersion starts a program with
// --version and reads its answer. Copies installed in another way are not replaced: installKindOf says which.
//
// Rules: the new file is written beside the old one, flushed, asked for its version, then renamed over it, so
// that an interruption at any point leaves a working program. The signature has been checked before. Blocks:
// call it on a background thread. Log: amberquill.installation.
#pragma once

#include "platform/ProgramInstaller.h"

#include <QByteArray>
#include <QLoggingCategory>
#include <QString>
#include <functional>
#include <vector>

namespace amberquill::desktop {

Q_DECLARE_LOGGING_CATEGORY(installationLog)

// Replaces the program where it runs from an AppImage: one file, which names itself in the environment of
// what it starts. That environment also reaches other programs that are started from in there, so the program
// must run from where the image is mounted; else the file is somebody else's.
//
// Of a symbolic link to the image, what it points to is replaced. The new file has the old one's mode.
class AppImageInstaller final : public ProgramInstaller {
public:
    // What has been done, for tests that interrupt it there.
    enum class Step { Created, HalfCopied, Copied, Flushed, AskedVersion, Renamed };

    // `environment`: what this program was started with (NAME=value) and the new one is started with.
    // `program`: its path. `reached` is called after each step.
    AppImageInstaller(
        std::vector<QByteArray> environment, const QString& program,
        std::function<void(Step)> reached = [](Step) {});

    [[nodiscard]] InstallKind kind() const override { return kind_; }

    // The new file is asked for its version by being started with `--version`: it is trusted by now.
    [[nodiscard]] std::optional<QString> stage(const QString& file) override;
    [[nodiscard]] bool replace() override;
    void discard() override;
    [[nodiscard]] bool startAgainAfterExit() override;

private:
    [[nodiscard]] bool copy(const QByteArray& from) const;

    std::vector<QByteArray> environment_;
    std::function<void(Step)> reached_;
    InstallKind kind_;
    QByteArray image_;  // links resolved
    QByteArray staged_; // beside it
};

// How a program at this path was installed, where it is no image.
[[nodiscard]] InstallKind installKindOf(const QString& program);

} // namespace amberquill::desktop
