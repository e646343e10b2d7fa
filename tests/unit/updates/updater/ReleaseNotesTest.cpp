#include "updates/updater/ReleaseNotes.h"

#include "support/TemporaryTree.h"

#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype amplyLong = 10'000;

QString ofHtml(const QString& html) {
    return plainTextOfHtml(html, amplyLong);
}

} // namespace

TEST(ReleaseNotes, TagsAreRemoved) {
    EXPECT_EQ(ofHtml(u"<b>Bold</b> and <a href=\"https://example.org/?a>b\">a link</a>"_s),
              u"Bold and b\">a link"_s);
    EXPECT_EQ(ofHtml(u"<img src=x onerror=alert(1)>text"_s), u"text"_s);
    EXPECT_EQ(ofHtml(u"one<br>two<BR/>three"_s), u"one\ntwo\nthree"_s);
}

TEST(ReleaseNotes, BlocksStartNewLines) {
    EXPECT_EQ(ofHtml(u"<h2>What is new</h2><p>First\n paragraph.</p><p>Second.</p>"_s),
              u"What is new\n\nFirst paragraph.\n\nSecond."_s);
    EXPECT_EQ(ofHtml(u"<div>one</div><div>two</div>"_s), u"one\ntwo"_s);
    EXPECT_EQ(ofHtml(u"<p></p><p></p><p></p><br><br><br>text"_s), u"text"_s);
}

TEST(ReleaseNotes, ListItemsGetABullet) {
    EXPECT_EQ(ofHtml(u"New:<ul>\n<li>one</li>\n<li>two</li>\n</ul>Done."_s),
              u"New:\n\u2022 one\n\u2022 two\n\nDone."_s);
}

TEST(ReleaseNotes, CommentsScriptsAndStylesAreRemoved) {
    EXPECT_EQ(ofHtml(u"a<!-- <b>not</b> this -->b"_s), u"ab"_s);
    EXPECT_EQ(ofHtml(u"a<style>p > q { color: red }</style>b<SCRIPT>if (a < b) alert()</script >c"_s),
              u"abc"_s);
    EXPECT_EQ(ofHtml(u"<!DOCTYPE html>a"_s), u"a"_s);
    EXPECT_EQ(ofHtml(u"a<script>never closed"_s), u"a"_s);
    EXPECT_EQ(ofHtml(u"a<!-- never closed"_s), u"a"_s);
    EXPECT_EQ(ofHtml(u"a<b never closed"_s), u"a"_s);
}

TEST(ReleaseNotes, ALessThanSignThatStartsNoTagIsText) {
    EXPECT_EQ(ofHtml(u"a < b > c, 1<2, <3"_s), u"a < b > c, 1<2, <3"_s);
    EXPECT_EQ(ofHtml(u"<"_s), u"<"_s);
}

TEST(ReleaseNotes, CharacterReferencesBecomeCharacters) {
    EXPECT_EQ(ofHtml(u"a &amp; b &lt;i&gt; &quot;c&quot; &#65;&#x42;&#X1F600; &mdash;"_s),
              u"a & b <i> \"c\" AB\U0001F600 \u2014"_s);
    EXPECT_EQ(ofHtml(u"a&nbsp;b"_s), u"a b"_s);
}

TEST(ReleaseNotes, EscapedTagsAreText) {
    EXPECT_EQ(ofHtml(u"&lt;script&gt;alert()&lt;/script&gt;"_s), u"<script>alert()</script>"_s);
    EXPECT_EQ(ofHtml(u"&amp;lt;"_s), u"&lt;"_s);
}

TEST(ReleaseNotes, InvalidReferencesAreText) {
    EXPECT_EQ(ofHtml(u"a & b &c; &; &#; &#x; &#0; &#xD800; &#x110000; &#99999999999;"_s),
              u"a & b &c; &; &#; &#x; &#0; &#xD800; &#x110000; &#99999999999;"_s);
}

TEST(ReleaseNotes, ControlAndBidiCharactersAreRemoved) {
    EXPECT_EQ(ofHtml(u"a\u0007b\u202Ec&#x202e;d&#8;e\u2066f"_s), u"abcdef"_s);
    EXPECT_EQ(plainLines(u"a\u0007b\u202Ec\r\nd\te\u2028f"_s, amplyLong), u"abc\nd e\nf"_s);
    EXPECT_EQ(plainLine(u"  a\u0007b\n\n c\u202E\td "_s, amplyLong), u"ab c d"_s);
}

TEST(ReleaseNotes, NoFileThatTheyNameIsOpened) {
    TemporaryTree tree;
    tree.write("style.css", "p { color: red }");
    tree.write("picture.png", "");
    const int watcher = inotify_init1(IN_NONBLOCK);
    ASSERT_GE(inotify_add_watch(watcher, tree.at("style.css").c_str(), IN_OPEN), 0);
    ASSERT_GE(inotify_add_watch(watcher, tree.at("picture.png").c_str(), IN_OPEN), 0);
    const QString style = u"file://"_s + tree.path("style.css");
    const QString picture = u"file://"_s + tree.path("picture.png");
    EXPECT_EQ(ofHtml(u"<style>@import url(%1);</style><link rel=stylesheet href='%1'>"
                     "<p style='background-image:url(%2)'><img src='%2'>text</p>"_s.arg(style, picture)),
              u"text"_s);
    inotify_event event = {};
    EXPECT_EQ(read(watcher, &event, sizeof event), -1) << "a file was opened";
    close(watcher);
}

TEST(ReleaseNotes, PlainLinesAreUnchanged) {
    EXPECT_EQ(plainLines(u"\n# New\n\n  * <b>one</b> &amp; two\n"_s, amplyLong),
              u"# New\n\n  * <b>one</b> &amp; two"_s);
}

TEST(ReleaseNotes, AreCutOffBetweenCharacters) {
    EXPECT_EQ(plainLine(u"abcdef"_s, 3), u"abc"_s);
    EXPECT_EQ(plainLine(u"ab\U0001F600"_s, 3), u"ab"_s);
    EXPECT_EQ(plainLines(u"ab\U0001F600c"_s, 4), u"ab\U0001F600"_s);
    EXPECT_EQ(plainTextOfHtml(u"<p>abc</p><p>def</p>"_s, 6), u"abc\n\nd"_s);
    EXPECT_EQ(plainTextOfHtml(QString(100'000, u'x'), 10), QString(10, u'x'));
}

// The time is linear: a search for a missing end must not start again at each character.
TEST(ReleaseNotes, EachCharacterIsSearchedAtMostThreeTimes) {
    for (const char* const part : {"<",           "<<",      "<a",       "<a ",      "</",
                                   "</a",         "<1",      "<!",       "<!--",     "<!-->",
                                   "<!---",       "<script", "<script>", "<script ", "<SCRIPT></SCRIPT",
                                   "<style><!--", "<b>",     "&",        "&a",       "&#",
                                   "&amp",        "&amp;",   "a",        " ",        "<br>",
                                   "<li>",        "</p>"}) {
        const QString text = QString::fromLatin1(part).repeated(2000);
        qsizetype searched = -1;
        static_cast<void>(plainTextOfHtml(text, text.size(), &searched));
        EXPECT_GE(searched, 0);
        EXPECT_LE(searched, 3 * text.size()) << part;
    }
}
