// Compares the answers with those of GIO, which the desktop's own programs use. Each intended difference is
// listed here with both answers and the reason.
#include "platform/linux/applications/entries/DesktopEntryApplications.h"

#include "support/FixedEnvironment.h"
#include "support/TemporaryTree.h"
#include "support/TestPaths.h"

#include <QProcess>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

namespace {

using Variables = std::map<std::string, QByteArray>;
using Names = std::map<std::string, std::string>; // by id

constexpr int timeLimit = 30'000; // milliseconds

Names namesByGio(const Variables& variables) {
    QProcessEnvironment environment;
    for (const auto& [name, value] : variables) {
        environment.insert(QString::fromStdString(name), QString::fromUtf8(value));
    }
    // Sanitizers read their options at the start.
    for (const char* const kept : {"ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS"}) {
        if (qEnvironmentVariableIsSet(kept)) {
            environment.insert(QLatin1String(kept), qEnvironmentVariable(kept));
        }
    }
    QProcess gio;
    gio.setProcessEnvironment(environment);
    gio.start(testProgram(QStringLiteral("gio_entries")), QStringList());
    EXPECT_TRUE(gio.waitForFinished(timeLimit));
    EXPECT_EQ(gio.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(gio.exitCode(), 0) << gio.readAllStandardError().toStdString();
    Names names;
    const QList<QByteArray> fields = gio.readAllStandardOutput().split('\0');
    for (qsizetype at = 0; at + 2 < fields.size(); at += 3) {
        names[fields[at].toStdString()] = fields[at + 2].toStdString();
    }
    return names;
}

Names namesByUs(const Variables& variables) {
    const DesktopEntryApplications applications(entrySettingsFromEnvironment(environmentOf(variables)));
    Names names;
    for (const RegisteredApplication& application : applications.list()) {
        const std::string id = applications.desktopId(application.path).value_or(QString()).toStdString();
        EXPECT_FALSE(id.empty()) << application.path.toStdString();
        EXPECT_TRUE(names.emplace(id, application.name.toStdString()).second) << id << " is listed twice";
    }
    return names;
}

constexpr const char* absent = "(not listed)";

std::string nameIn(const Names& names, const std::string& id) {
    const auto found = names.find(id);
    return found == names.end() ? absent : found->second;
}

// A case in which GIO and the launcher differ.
struct Difference {
    std::string ours;
    std::string gio;
    std::string reason;
};
using Differences = std::map<std::string, Difference>; // by id

// Each id has the same answer from both, or is listed in the differences with exactly these two answers.
void compare(const Names& ours, const Names& gio, const Differences& differences) {
    std::set<std::string> ids;
    for (const Names& names : {ours, gio}) {
        for (const auto& [id, name] : names) {
            ids.insert(id);
        }
    }
    for (const auto& [id, difference] : differences) {
        ids.insert(id);
        EXPECT_NE(difference.ours, difference.gio) << id << " is no difference";
        EXPECT_FALSE(difference.reason.empty()) << id;
    }
    for (const std::string& id : ids) {
        const auto known = differences.find(id);
        if (known == differences.end()) {
            EXPECT_EQ(nameIn(ours, id), nameIn(gio, id)) << id;
        } else {
            EXPECT_EQ(nameIn(ours, id), known->second.ours) << id << ": " << known->second.reason;
            EXPECT_EQ(nameIn(gio, id), known->second.gio) << id << ": " << known->second.reason;
        }
    }
}

// Two data folders with all cases.
class GioComparison : public testing::Test {
protected:
    GioComparison() {
        fs::permissions(tree_.at(), fs::perms{0755});
        tree_.write("bin/tool", "#!/bin/sh\n");
        fs::permissions(tree_.at("bin/tool"), fs::perms{0755});
        tree_.write("bin/text", "no program\n");
        fs::permissions(tree_.at("bin/text"), fs::perms{0644});
        tree_.makeFolder("bin/folder");
        tree_.makeFolder("home");
    }

    void entry(const std::string& file, const QByteArray& content) const {
        tree_.write("own/applications/" + file + ".desktop", content);
    }

    // A valid entry and these lines.
    void with(const std::string& file, const QByteArray& lines) const {
        entry(file, "[Desktop Entry]\nType=Application\nName=" + QByteArray::fromStdString(file) +
                        "\nExec=tool\n" + lines);
    }

    // An entry of these lines only.
    void only(const std::string& file, const QByteArray& lines) const {
        entry(file, "[Desktop Entry]\n" + lines);
    }

    void lower(const std::string& file, const QByteArray& lines = {}) const {
        tree_.write("system/applications/" + file + ".desktop",
                    "[Desktop Entry]\nType=Application\nName=lower\nExec=tool\n" + lines);
    }

    // An environment with these folders. Both programs may add folders of their own.
    [[nodiscard]] Variables variables(const Variables& locale, const QByteArray& desktops) const {
        Variables result = {
            {"HOME", tree_.path("home").toUtf8()},
            {"XDG_DATA_HOME", tree_.path("own").toUtf8()},
            {"XDG_DATA_DIRS", tree_.path("system").toUtf8() + "/:" + tree_.path("system").toUtf8()},
            {"XDG_CURRENT_DESKTOP", desktops},
            {"PATH", tree_.path("bin").toUtf8()}};
        result.insert(locale.begin(), locale.end());
        return result;
    }

    // Compares all cases. `differences` are those of this locale, in addition to `alwaysDifferent`.
    void compareAll(const Variables& locale, const Differences& differences) const {
        makeAll();
        Differences all = alwaysDifferent();
        for (const auto& [id, difference] : differences) {
            all[id] = difference;
        }
        for (const char* const desktops : {"ubuntu:GNOME", "KDE", ""}) {
            SCOPED_TRACE(std::string("on the desktop ") + desktops);
            const Variables environment = variables(locale, desktops);
            const Names gio = namesByGio(environment);
            EXPECT_GT(gio.size(), 60U); // so many cases are listed
            compare(namesByUs(environment), gio, all);
        }
    }

    static Differences alwaysDifferent();

    void makeFileFormatCases() const;
    void makeKeyCases() const;
    void makeTranslationCases() const;
    void makeFolderCases() const;
    void makeAll() const {
        makeFileFormatCases();
        makeKeyCases();
        makeTranslationCases();
        makeFolderCases();
    }

    TemporaryTree tree_;
};

void GioComparison::makeFileFormatCases() const {
    with("format-plain", {});
    entry("format-carriage-returns", "[Desktop Entry]\r\nType=Application\r\nName=returns\r\nExec=tool\r\n");
    entry("format-mark", "\xEF\xBB\xBF[Desktop Entry]\nType=Application\nName=mark\nExec=tool\n");
    entry("format-comment-first",
          "# hello\n\n   \n[Desktop Entry]\nType=Application\nName=comment\nExec=tool\n");
    entry("format-blanks", "  [Desktop Entry]  \n\tType \t=  Application\n Name = blanks\n  Exec=tool\n");
    only("format-blanks-at-the-end", "Type=Application\nName=end  \nExec=tool\n");
    entry("format-other-group-first",
          "[Other]\nA=B\n[Desktop Entry]\nType=Application\nName=other\nExec=tool\n");
    entry("format-key-first", "Name=early\n[Desktop Entry]\nType=Application\nName=key\nExec=tool\n");
    entry("format-case-of-the-group", "[desktop entry]\nType=Application\nName=case\nExec=tool\n");
    entry("format-old-group", "[KDE Desktop Entry]\nType=Application\nName=old\nExec=tool\n");
    entry("format-empty", {});
    entry("format-group-alone", "[Desktop Entry]\n");
    entry("format-binary", "\0\1\2\xFF\xFE"_ba);
    with("format-junk-line", "this line says nothing\n");
    with("format-junk-line-later", "[Desktop Action new]\nthis line says nothing\n");
    with("format-key-with-blank", "Some Key=value\n");
    with("format-key-not-ascii", "T\xC3\xA9rminal=true\n");
    with("format-key-not-utf8", "T\xE9rminal=true\n");
    with("format-empty-key", "=value\n");
    with("format-later-group", "[Desktop Action new]\nName=action\nExec=missing\nNoDisplay=true\n");
    with("format-group-again", "[Other]\nA=B\n[Desktop Entry]\nNoDisplay=true\n");
    with("format-key-twice", "Name=second\n");
    with("format-no-end", "NoDisplay=true");
    with("format-equals", "Exec=tool a=b [c]\n");
    with("format-many-keys", QByteArray("X-Key=1\n").repeated(maximumEntryKeys + 1));
    with("format-long-line", "X-Key=" + QByteArray(maximumEntryLineBytes, 'x') + "\n");
    with("format-large", ("# " + QByteArray(1000, 'x') + "\n").repeated(1100));
}

void GioComparison::makeKeyCases() const {
    only("key-no-type", "Name=no type\nExec=tool\n");
    only("key-type-link", "Type=Link\nName=link\nURL=file:///\nExec=tool\n");
    only("key-type-directory", "Type=Directory\nName=directory\nExec=tool\n");
    only("key-type-case", "Type=application\nName=case\nExec=tool\n");
    only("key-no-name", "Type=Application\nExec=tool\n");
    only("key-empty-name", "Type=Application\nName=\nExec=tool\n");
    only("key-blank-name", "Type=Application\nName=\\s\nExec=tool\n");
    only("key-name-case", "Type=Application\nname=lower\nExec=tool\n");
    only("key-no-exec", "Type=Application\nName=no exec\n");
    only("key-empty-exec", "Type=Application\nName=empty exec\nExec=\n");
    only("key-exec-missing", "Type=Application\nName=missing program\nExec=not-installed-anywhere\n");
    only("key-exec-quoting", "Type=Application\nName=quoting\nExec=tool \"never closed\n");
    only("org.example.Bus", "Type=Application\nName=bus\nDBusActivatable=true\n");
    only("org.example.BusFalse", "Type=Application\nName=bus false\nDBusActivatable=false\n");
    only("org.example.BusJunk", "Type=Application\nName=bus junk\nExec=tool\nDBusActivatable=certainly\n");
    only("key-escapes", "Type=Application\nName=a\\sb\\tc\\\\d\nExec=tool\n");
    only("key-unknown-escape", "Type=Application\nName=a\\qb\nExec=tool\n");
    only("key-newline", "Type=Application\nName=a\\nb\nExec=tool\n");
    only("key-evaluated", "Type=Application\nName=$HOME `id` $(id)\nExec=tool\n");
    only("key-expansion-suffix", "Type=Application\nName[$e]=$HOME\nName=plain\nExec=tool\n");
    only("key-not-utf8", "Type=Application\nName=latin \xE4\nExec=tool\n");
    only("key-exec-not-utf8", "Type=Application\nName=exec\nExec=tool \xE4\n");
    only("key-nul", "Type=Application\nName=a\0b\nExec=tool\n"_ba);
    with("key-comment-not-utf8", "Comment=\xE4\n");
    for (const char* const value : {"true", "false", "1", "0", "True", "yes", "", "true ", "true;"}) {
        with("nodisplay-" + std::string(value), "NoDisplay=" + QByteArray(value) + "\n");
        with("hidden-" + std::string(value), "Hidden=" + QByteArray(value) + "\n");
    }
    with("try-installed", "TryExec=tool\n");
    with("try-missing", "TryExec=missing\n");
    with("try-absolute", "TryExec=" + tree_.path("bin/tool").toUtf8() + "\n");
    with("try-absolute-missing", "TryExec=" + tree_.path("bin/tool2").toUtf8() + "\n");
    with("try-not-executable", "TryExec=text\n");
    with("try-folder", "TryExec=folder\n");
    with("try-empty", "TryExec=\n");
    with("try-arguments", "TryExec=tool --version\n");
    with("try-relative", "TryExec=./tool\nPath=" + tree_.path("bin").toUtf8() + "\n");
    with("try-escape", "TryExec=to\\sol\n");
    with("show-gnome", "OnlyShowIn=GNOME;\n");
    with("show-gnome-no-end", "OnlyShowIn=GNOME\n");
    with("show-several", "OnlyShowIn=KDE;XFCE;ubuntu;\n");
    with("show-nobody", "OnlyShowIn=\n");
    with("show-case", "OnlyShowIn=gnome;\n");
    with("show-escaped", "OnlyShowIn=KDE\\;GNOME;\n");
    with("show-blank", "OnlyShowIn= GNOME ; KDE;\n");
    with("show-not-gnome", "NotShowIn=GNOME;\n");
    with("show-not-empty", "NotShowIn=\n");
    with("show-both", "OnlyShowIn=GNOME;\nNotShowIn=ubuntu;\n");
    with("show-both-other-way", "OnlyShowIn=ubuntu;\nNotShowIn=GNOME;\n");
    with("show-same-in-both", "OnlyShowIn=GNOME;\nNotShowIn=GNOME;\n");
}

void GioComparison::makeTranslationCases() const {
    with("language-all", "Name[sr]=sr\nName[sr@latin]=sr@latin\nName[sr_RS]=sr_RS\nName[sr_RS@latin]=both\n"
                         "Name[de]=de\nName[de_AT]=de_AT\nName[hsb]=hsb\nName[fr]=fr\n");
    with("language-modifier-or-country", "Name[sr@latin]=modifier\nName[sr_RS]=country\n");
    with("language-modifier-alone", "Name[sr@latin]=modifier\n");
    with("language-encoding", "Name[de_DE.UTF-8]=encoding\n");
    with("language-case", "Name[DE]=upper\n");
    with("language-second", "Name[fr]=second\n");
    with("language-empty", "Name[de]=\n");
    with("language-not-utf8", "Name[de]=\xE4\n");
    with("language-c", "Name[C]=C\n");
    with("language-twice", "Name[de]=first\nName[de]=second\n");
    only("language-translation-first", "Name[de]=translated\nName=plain\nType=Application\nExec=tool\n");
    only("language-translation-alone", "Type=Application\nName[de]=translated\nExec=tool\n");
    with("language-exec", "Exec[de]=missing\nNoDisplay[de]=true\nHidden[de]=true\n");
    with("language-suffix-open", "Icon[de=x\n");
}

void GioComparison::makeFolderCases() const {
    with("sub/one", {});
    with("sub/two/three", {});
    with("wine/applications/notes", {});
    with("same-below", {});
    with("org.amberquill.Amberquill", {});
    with(".dot", {});
    for (const char* const id :
         {"masked-hidden", "masked-nodisplay", "masked-invalid", "masked-empty", "masked-try", "masked-show",
          "masked-null", "masked-dangling", "masked-folder", "masked-plain", "masked-sub-x", "only-lower"}) {
        lower(id);
    }
    lower("hidden-below", "Hidden=true\n");
    with("hidden-below", {});
    with("masked-hidden", "Hidden=true\n");
    with("masked-nodisplay", "NoDisplay=true\n");
    entry("masked-invalid", "junk\n");
    entry("masked-empty", {});
    with("masked-try", "TryExec=missing\n");
    with("masked-show", "OnlyShowIn=None;\n");
    with("masked-plain", {});
    with("masked/sub/x", {});
    tree_.link("own/applications/masked-null.desktop", "/dev/null");
    tree_.link("own/applications/masked-dangling.desktop", "missing");
    tree_.makeFolder("own/applications/masked-folder.desktop");
    tree_.link("own/applications/linked.desktop", "sub/one.desktop");
    tree_.write("elsewhere/inside.desktop", "[Desktop Entry]\nType=Application\nName=inside\nExec=tool\n");
    tree_.link("own/applications/linked-folder", tree_.at("elsewhere"));
    tree_.write("own/applications/no-entry.desktop~",
                "[Desktop Entry]\nType=Application\nName=~\nExec=tool\n");
    tree_.write("own/applications/capital.DESKTOP", "[Desktop Entry]\nType=Application\nName=~\nExec=tool\n");
    tree_.write("own/flatpak/exports/share/applications/exported.desktop",
                "[Desktop Entry]\nType=Application\nName=exported\nExec=tool\n");
}

} // namespace

Differences GioComparison::alwaysDifferent() {
    const std::string lenient = "one line that says nothing does not take the application away";
    const std::string bounded = "a file from outside is bounded in size, line length and number of keys";
    const std::string nameless = "an entry without a name cannot be shown: it is invalid, not `Unnamed`";
    const std::string notStartable = "an entry without Exec that the bus does not start cannot be opened";
    const std::string programMissing =
        "only TryExec says whether an application is installed: Exec is judged when it is opened";
    const std::string noFile = "what is not a file is not there, and hides no file of lower precedence";
    return {
        {"format-blanks-at-the-end.desktop",
         {"end", "end  ", "blanks that nobody sees are none of the name"}},
        {"format-empty-key.desktop", {"format-empty-key", absent, lenient}},
        {"format-junk-line.desktop", {"format-junk-line", absent, lenient}},
        {"format-junk-line-later.desktop",
         {"format-junk-line-later", absent, "groups after the first are not read to list an application"}},
        {"format-group-again.desktop",
         {"format-group-again", absent, "a second group of the same name is not allowed, and not read"}},
        {"format-mark.desktop", {"mark", absent, "a byte order mark occurs and does no harm"}},
        {"format-many-keys.desktop", {absent, "format-many-keys", bounded}},
        {"format-long-line.desktop", {absent, "format-long-line", bounded}},
        {"format-large.desktop", {absent, "format-large", bounded}},
        {"key-no-name.desktop", {absent, "Unnamed", nameless}},
        {"key-name-case.desktop", {absent, "Unnamed", nameless}},
        {"key-empty-name.desktop", {absent, "", nameless}},
        {"key-blank-name.desktop", {absent, " ", nameless}},
        {"key-not-utf8.desktop", {absent, "Unnamed", nameless}},
        {"key-nul.desktop", {absent, "a", "a value with a NUL in it is no text"}},
        {"key-no-exec.desktop", {absent, "no exec", notStartable}},
        {"key-empty-exec.desktop", {absent, "empty exec", notStartable}},
        {"key-exec-not-utf8.desktop", {absent, "exec", notStartable}},
        {"org.example.BusFalse.desktop", {absent, "bus false", notStartable}},
        {"key-exec-missing.desktop", {"missing program", absent, programMissing}},
        {"key-exec-quoting.desktop", {"quoting", absent, programMissing}},
        {"key-expansion-suffix.desktop",
         {"plain", absent, "a key with a suffix that is no language is one key that nobody asks for"}},
        {"language-suffix-open.desktop", {"language-suffix-open", absent, lenient}},
        {"masked-dangling.desktop", {"lower", absent, noFile}},
        {"masked-folder.desktop", {"lower", absent, noFile}},
        {"exported.desktop",
         {"exported", absent, "what Flatpak exports is found without the session's help"}},
        {"org.amberquill.Amberquill.desktop",
         {absent, "org.amberquill.Amberquill", "the launcher does not list itself"}},
        {"language-c.desktop", {"language-c", "C", "C is no language: it means the plain key"}},
    };
}

TEST_F(GioComparison, EveryCaseHasTheSameAnswerOrAReason) {
    compareAll({{"LANGUAGE", "de_AT:fr"}, {"LANG", "C"}},
               {{"language-empty.desktop",
                 {"language-empty", "", "an empty translation says nothing: the plain name is better"}}});
}

TEST_F(GioComparison, InALocaleWithAModifier) {
    compareAll({{"LANG", "sr_RS.UTF-8@latin"}},
               {{"language-modifier-or-country.desktop",
                 {"country", "modifier", "the standard puts the country before the modifier"}},
                {"language-translation-alone.desktop",
                 {absent, "Unnamed", "a name in another language only is no name in this one"}}});
}

TEST_F(GioComparison, InALocaleWithAnEncoding) {
    compareAll({{"LC_ALL", "de_DE.UTF-8"}, {"LC_MESSAGES", "fr"}, {"LANG", "it"}},
               {{"language-encoding.desktop",
                 {"language-encoding", "encoding", "the standard matches keys without an encoding only"}},
                {"language-empty.desktop",
                 {"language-empty", "", "an empty translation says nothing: the plain name is better"}}});
}

TEST_F(GioComparison, InAThreeLetterLanguage) {
    compareAll({{"LC_MESSAGES", "hsb_DE.UTF-8"}, {"LANG", "de_DE.UTF-8"}},
               {{"language-translation-alone.desktop",
                 {absent, "Unnamed", "a name in another language only is no name in this one"}}});
}

TEST_F(GioComparison, WithoutALanguage) {
    compareAll({{"LANG", "C.UTF-8"}},
               {{"language-translation-alone.desktop",
                 {absent, "Unnamed", "a name in another language only is no name in this one"}}});
}

TEST_F(GioComparison, ALinkToAParentIsNotFollowedRepeatedly) {
    with("x", {});
    tree_.link("own/applications/loop", ".");
    const Variables environment = variables({}, "GNOME");
    const Names gio = namesByGio(environment);
    EXPECT_EQ(namesByUs(environment), (Names{{"x.desktop", "x"}}));
    // The same file under forty ids is one tile forty times.
    EXPECT_TRUE(gio.contains("x.desktop"));
    EXPECT_TRUE(gio.contains("loop-x.desktop"));
}

// The folders beside the test, with realistic entries. There are no differences.
TEST_F(GioComparison, TheStoredEntriesHaveTheSameAnswer) {
    const QByteArray kept =
        projectFile(QStringLiteral("tests/unit/platform/linux/applications/entries/data")).toLocal8Bit();
    const std::pair<const char*, const char*> languages[] = {{"", "Paper Boats"},
                                                             {"de", "Papierboote"},
                                                             {"de_AT:fr", "Papierschifferl"},
                                                             {"fr_CA:fr", "Petits bateaux de papier"},
                                                             {"ja", "紙の船"},
                                                             {"zh_TW", "紙船"},
                                                             {"sr_RS@latin", "Papirni brodovi"},
                                                             {"sr@latin", "Papirni brodovi"},
                                                             {"pt_BR", "Barquinhos de papel"},
                                                             {"pt_PT:pt", "Barcos de papel"}};
    for (const auto& [language, boats] : languages) {
        for (const char* const desktops : {"GNOME", "KDE", "X-Other:XFCE", ""}) {
            SCOPED_TRACE(std::string("in the languages ") + language + " on the desktop " + desktops);
            Variables environment = variables({{"LANGUAGE", language}}, desktops);
            environment["XDG_DATA_HOME"] = kept + "/own";
            environment["XDG_DATA_DIRS"] = kept + "/system";
            const Names ours = namesByUs(environment);
            EXPECT_GT(ours.size(), 45U); // so many are listed on any desktop
            EXPECT_EQ(nameIn(ours, "many-languages.desktop"), boats);
            compare(ours, namesByGio(environment), {});
        }
    }
}
