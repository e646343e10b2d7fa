#include "platform/linux/applications/launching/ExecLine.h"

#include <gtest/gtest.h>

using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

const ExecFields fields{u"calc-icon"_s, u"The Calculator"_s, u"/usr/share/applications/calc.desktop"_s};

std::optional<QStringList> arguments(const QString& line) {
    return execArguments(line, fields);
}

QStringList of(std::initializer_list<QString> words) {
    return words;
}

} // namespace

TEST(ExecQuoting, SpacesTabsAndLineEndsSeparate) {
    EXPECT_EQ(arguments(u"  calc  -a\t-b\n-c "_s), of({u"calc"_s, u"-a"_s, u"-b"_s, u"-c"_s}));
}

TEST(ExecQuoting, DoubleQuotesKeepSpacesTogether) {
    EXPECT_EQ(arguments(u"\"/opt/My App/run\" \"a b\""_s), of({u"/opt/My App/run"_s, u"a b"_s}));
}

TEST(ExecQuoting, InsideDoubleQuotesFourCharactersAreEscaped) {
    EXPECT_EQ(arguments(uR"(calc "\"\`\$\\")"_s), of({u"calc"_s, u"\"`$\\"_s}));
}

TEST(ExecQuoting, InsideDoubleQuotesOtherBackslashesAreLiteral) {
    EXPECT_EQ(arguments(uR"(calc "C:\new\table")"_s), of({u"calc"_s, uR"(C:\new\table)"_s}));
}

TEST(ExecQuoting, EmptyQuotesAreAnArgument) {
    EXPECT_EQ(arguments(u"calc \"\" x ''"_s), of({u"calc"_s, u""_s, u"x"_s, u""_s}));
}

TEST(ExecQuoting, AnApostropheInsideDoubleQuotesStaysWhole) {
    EXPECT_EQ(arguments(u"calc \"it's\" \"isn't it\""_s), of({u"calc"_s, u"it's"_s, u"isn't it"_s}));
}

TEST(ExecQuoting, SingleQuotesQuoteAndEscapeNothing) {
    EXPECT_EQ(arguments(uR"(sh -c 'echo "$HOME" \n')"_s), of({u"sh"_s, u"-c"_s, uR"(echo "$HOME" \n)"_s}));
}

TEST(ExecQuoting, QuotesMayBeInsideAWord) {
    EXPECT_EQ(arguments(u"calc --name=\"a b\"'c d'e"_s), of({u"calc"_s, u"--name=a bc de"_s}));
}

TEST(ExecQuoting, ABackslashOutsideQuotesEscapesTheNextCharacter) {
    EXPECT_EQ(arguments(uR"(wine C:\\Program\ Files\\a.exe)"_s),
              of({u"wine"_s, uR"(C:\Program Files\a.exe)"_s}));
}

TEST(ExecQuoting, NothingIsEvaluated) {
    EXPECT_EQ(arguments(u"calc $HOME `id` $(id) ~ * # ; && > x"_s),
              of({u"calc"_s, u"$HOME"_s, u"`id`"_s, u"$(id)"_s, u"~"_s, u"*"_s, u"#"_s, u";"_s, u"&&"_s,
                  u">"_s, u"x"_s}));
}

TEST(ExecQuoting, AnUnfinishedQuoteIsMalformed) {
    EXPECT_EQ(arguments(u"calc \"a b"_s), std::nullopt);
    EXPECT_EQ(arguments(u"calc 'a b"_s), std::nullopt);
    EXPECT_EQ(arguments(u"calc \"a\\\""_s), std::nullopt);
    EXPECT_EQ(arguments(u"calc a\\"_s), std::nullopt);
}

TEST(ExecQuoting, ALineWithoutAProgramIsMalformed) {
    EXPECT_EQ(arguments(u""_s), std::nullopt);
    EXPECT_EQ(arguments(u" \t"_s), std::nullopt);
    EXPECT_EQ(arguments(u"\"\" x"_s), std::nullopt);
    EXPECT_EQ(arguments(u"%U"_s), std::nullopt);
}

TEST(ExecQuoting, ANullCharacterIsMalformed) {
    EXPECT_EQ(arguments(u"calc a"_s + QChar(QChar::Null) + u"b"_s), std::nullopt);
    EXPECT_EQ(execArguments(u"calc %c"_s, {{}, QString(QChar(QChar::Null)), {}}), std::nullopt);
}

TEST(FieldCodes, CodesForFilesAreDroppedWithTheirArgument) {
    EXPECT_EQ(arguments(u"calc %f %F a %u %U"_s), of({u"calc"_s, u"a"_s}));
}

TEST(FieldCodes, AnArgumentWithMoreThanTheCodeStays) {
    EXPECT_EQ(arguments(u"calc --file=%f x%Uy"_s), of({u"calc"_s, u"--file="_s, u"xy"_s}));
}

TEST(FieldCodes, DeprecatedCodesAreDropped) {
    EXPECT_EQ(arguments(u"calc %d %D %n %N %v %m x%d"_s), of({u"calc"_s, u"x"_s}));
}

TEST(FieldCodes, TwoPercentSignsAreOne) {
    EXPECT_EQ(arguments(u"calc %% 100%%a %%f %%%%"_s), of({u"calc"_s, u"%"_s, u"100%a"_s, u"%f"_s, u"%%"_s}));
}

TEST(FieldCodes, TheIconIsTwoArguments) {
    EXPECT_EQ(arguments(u"calc %i x"_s), of({u"calc"_s, u"--icon"_s, u"calc-icon"_s, u"x"_s}));
}

TEST(FieldCodes, WithoutAnIconTheCodeIsDropped) {
    EXPECT_EQ(execArguments(u"calc %i x"_s, {{}, u"Name"_s, u"/p"_s}), of({u"calc"_s, u"x"_s}));
}

TEST(FieldCodes, TheNameAndThePathAreOneArgumentEach) {
    EXPECT_EQ(arguments(u"calc %c %k --title=%c"_s),
              of({u"calc"_s, u"The Calculator"_s, u"/usr/share/applications/calc.desktop"_s,
                  u"--title=The Calculator"_s}));
}

TEST(FieldCodes, AReplacementIsNotParsedAgain) {
    EXPECT_EQ(execArguments(u"calc %c %i"_s, {u"%f '"_s, u"a %k \"b\" %%"_s, u"/p"_s}),
              of({u"calc"_s, u"a %k \"b\" %%"_s, u"--icon"_s, u"%f '"_s}));
}

TEST(FieldCodes, AnEmptyReplacementLeavesAnEmptyArgument) {
    EXPECT_EQ(execArguments(u"calc %k"_s, {{}, u"Name"_s, {}}), of({u"calc"_s, u""_s}));
}

TEST(FieldCodes, FileForwardingMarksPassThrough) {
    EXPECT_EQ(arguments(u"/usr/bin/flatpak run --file-forwarding org.example.App @@u %U @@"_s),
              of({u"/usr/bin/flatpak"_s, u"run"_s, u"--file-forwarding"_s, u"org.example.App"_s, u"@@u"_s,
                  u"@@"_s}));
}

TEST(FieldCodes, UnknownCodesAreText) {
    EXPECT_EQ(arguments(u"xdg-open http://localhost/a%20b 5%"_s),
              of({u"xdg-open"_s, u"http://localhost/a%20b"_s, u"5%"_s}));
}

TEST(FieldCodes, QuotesAreUndoneBeforeCodesAreReplaced) {
    EXPECT_EQ(arguments(u"sh -c \"run %c\" '%c'"_s),
              of({u"sh"_s, u"-c"_s, u"run The Calculator"_s, u"The Calculator"_s}));
}

TEST(ExecBounds, AVeryLongLineIsRefused) {
    EXPECT_TRUE(arguments(u"calc "_s + QString(40'000, u'x')).has_value());
    EXPECT_EQ(arguments(u"calc "_s + QString(50'000, u'x')), std::nullopt);
}

TEST(ExecBounds, VeryManyWordsAreRefused) {
    EXPECT_TRUE(arguments(u"calc"_s + u" x"_s.repeated(4'000)).has_value());
    EXPECT_EQ(arguments(u"calc"_s + u" x"_s.repeated(5'000)), std::nullopt);
}

TEST(ExecBounds, AnExpandedLineIsBounded) {
    const ExecFields longName{{}, QString(60'000, u'n'), {}};
    EXPECT_TRUE(execArguments(u"calc %c"_s, longName).has_value());
    EXPECT_EQ(execArguments(u"calc "_s + u"%c"_s.repeated(20'000), longName), std::nullopt);
    EXPECT_EQ(execArguments(u"calc"_s + u" %c"_s.repeated(4'000), longName), std::nullopt);
}
