// installation/: how the program came to be on this machine, and its replacement by a newer one.
#pragma once

#include "platform/ProgramInstaller.h"

#include <QByteArray>
#include <QString>
#include <functional>
#include <vector>

namespace amberquill::desktop {

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
