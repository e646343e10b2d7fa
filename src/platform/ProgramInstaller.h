#pragma once

#include <QString>
#include <optional>

namespace amberquill {

// How the running program came to be on this machine.
enum class InstallKind {
    Image,          // one file that the user may replace
    PackageManager, // files that a package manager looks after
    Other,          // built by hand, or an image that is not the user's to replace
};

// Replaces the program by a newer one, where that is one file. In two steps, so that what has come can be
// looked at before anything is touched: stage(), then replace() or discard(). These three are safe on any
// thread, one at a time; the others belong to the main thread.
class ProgramInstaller {
public:
    ProgramInstaller() = default;
    ProgramInstaller(const ProgramInstaller&) = delete;
    ProgramInstaller& operator=(const ProgramInstaller&) = delete;
    virtual ~ProgramInstaller() = default;

    [[nodiscard]] virtual InstallKind kind() const = 0;

    // Copies the file to where it can take the program's place and answers the version it says it is. None:
    // that failed, or it does not say one; nothing is left behind.
    [[nodiscard]] virtual std::optional<QString> stage(const QString& file) = 0;

    // Puts what is staged in the program's place as one step: whatever happens meanwhile, the old program or
    // the new one is there whole. False: the old one is, and nothing is left behind.
    [[nodiscard]] virtual bool replace() = 0;

    // Removes what is staged. Harmless when nothing is.
    virtual void discard() = 0;

    // Has the program started anew as soon as this process has ended, which is up to the caller. False: that
    // cannot be done.
    [[nodiscard]] virtual bool startAgainAfterExit() = 0;
};

// A program that nobody can replace from within.
class NullProgramInstaller final : public ProgramInstaller {
public:
    [[nodiscard]] InstallKind kind() const override { return InstallKind::Other; }
    [[nodiscard]] std::optional<QString> stage(const QString&) override { return std::nullopt; }
    [[nodiscard]] bool replace() override { return false; }
    void discard() override {}
    [[nodiscard]] bool startAgainAfterExit() override { return false; }
};

} // namespace amberquill
