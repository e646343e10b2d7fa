#pragma once

#include <QString>
#include <optional>

namespace amberquill {

// How the running program was installed.
enum class InstallKind {
    Image,          // one file that the user may replace
    PackageManager, // files that belong to a package manager
    Other,          // built by hand, or an image that is not the user's to replace
};

// Replaces the program by a newer one, if it is a single file. There are two steps, so that the new file can
// be checked before the old one is touched: stage(), then replace() or discard(). These three are safe on any
// thread, one at a time; the others are called on the main thread.
class ProgramInstaller {
public:
    ProgramInstaller() = default;
    ProgramInstaller(const ProgramInstaller&) = delete;
    ProgramInstaller& operator=(const ProgramInstaller&) = delete;
    virtual ~ProgramInstaller() = default;

    [[nodiscard]] virtual InstallKind kind() const = 0;

    // Copies the file next to the program and answers the version that it reports. None: copying failed, or
    // the file reports no version; the copy is removed.
    [[nodiscard]] virtual std::optional<QString> stage(const QString& file) = 0;

    // Renames the staged file over the program, in one step: at any time the old program or the new one is
    // there, complete. False: the old one is still there, and the staged file is removed.
    [[nodiscard]] virtual bool replace() = 0;

    // Removes the staged file, if there is one.
    virtual void discard() = 0;

    // Starts the program again as soon as this process has ended; the caller ends it. False: this is not
    // possible.
    [[nodiscard]] virtual bool startAgainAfterExit() = 0;
};

// A program that cannot replace itself.
class NullProgramInstaller final : public ProgramInstaller {
public:
    [[nodiscard]] InstallKind kind() const override { return InstallKind::Other; }
    [[nodiscard]] std::optional<QString> stage(const QString&) override { return std::nullopt; }
    [[nodiscard]] bool replace() override { return false; }
    void discard() override {}
    [[nodiscard]] bool startAgainAfterExit() override { return false; }
};

} // namespace amberquill
