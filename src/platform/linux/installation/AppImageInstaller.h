// platform/linux/installation/: finds out how the program was installed, and replaces it by a newer version.
//
// Parts: AppImageInstaller replaces the one file of an AppImage; ProgramVersion starts a program with
// --version and reads its answer. Programs installed in other ways are not replaced; installKindOf tells how
// they were installed.
//
// Rules: the new file is written beside the old one, flushed, asked for its version, then renamed over the
// old file, so that an interruption at any point leaves a working program. The caller has checked the
// signature. Blocks: call it on a background thread. Log: amberquill.installation.
#pragma once

#include "platform/ProgramInstaller.h"

#include <QByteArray>
#include <QLoggingCategory>
#include <QString>
#include <functional>
#include <vector>

namespace amberquill::desktop {

Q_DECLARE_LOGGING_CATEGORY(installationLog)

// Replaces the program if it runs from an AppImage: a single file that sets environment variables with its
// own path. Programs started from an AppImage inherit these variables. So the file counts as ours only if the
// running program lies in the folder where the image is mounted.
//
// If the path is a symbolic link, its target is replaced. The new file has the old one's mode.
class AppImageInstaller final : public ProgramInstaller {
public:
    // The steps, for tests that interrupt the installer after one of them.
    enum class Step { Created, HalfCopied, Copied, Flushed, AskedVersion, Renamed };

    // `environment` (NAME=value): of this program, and without the image's variables of the new one.
    // `program`: this program's path. `reached` is called after each step.
    AppImageInstaller(
        std::vector<QByteArray> environment, const QString& program,
        std::function<void(Step)> reached = [](Step) {});

    [[nodiscard]] InstallKind kind() const override { return kind_; }

    // Starts the new file with `--version`: the caller has checked its signature.
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

// How a program at this path was installed, if it is not an AppImage.
[[nodiscard]] InstallKind installKindOf(const QString& program);

} // namespace amberquill::desktop
