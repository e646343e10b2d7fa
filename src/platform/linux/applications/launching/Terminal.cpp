#include "platform/linux/applications/launching/Terminal.h"

#include "platform/linux/applications/launching/ExecLine.h"

#include <QLatin1StringView>
#include <array>

namespace amberquill::desktop {

namespace {

struct KnownTerminal {
    QLatin1StringView program;
    // The words between the terminal and the command. All these terminals take the rest of the arguments as
    // the command, so that no quoting is needed.
    QLatin1StringView execute;
};

// In order of preference: the system's own choice, those of the desktops, then the others.
constexpr std::array knownTerminals = {
    KnownTerminal{QLatin1StringView("xdg-terminal-exec"), {}},
    KnownTerminal{QLatin1StringView("x-terminal-emulator"), QLatin1StringView("-e")},
    KnownTerminal{QLatin1StringView("ptyxis"), QLatin1StringView("--")},
    KnownTerminal{QLatin1StringView("kgx"), QLatin1StringView("--")},
    KnownTerminal{QLatin1StringView("gnome-terminal"), QLatin1StringView("--")},
    KnownTerminal{QLatin1StringView("konsole"), QLatin1StringView("-e")},
    KnownTerminal{QLatin1StringView("xfce4-terminal"), QLatin1StringView("-x")},
    KnownTerminal{QLatin1StringView("mate-terminal"), QLatin1StringView("-x")},
    KnownTerminal{QLatin1StringView("lxterminal"), QLatin1StringView("-e")},
    KnownTerminal{QLatin1StringView("qterminal"), QLatin1StringView("-e")},
    KnownTerminal{QLatin1StringView("foot"), {}},
    KnownTerminal{QLatin1StringView("footclient"), {}},
    KnownTerminal{QLatin1StringView("kitty"), {}},
    KnownTerminal{QLatin1StringView("alacritty"), QLatin1StringView("-e")},
    KnownTerminal{QLatin1StringView("ghostty"), QLatin1StringView("-e")},
    KnownTerminal{QLatin1StringView("wezterm"), QLatin1StringView("start --")},
    KnownTerminal{QLatin1StringView("tilix"), QLatin1StringView("-e")},
    KnownTerminal{QLatin1StringView("terminator"), QLatin1StringView("-x")},
    KnownTerminal{QLatin1StringView("urxvt"), QLatin1StringView("-e")},
    KnownTerminal{QLatin1StringView("rxvt"), QLatin1StringView("-e")},
    KnownTerminal{QLatin1StringView("st"), QLatin1StringView("-e")},
    KnownTerminal{QLatin1StringView("uxterm"), QLatin1StringView("-e")},
    KnownTerminal{QLatin1StringView("xterm"), QLatin1StringView("-e")},
};

QStringList executeWords(const KnownTerminal& terminal) {
    return QString(terminal.execute).split(u' ', Qt::SkipEmptyParts);
}

// Most terminals that are not in the table take xterm's argument.
QStringList executeWords(const QString& program) {
    const QStringView name = QStringView(program).sliced(program.lastIndexOf(u'/') + 1);
    for (const KnownTerminal& known : knownTerminals) {
        if (name == known.program) {
            return executeWords(known);
        }
    }
    return {QStringLiteral("-e")};
}

std::optional<QStringList> preferredCommand(const ProgramFinder& find, const QString& preferred) {
    const std::optional<QStringList> words = splitCommandLine(preferred);
    if (!words || words->isEmpty()) {
        return std::nullopt;
    }
    const std::optional<QString> program = find(words->front());
    if (!program) {
        return std::nullopt;
    }
    return QStringList(*program) + words->sliced(1) + executeWords(words->front());
}

} // namespace

std::optional<QStringList> terminalCommand(const ProgramFinder& find, const QString& preferred) {
    if (const std::optional<QString> chooser = find(QStringLiteral("xdg-terminal-exec"))) {
        return QStringList(*chooser);
    }
    if (std::optional<QStringList> command = preferredCommand(find, preferred)) {
        return command;
    }
    for (const KnownTerminal& known : knownTerminals) {
        if (const std::optional<QString> program = find(known.program)) {
            return QStringList(*program) + executeWords(known);
        }
    }
    return std::nullopt;
}

} // namespace amberquill::desktop
