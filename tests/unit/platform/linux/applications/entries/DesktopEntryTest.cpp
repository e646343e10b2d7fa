#include "platform/linux/applications/entries/DesktopEntry.h"

#include "support/TemporaryTree.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

const QByteArray basic = "[Desktop Entry]\nType=Application\nName=Name\nExec=program\n";

std::optional<DesktopEntry> parse(const QByteArray& bytes, const QByteArrayList& locale = {}) {
    return parseDesktopEntry(bytes, entryLocaleFor(locale));
}

// The entry that results from adding these lines to a valid one.
DesktopEntry with(const QByteArray& lines, const QByteArrayList& locale = {}) {
    const auto entry = parse(basic + lines, locale);
    EXPECT_TRUE(entry) << lines.toStdString();
    return entry.value_or(DesktopEntry());
}

// An entry of these lines only.
DesktopEntry plain(const QString& name, const QString& exec) {
    DesktopEntry entry;
    entry.name = name;
    entry.exec = exec;
    return entry;
}

QString nameOf(const QByteArray& lines, const QByteArrayList& locale) {
    const auto entry = parse("[Desktop Entry]\nType=Application\nExec=program\n" + lines, locale);
    return entry ? entry->name : u"!invalid"_s;
}

} // namespace

TEST(DesktopEntryFile, EveryUsedKeyIsRead) {
    const auto entry = parse("[Desktop Entry]\n"
                             "Type=Application\n"
                             "Name=Text Editor\n"
                             "Exec=edit --new %U\n"
                             "TryExec=edit\n"
                             "Icon=text-editor\n"
                             "Path=/srv\n"
                             "StartupWMClass=Edit\n"
                             "OnlyShowIn=GNOME;KDE;\n"
                             "NotShowIn=XFCE\n"
                             "StartupNotify=true\n"
                             "Terminal=true\n"
                             "DBusActivatable=true\n"
                             "NoDisplay=true\n"
                             "Hidden=true\n");
    EXPECT_EQ(entry, (DesktopEntry{.name = u"Text Editor"_s,
                                   .exec = u"edit --new %U"_s,
                                   .tryExec = u"edit"_s,
                                   .icon = u"text-editor"_s,
                                   .path = u"/srv"_s,
                                   .startupWmClass = u"Edit"_s,
                                   .onlyShowIn = QStringList{u"GNOME"_s, u"KDE"_s},
                                   .notShowIn = QStringList{u"XFCE"_s},
                                   .startupNotify = true,
                                   .terminal = true,
                                   .dbusActivatable = true,
                                   .noDisplay = true,
                                   .hidden = true}));
}

TEST(DesktopEntryFile, AbsentKeysHaveTheirDefaults) {
    EXPECT_EQ(parse(basic), (plain(u"Name"_s, u"program"_s)));
}

TEST(DesktopEntryFile, CommentsAndBlankLinesAreSkipped) {
    EXPECT_TRUE(parse("# comment\n\n   \n\t# another\n" + basic));
    EXPECT_EQ(with("\n# Exec=other\n\n  #Exec=other\nPath=/x\n").path, u"/x"_s);
    EXPECT_EQ(with("#Exec=other\n").exec, u"program"_s);
}

TEST(DesktopEntryFile, LinesEndInLineFeedsWithOrWithoutCarriageReturns) {
    QByteArray windows = basic + "Terminal=true\nOnlyShowIn=GNOME;\n";
    windows.replace("\n", "\r\n");
    const auto entry = parse(windows);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->name, u"Name"_s);
    EXPECT_TRUE(entry->terminal);
    EXPECT_EQ(entry->onlyShowIn, QStringList{u"GNOME"_s});
}

TEST(DesktopEntryFile, TheLastLineNeedsNoEnd) {
    EXPECT_EQ(with("Path=/x").path, u"/x"_s);
    EXPECT_EQ(with("Path=").path, QString());
    EXPECT_EQ(with("Path").path, QString());
}

TEST(DesktopEntryFile, AByteOrderMarkIsSkipped) {
    EXPECT_TRUE(parse("\xEF\xBB\xBF" + basic));
    EXPECT_FALSE(parse("\xEF\xBB" + basic));
}

TEST(DesktopEntryFile, WhiteSpaceAroundKeysAndValuesIsIgnored) {
    const auto entry =
        parse("  [Desktop Entry]  \n\tType \t=  Application \n Name=  Two words \t\nExec = a  b\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->name, u"Two words"_s);
    EXPECT_EQ(entry->exec, u"a  b"_s);
    EXPECT_EQ(with("Name[de] = Wort\n", {"de"}).name, u"Wort"_s);
}

TEST(DesktopEntryFile, AValueMayHaveEqualsSignsAndBracketsInIt) {
    EXPECT_EQ(with("Exec=env A=B [x] program\n").exec, u"env A=B [x] program"_s);
}

TEST(DesktopEntryFile, TheDesktopEntryGroupComesFirst) {
    EXPECT_FALSE(parse("[Other]\nA=B\n" + basic));
    EXPECT_FALSE(parse("Name=early\n" + basic));
    EXPECT_FALSE(parse("[desktop entry]\nType=Application\nName=Name\nExec=program\n"));
    EXPECT_FALSE(parse("[KDE Desktop Entry]\nType=Application\nName=Name\nExec=program\n"));
    EXPECT_FALSE(parse("[Desktop Entry\nType=Application\nName=Name\nExec=program\n"));
    EXPECT_FALSE(parse("[Desktop Entry] x\nType=Application\nName=Name\nExec=program\n"));
    EXPECT_FALSE(parse(QByteArray()));
    EXPECT_FALSE(parse("\n\n"));
    EXPECT_FALSE(parse("[Desktop Entry]"));
}

TEST(DesktopEntryFile, KeysOfLaterGroupsAreIgnored) {
    const DesktopEntry entry =
        with("[Desktop Action new]\nName=New\nExec=other\nTerminal=true\n[Desktop Entry]\nNoDisplay=true\n");
    EXPECT_EQ(entry, (plain(u"Name"_s, u"program"_s)));
    EXPECT_EQ(with("[Desktop Action cut off\nExec=other\n").exec, u"program"_s);
}

TEST(DesktopEntryFile, TheCaseOfAKeyMatters) {
    EXPECT_FALSE(parse("[Desktop Entry]\nType=Application\nname=Name\nExec=program\n"));
    EXPECT_FALSE(with("terminal=true\nTERMINAL=true\n").terminal);
}

TEST(DesktopEntryFile, UnknownKeysAndMalformedLinesAreSkipped) {
    EXPECT_EQ(with("X-Vendor-Key=1\nNonsense\n=value\nName Suffix=x\nExec\nT\xC3\xA9rminal=true\nIcon]=x\n"
                   "Icon[=x\nIcon[de=x\n[]=x\n"),
              (plain(u"Name"_s, u"program"_s)));
}

TEST(DesktopEntryFile, OfARepeatedKeyTheLastCounts) {
    EXPECT_EQ(with("Exec=second\n").exec, u"second"_s);
    EXPECT_FALSE(with("Terminal=true\nTerminal=false\n").terminal);
}

TEST(DesktopEntryType, OnlyApplicationsAreEntries) {
    for (const char* const type : {"Link", "Directory", "Service", "application", "", "Application;"}) {
        EXPECT_FALSE(parse("[Desktop Entry]\nName=Name\nExec=program\nType=" + QByteArray(type) + "\n"))
            << type;
    }
    EXPECT_FALSE(parse("[Desktop Entry]\nName=Name\nExec=program\n"));
}

TEST(DesktopEntryNeeds, WithoutANameItIsInvalid) {
    EXPECT_FALSE(parse("[Desktop Entry]\nType=Application\nExec=program\n"));
    EXPECT_EQ(nameOf("Name=\n", {}), u"!invalid"_s);
    EXPECT_EQ(nameOf("Name=  \n", {}), u"!invalid"_s);
    EXPECT_EQ(nameOf("Name=\\s\\t\n", {}), u"!invalid"_s);
    EXPECT_EQ(nameOf("GenericName=Editor\n", {}), u"!invalid"_s);
}

TEST(DesktopEntryNeeds, WithoutExecItIsInvalidUnlessTheBusStartsIt) {
    const QByteArray nameless = "[Desktop Entry]\nType=Application\nName=Name\n";
    EXPECT_FALSE(parse(nameless));
    EXPECT_FALSE(parse(nameless + "Exec=\n"));
    EXPECT_FALSE(parse(nameless + "DBusActivatable=false\n"));
    const auto entry = parse(nameless + "DBusActivatable=true\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->exec, QString());
    EXPECT_TRUE(entry->dbusActivatable);
}

TEST(DesktopEntryEscapes, FiveEscapesAreUndone) {
    EXPECT_EQ(with("Name=a\\sb\\nc\\td\\re\\\\f\n").name, u"a b\nc\td\re\\f"_s);
    EXPECT_EQ(with("Exec=sh -c \"echo \\\\$HOME\"\n").exec, u"sh -c \"echo \\$HOME\""_s);
}

TEST(DesktopEntryEscapes, AnEscapedBackslashEscapesNothing) {
    EXPECT_EQ(with("Name=a\\\\nb\\\\\\\\n\n").name, u"a\\nb\\\\n"_s);
}

TEST(DesktopEntryEscapes, OtherBackslashesAreLiteral) {
    EXPECT_EQ(with("Name=\\a \\; \\\" \\$ \\\n").name, u"\\a \\; \\\" \\$ \\"_s);
}

TEST(DesktopEntryEscapes, EscapedSpacesAtTheEdgesAreKept) {
    EXPECT_EQ(with("Name=\\s x \\s\n").name, u"  x  "_s);
}

TEST(DesktopEntryLists, SemicolonsDivideAndTheLastMayBeMissing) {
    EXPECT_EQ(with("OnlyShowIn=A;B;\n").onlyShowIn, (QStringList{u"A"_s, u"B"_s}));
    EXPECT_EQ(with("OnlyShowIn=A;B\n").onlyShowIn, (QStringList{u"A"_s, u"B"_s}));
    EXPECT_EQ(with("OnlyShowIn=A;;B;;\n").onlyShowIn, (QStringList{u"A"_s, u"B"_s}));
}

TEST(DesktopEntryLists, AnEmptyListDiffersFromAnAbsentOne) {
    EXPECT_EQ(with("OnlyShowIn=\n").onlyShowIn, QStringList());
    EXPECT_EQ(with("OnlyShowIn=;\n").onlyShowIn, QStringList());
    EXPECT_EQ(with("").onlyShowIn, std::nullopt);
}

TEST(DesktopEntryLists, AnEscapedSemicolonIsLiteral) {
    EXPECT_EQ(with("OnlyShowIn=A\\;B;C\\sD;E\\\\;F\\x\\\n").onlyShowIn,
              (QStringList{u"A;B"_s, u"C D"_s, u"E\\"_s, u"F\\x\\"_s}));
}

TEST(DesktopEntryBooleans, TrueAndFalseAndInOldFilesOneAndZero) {
    EXPECT_TRUE(with("Terminal=true\n").terminal);
    EXPECT_TRUE(with("Terminal=1\n").terminal);
    EXPECT_FALSE(with("Terminal=false\n").terminal);
    EXPECT_FALSE(with("Terminal=0\n").terminal);
    EXPECT_EQ(with("StartupNotify=false\n").startupNotify, false);
    EXPECT_EQ(with("StartupNotify=1\n").startupNotify, true);
    EXPECT_EQ(with("").startupNotify, std::nullopt);
}

TEST(DesktopEntryBooleans, InvalidBooleansAreIgnored) {
    for (const char* const junk : {"yes", "True", "TRUE", "2", "true;", "", "truefalse", "\xFF"}) {
        const DesktopEntry entry = with("NoDisplay=" + QByteArray(junk) + "\nHidden=" + junk +
                                        "\nTerminal=" + junk + "\nStartupNotify=" + junk + "\n");
        EXPECT_FALSE(entry.noDisplay || entry.hidden || entry.terminal) << junk;
        EXPECT_EQ(entry.startupNotify, std::nullopt) << junk;
    }
}

TEST(DesktopEntryTranslations, TheMostSpecificOneWins) {
    const QByteArray lines = "Name=plain\nName[sr]=sr\nName[sr@latin]=sr@latin\nName[sr_RS]=sr_RS\n"
                             "Name[sr_RS@latin]=sr_RS@latin\n";
    EXPECT_EQ(nameOf(lines, {"sr_RS.UTF-8@latin"}), u"sr_RS@latin"_s);
    EXPECT_EQ(nameOf(lines, {"sr_RS.UTF-8"}), u"sr_RS"_s);
    EXPECT_EQ(nameOf(lines, {"sr_ME@latin"}), u"sr@latin"_s);
    EXPECT_EQ(nameOf(lines, {"sr_ME"}), u"sr"_s);
    EXPECT_EQ(nameOf(lines, {"sl"}), u"plain"_s);
    EXPECT_EQ(nameOf(lines, {}), u"plain"_s);
}

TEST(DesktopEntryTranslations, TheCountryComesBeforeTheModifier) {
    EXPECT_EQ(nameOf("Name=plain\nName[sr@latin]=modifier\nName[sr_RS]=country\n", {"sr_RS@latin"}),
              u"country"_s);
}

TEST(DesktopEntryTranslations, AKeyWithAModifierNeedsALocaleWithIt) {
    EXPECT_EQ(nameOf("Name=plain\nName[sr@latin]=latin\n", {"sr_RS.UTF-8"}), u"plain"_s);
}

TEST(DesktopEntryTranslations, TheOrderOfTheLinesDoesNotMatter) {
    EXPECT_EQ(nameOf("Name[de_AT]=exact\nName[de]=wide\nName=plain\n", {"de_AT"}), u"exact"_s);
    EXPECT_EQ(nameOf("Name=plain\nName[de]=wide\nName[de_AT]=exact\n", {"de_AT"}), u"exact"_s);
    EXPECT_EQ(nameOf("Name[de]=wide\nName=plain\n", {"de_AT"}), u"wide"_s);
}

TEST(DesktopEntryTranslations, TheSecondLanguageIsTheFallback) {
    EXPECT_EQ(nameOf("Name=plain\nName[fr]=fr\nName[it]=it\n", {"de_AT", "fr", "it"}), u"fr"_s);
}

TEST(DesktopEntryTranslations, ThreeLetterLanguagesWork) {
    EXPECT_EQ(nameOf("Name=plain\nName[hsb]=mjeno\n", {"hsb_DE"}), u"mjeno"_s);
    EXPECT_EQ(nameOf("Name=plain\nName[hs]=wrong\n", {"hsb_DE"}), u"plain"_s);
}

TEST(DesktopEntryTranslations, AnEmptyTranslationIsIgnored) {
    EXPECT_EQ(nameOf("Name=plain\nName[de]=\n", {"de"}), u"plain"_s);
}

TEST(DesktopEntryTranslations, ATranslationAloneIsAName) {
    EXPECT_EQ(nameOf("Name[de]=Name\n", {"de"}), u"Name"_s);
    EXPECT_EQ(nameOf("Name[de]=Name\n", {"fr"}), u"!invalid"_s);
}

TEST(DesktopEntryTranslations, IconsAreTranslatedAndOtherKeysAreNot) {
    const DesktopEntry entry =
        with("Icon=plain\nIcon[de]=deutsch\nExec[de]=other\nTerminal[de]=true\n", {"de"});
    EXPECT_EQ(entry.icon, u"deutsch"_s);
    EXPECT_EQ(entry.exec, u"program"_s);
    EXPECT_FALSE(entry.terminal);
}

TEST(DesktopEntryUtf8, AValueThatIsNotUtf8IsNotThere) {
    EXPECT_EQ(nameOf("Name=latin \xE4\n", {}), u"!invalid"_s);
    EXPECT_EQ(nameOf("Name=plain\nName[de]=\xE4\n", {"de"}), u"plain"_s);
    EXPECT_EQ(nameOf("Name=\xE4\nName[de]=gut\n", {"de"}), u"gut"_s);
    EXPECT_EQ(with("Icon=\xFF\n").icon, QString());
    EXPECT_FALSE(parse("[Desktop Entry]\nType=Application\nName=Name\nExec=\xFF\n"));
}

TEST(DesktopEntryUtf8, ABadValueElsewhereDoesNoHarm) {
    EXPECT_EQ(with("Comment=\xFF\nName[fr]=\xFF\n", {"de"}).name, u"Name"_s);
}

TEST(DesktopEntryUtf8, AValueWithANulInItIsNotThere) {
    EXPECT_EQ(with("Path=/a\0b\n"_ba).path, QString());
    EXPECT_EQ(nameOf("Name=a\0b\n"_ba, {}), u"!invalid"_s);
}

TEST(DesktopEntryUtf8, AByteOrderMarkInAValueIsALetter) {
    EXPECT_EQ(with("Exec=\xEF\xBB\xBF\n").exec, u"\uFEFF"_s);
}

TEST(DesktopEntryUtf8, NamesOfEveryScriptAreRead) {
    EXPECT_EQ(nameOf("Name=Größe 日本語 \xF0\x9F\x98\x80\n", {}), u"Größe 日本語 😀"_s);
}

TEST(DesktopEntrySafety, NothingInAValueIsEvaluated) {
    const DesktopEntry entry = with("Name=$HOME `id` $(id) ${USER} %n\nIcon=$(touch x)\nPath=~/$HOME\n"
                                    "Exec[$e]=evil\nIcon[$e]=$HOME\nName[$ie]=$(id)\n",
                                    {"$e", "de"});
    EXPECT_EQ(entry.name, u"$HOME `id` $(id) ${USER} %n"_s);
    EXPECT_EQ(entry.path, u"~/$HOME"_s);
    EXPECT_EQ(entry.exec, u"program"_s);
}

TEST(DesktopEntryBounds, ATooLargeFileIsInvalid) {
    const QByteArray line = "#" + QByteArray(1022, 'x') + "\n";
    QByteArray bytes = basic;
    while (bytes.size() + line.size() <= maximumEntryBytes) {
        bytes += line;
    }
    bytes += QByteArray(maximumEntryBytes - bytes.size(), '#');
    EXPECT_TRUE(parse(bytes));
    EXPECT_FALSE(parse(bytes + "#"));
}

TEST(DesktopEntryBounds, ATooLongLineIsInvalid) {
    const QByteArray key = "X-Long=";
    EXPECT_TRUE(parse(basic + key + QByteArray(maximumEntryLineBytes - key.size(), 'x') + "\n"));
    EXPECT_FALSE(parse(basic + key + QByteArray(maximumEntryLineBytes - key.size() + 1, 'x') + "\n"));
    EXPECT_FALSE(parse(basic + key + QByteArray(maximumEntryLineBytes - key.size() + 1, 'x')));
    EXPECT_FALSE(parse(QByteArray(maximumEntryLineBytes + 1, ' ') + "\n" + basic));
}

TEST(DesktopEntryBounds, TooManyKeysAreInvalid) {
    const int known = 3;
    EXPECT_TRUE(parse(basic + QByteArray("A=\n").repeated(maximumEntryKeys - known)));
    EXPECT_FALSE(parse(basic + QByteArray("A=\n").repeated(maximumEntryKeys - known + 1)));
}

TEST(DesktopEntryBounds, TooManyLinesAreInvalid) {
    EXPECT_TRUE(parse(basic + QByteArray("\n").repeated(maximumEntryLines / 2)));
    EXPECT_FALSE(parse(basic + QByteArray("\n").repeated(maximumEntryLines)));
    EXPECT_FALSE(parse(basic + QByteArray("#\n").repeated(maximumEntryLines)));
}

TEST(ReadDesktopEntry, AFileIsReadByItsPath) {
    const TemporaryTree tree;
    EXPECT_EQ(readDesktopEntry(tree.write("a.desktop", basic + "Name[de]=Wort\n"), entryLocaleFor({"de"})),
              (plain(u"Wort"_s, u"program"_s)));
    EXPECT_TRUE(readDesktopEntry(tree.link("link.desktop", "a.desktop"), {}));
}

TEST(ReadDesktopEntry, APipeIsInvalidAndDoesNotBlock) {
    const TemporaryTree tree;
    tree.link("dangling.desktop", "missing");
    ASSERT_EQ(::mkfifo(tree.at("pipe.desktop").c_str(), 0600), 0);
    tree.makeFolder("folder.desktop");
    for (const char* const name : {"dangling.desktop", "pipe.desktop", "folder.desktop", "missing.desktop"}) {
        EXPECT_EQ(readDesktopEntry(tree.path(name), {}), std::nullopt) << name;
    }
    EXPECT_EQ(readDesktopEntry(u"/dev/zero"_s, {}), std::nullopt);
    EXPECT_EQ(readDesktopEntry(u"relative.desktop"_s, {}), std::nullopt);
    EXPECT_EQ(readDesktopEntry(QString(), {}), std::nullopt);
}
