#include "platform/linux/applications/launching/Terminal.h"

#include <gtest/gtest.h>

using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

// A system on which these programs, and no others, are installed in /bin.
ProgramFinder installed(const QStringList& programs) {
    return [programs](const QString& name) {
        return programs.contains(name) ? std::optional(u"/bin/"_s + name) : std::nullopt;
    };
}

} // namespace

TEST(Terminal, XdgTerminalExecComesFirst) {
    EXPECT_EQ(terminalCommand(installed({u"xterm"_s, u"kitty"_s, u"xdg-terminal-exec"_s}), u"kitty"_s),
              QStringList({u"/bin/xdg-terminal-exec"_s}));
}

TEST(Terminal, ThenTheVariableTerminal) {
    EXPECT_EQ(terminalCommand(installed({u"x-terminal-emulator"_s, u"alacritty"_s}), u"alacritty"_s),
              QStringList({u"/bin/alacritty"_s, u"-e"_s}));
}

TEST(Terminal, TheVariableMayBeAPathAndHaveArguments) {
    const ProgramFinder find = [](const QString& name) {
        return name == u"/opt/my term/gnome-terminal" ? std::optional(name) : std::nullopt;
    };
    EXPECT_EQ(terminalCommand(find, u"'/opt/my term/gnome-terminal' --wait"_s),
              QStringList({u"/opt/my term/gnome-terminal"_s, u"--wait"_s, u"--"_s}));
}

TEST(Terminal, AnUnknownTerminalIsRunLikeXterm) {
    EXPECT_EQ(terminalCommand(installed({u"myterm"_s}), u"myterm"_s),
              QStringList({u"/bin/myterm"_s, u"-e"_s}));
}

TEST(Terminal, AVariableThatNamesNoProgramIsIgnored) {
    const ProgramFinder find = installed({u"xterm"_s});
    for (const QString& variable : {u"gone"_s, u""_s, u" "_s, u"'xterm"_s}) {
        EXPECT_EQ(terminalCommand(find, variable), QStringList({u"/bin/xterm"_s, u"-e"_s}));
    }
}

TEST(Terminal, KnownTerminalsGetTheirOwnExecuteArgument) {
    const auto command = [](const QString& program) { return terminalCommand(installed({program}), {}); };
    EXPECT_EQ(command(u"gnome-terminal"_s), QStringList({u"/bin/gnome-terminal"_s, u"--"_s}));
    EXPECT_EQ(command(u"konsole"_s), QStringList({u"/bin/konsole"_s, u"-e"_s}));
    EXPECT_EQ(command(u"xfce4-terminal"_s), QStringList({u"/bin/xfce4-terminal"_s, u"-x"_s}));
    EXPECT_EQ(command(u"foot"_s), QStringList({u"/bin/foot"_s}));
    EXPECT_EQ(command(u"wezterm"_s), QStringList({u"/bin/wezterm"_s, u"start"_s, u"--"_s}));
}

TEST(Terminal, XTerminalEmulatorComesBeforeTheOthers) {
    EXPECT_EQ(terminalCommand(installed({u"xterm"_s, u"konsole"_s, u"x-terminal-emulator"_s}), {}),
              QStringList({u"/bin/x-terminal-emulator"_s, u"-e"_s}));
}

TEST(Terminal, WithoutATerminalThereIsNoCommand) {
    EXPECT_EQ(terminalCommand(installed({u"firefox"_s}), u"gone"_s), std::nullopt);
}
