#include "updates/updater/Feed.h"

#include "support/SigningKey.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

QByteArray feedOf(const QByteArray& items) {
    return R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle"
     xmlns:dc="http://purl.org/dc/elements/1.1/">
<channel><title>Updates</title><link>https://example.org/</link><description>All of them</description>)" +
           items + "</channel></rss>";
}

// The items of a feed.
std::vector<FeedItem> items(const QByteArray& text) {
    const auto read = readFeed(feedOf(text));
    EXPECT_TRUE(read);
    return read.value_or(std::vector<FeedItem>());
}

FeedItem onlyItem(const QByteArray& text) {
    const auto read = items("<item>" + text + "</item>");
    EXPECT_EQ(read.size(), 1U);
    return read.empty() ? FeedItem() : read.front();
}

} // namespace

TEST(Feed, AnItemIsReadWithAllFields) {
    const SigningKey key;
    const QByteArray signature = key.signatureText("the program").toLatin1();
    const auto item = onlyItem(R"(
        <title> Version
            1.2 </title>
        <link>https://example.org/1.2</link>
        <sparkle:version>120</sparkle:version>
        <sparkle:shortVersionString>1.2</sparkle:shortVersionString>
        <sparkle:minimumSystemVersion>5.10</sparkle:minimumSystemVersion>
        <sparkle:channel>beta</sparkle:channel>
        <sparkle:releaseNotesLink>https://example.org/1.2/notes</sparkle:releaseNotesLink>
        <description><![CDATA[<h2>New</h2><ul><li>a &amp; b</li></ul>]]></description>
        <pubDate>Sat, 21 Nov 2026 07:00:00 +0000</pubDate>
        <enclosure url="https://example.org/a.AppImage?x=1&amp;y=2" length="11" type="application/octet-stream"
                   sparkle:os="linux" sparkle:edSignature=")" +
                               signature + R"("/>)");
    EXPECT_EQ(item.title, u"Version 1.2"_s);
    EXPECT_EQ(item.version, u"120"_s);
    EXPECT_EQ(item.shortVersion, u"1.2"_s);
    EXPECT_EQ(item.shownVersion(), u"1.2"_s);
    EXPECT_EQ(item.minimumSystemVersion, u"5.10"_s);
    EXPECT_EQ(item.operatingSystem, u"linux"_s);
    EXPECT_EQ(item.channel, u"beta"_s);
    EXPECT_EQ(item.releaseNotes, u"New\n\n\u2022 a & b"_s);
    EXPECT_EQ(item.releasePage, QUrl(u"https://example.org/1.2"_s));
    EXPECT_EQ(item.releaseNotesPage, QUrl(u"https://example.org/1.2/notes"_s));
    ASSERT_TRUE(item.enclosure);
    EXPECT_EQ(item.enclosure->address, QUrl(u"https://example.org/a.AppImage?x=1&y=2"_s));
    EXPECT_EQ(item.enclosure->length, 11);
    EXPECT_EQ(item.enclosure->signature, key.sign("the program"));
}

TEST(Feed, TheVersionMayBeAnAttributeOfTheEnclosure) {
    const auto item = onlyItem(R"(<enclosure url="https://example.org/a" length="1" sparkle:version="1.2b3"
                                   sparkle:shortVersionString="1.2 beta 3"/>)");
    EXPECT_EQ(item.version, u"1.2b3"_s);
    EXPECT_EQ(item.shortVersion, u"1.2 beta 3"_s);
    EXPECT_EQ(item.enclosure->signature, std::nullopt);
}

TEST(Feed, AVersionElementOverridesTheAttribute) {
    const auto item = onlyItem(R"(<enclosure url="https://example.org/a" length="1" sparkle:version="1"/>
                                  <sparkle:version>2</sparkle:version>)");
    EXPECT_EQ(item.version, u"2"_s);
    EXPECT_EQ(item.shownVersion(), u"2"_s);
}

TEST(Feed, TheFirstOfTwoElementsCounts) {
    const auto item = onlyItem(R"(<sparkle:version>1</sparkle:version><sparkle:version>2</sparkle:version>
        <title>a</title><title>b</title><description>c</description><description>d</description>
        <link>https://example.org/e</link><link>https://example.org/f</link>
        <enclosure url="https://example.org/g" length="1"/><enclosure url="https://example.org/h" length="2"/>)");
    EXPECT_EQ(item.version, u"1"_s);
    EXPECT_EQ(item.title, u"a"_s);
    EXPECT_EQ(item.releaseNotes, u"c"_s);
    EXPECT_EQ(item.releasePage, QUrl(u"https://example.org/e"_s));
    EXPECT_EQ(item.enclosure->address, QUrl(u"https://example.org/g"_s));
}

TEST(Feed, AnItemWithoutAVersionIsSkipped) {
    EXPECT_TRUE(items("<item><title>News</title></item>").empty());
    EXPECT_TRUE(items("<item><sparkle:version> </sparkle:version></item>").empty());
    EXPECT_EQ(items("<item/><item><sparkle:version>1</sparkle:version></item>").size(), 1U);
}

TEST(Feed, NestedAndForeignElementsAreIgnored) {
    const auto item = onlyItem(R"(<sparkle:version>1</sparkle:version>
        <sparkle:deltas><enclosure url="https://example.org/delta" length="1" sparkle:version="9"/></sparkle:deltas>
        <dc:title>other</dc:title><version>9</version><media><title>other</title></media>)");
    EXPECT_EQ(item.version, u"1"_s);
    EXPECT_EQ(item.title, QString());
    EXPECT_EQ(item.enclosure, std::nullopt);
    const auto outside = readFeed(R"(<rss xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
        <item><sparkle:version>1</sparkle:version></item><other><item><sparkle:version>2</sparkle:version></item></other>
        <channel><group><item><sparkle:version>3</sparkle:version></item></group></channel></rss>)");
    ASSERT_TRUE(outside);
    EXPECT_TRUE(outside->empty());
}

TEST(Feed, ElementsAreMatchedByNamespaceNotByPrefix) {
    const auto read = readFeed(R"(<rss xmlns:s="http://www.andymatuschak.org/xml-namespaces/sparkle"
        xmlns:sparkle="https://example.org/another"><channel><item><s:version>1</s:version>
        <sparkle:shortVersionString>other</sparkle:shortVersionString></item></channel></rss>)");
    ASSERT_TRUE(read && read->size() == 1);
    EXPECT_EQ(read->front().version, u"1"_s);
    EXPECT_EQ(read->front().shortVersion, QString());
}

TEST(Feed, NotesWithNestedElementsAreTheirText) {
    const auto item =
        onlyItem("<sparkle:version>1</sparkle:version><description>a<b>b<i>c</i></b>d</description>");
    EXPECT_EQ(item.releaseNotes, u"abcd"_s);
}

TEST(Feed, PlainNotesAreUnchanged) {
    for (const char* const format : {"plain-text", "markdown"}) {
        const auto item =
            onlyItem(QByteArray("<sparkle:version>1</sparkle:version><description sparkle:format=\"") +
                     format + "\">a &lt;b&gt; &amp;amp;\n\n* c</description>");
        EXPECT_EQ(item.releaseNotes, u"a <b> &amp;\n\n* c"_s);
    }
}

TEST(Feed, TextsHaveNoControlCharactersAndALimit) {
    const auto item =
        onlyItem("<sparkle:version>1</sparkle:version><title>a\xE2\x80\xAE" + QByteArray(9000, 'b') +
                 "</title><description>" + QByteArray(900'000, 'c') + "</description>");
    EXPECT_EQ(item.title, u'a' + QString(maximumFeedLine - 1, u'b'));
    EXPECT_EQ(item.releaseNotes, QString(maximumReleaseNotes, u'c'));
}

TEST(Feed, AnItemWithATooLongVersionChannelOrSystemIsSkipped) {
    const QByteArray endless(maximumFeedLine + 1, '1');
    const QByteArray version = "<sparkle:version>1</sparkle:version>";
    EXPECT_TRUE(items("<item><sparkle:version>" + endless + "</sparkle:version></item>").empty());
    EXPECT_TRUE(
        items("<item>" + version + "<sparkle:channel>" + endless + "</sparkle:channel></item>").empty());
    EXPECT_TRUE(items("<item>" + version + "<enclosure sparkle:os=\"" + endless + "\"/></item>").empty());
    EXPECT_EQ(items("<item><sparkle:version>" + endless.chopped(1) + "</sparkle:version></item>").size(), 1U);
}

TEST(Feed, ForbiddenPagesAreIgnored) {
    for (const char* const address : {"javascript:alert(1)", "file:///etc/passwd", "http://example.org/",
                                      "/relative", "https://a b/", ""}) {
        const auto item =
            onlyItem(QByteArray("<sparkle:version>1</sparkle:version><link>") + address +
                     "</link><sparkle:releaseNotesLink>" + address + "</sparkle:releaseNotesLink>");
        EXPECT_FALSE(item.releasePage.isValid()) << address;
        EXPECT_FALSE(item.releaseNotesPage.isValid()) << address;
    }
}

TEST(Feed, AnInvalidLengthIsZero) {
    for (const char* const length : {"", "-1", "1.5", "many", "99999999999999999999999", "0x10", "0"}) {
        const auto item = onlyItem(QByteArray("<sparkle:version>1</sparkle:version><enclosure "
                                              "url=\"https://example.org/a\" length=\"") +
                                   length + "\"/>");
        ASSERT_TRUE(item.enclosure);
        EXPECT_EQ(item.enclosure->length, 0) << length;
    }
}

TEST(Feed, AnEmptyChannelHasNoItems) {
    EXPECT_TRUE(items({}).empty());
}

TEST(Feed, MalformedXmlIsRefused) {
    const QByteArray good = feedOf("<item><sparkle:version>1</sparkle:version></item>");
    ASSERT_TRUE(readFeed(good));
    EXPECT_TRUE(readFeed("\xEF\xBB\xBF" + good));
    for (const QByteArray& bad :
         {QByteArray(), QByteArray("hello"), QByteArray("<rss>"), good.chopped(1), good + "<rss/>",
          QByteArray(good).replace("</item>", "</items>"), QByteArray(good).replace("1</", "&unknown;</"),
          QByteArray(good).replace("1</", "\xFF</"), QByteArray(good).replace("xmlns:sparkle", "xmlns:other"),
          QByteArray("<html><body/></html>"), QByteArray("<feed xmlns='http://www.w3.org/2005/Atom'/>")}) {
        EXPECT_FALSE(readFeed(bad)) << bad.toStdString();
    }
}

TEST(Feed, EntityDeclarationsAreRefused) {
    QByteArray bomb = "<!DOCTYPE rss [<!ENTITY a0 \"ha\">";
    for (int step = 1; step < 30; ++step) {
        const QByteArray before = "&a" + QByteArray::number(step - 1) + ';';
        bomb += "<!ENTITY a" + QByteArray::number(step) + " \"" + before + before + "\">";
    }
    bomb += "]><rss><channel><title>&a29;</title></channel></rss>";
    EXPECT_FALSE(readFeed(bomb));
    EXPECT_FALSE(readFeed("<!DOCTYPE rss [<!ENTITY a \"b\">]><rss><channel/></rss>"));
    EXPECT_FALSE(
        readFeed("<!DOCTYPE rss [<!ENTITY % a SYSTEM \"file:///etc/passwd\">%a;]><rss><channel/></rss>"));
    EXPECT_FALSE(readFeed(
        "<!DOCTYPE rss [<!ENTITY a SYSTEM \"file:///etc/passwd\">]><rss><channel>&a;</channel></rss>"));
    EXPECT_TRUE(readFeed("<!DOCTYPE rss SYSTEM \"https://example.org/rss.dtd\"><rss><channel/></rss>"));
}

TEST(Feed, TooManyItemsBytesOrLevelsAreRefused) {
    const QByteArray item = "<item><sparkle:version>1</sparkle:version></item>";
    const auto times = [](const QByteArray& text, std::size_t count) {
        return text.repeated(static_cast<qsizetype>(count));
    };
    EXPECT_EQ(items(times(item, maximumFeedItems)).size(), maximumFeedItems);
    EXPECT_FALSE(readFeed(feedOf(times(item, maximumFeedItems + 1))));
    const QByteArray good = feedOf(item);
    const auto padding = static_cast<qsizetype>(maximumFeedBytes) - good.size();
    EXPECT_TRUE(readFeed(good + QByteArray(padding, ' ')));
    EXPECT_FALSE(readFeed(good + QByteArray(padding + 1, ' ')));
    EXPECT_TRUE(readFeed(feedOf(times("<a>", maximumFeedDepth - 2) + times("</a>", maximumFeedDepth - 2))));
    EXPECT_FALSE(readFeed(feedOf(times("<a>", maximumFeedDepth - 1) + times("</a>", maximumFeedDepth - 1))));
}

namespace {

// A well-formed feed without items, whose root element has this many attributes.
QByteArray feedWithAttributes(qsizetype count) {
    QByteArray feed = "<rss ";
    for (qsizetype number = 0; number < count; ++number) {
        feed += 'a' + QByteArray::number(number) + "='' ";
    }
    return feed + "><channel/></rss>";
}

// A well-formed feed without items, with this many namespace declarations in different elements.
QByteArray feedWithNamespaces(qsizetype count) {
    QByteArray feed = "<rss><channel>";
    for (qsizetype number = 0; number < count; ++number) {
        feed += "<a xmlns:b" + QByteArray::number(number) + "='c'/>";
    }
    return feed + "</channel></rss>";
}

// How much of the text was parsed as XML before it was refused.
qint64 charactersReadUntilRefused(const QByteArray& text) {
    qint64 characters = -1;
    EXPECT_FALSE(readFeed(text, &characters)) << text.first(100).toStdString();
    return characters;
}

} // namespace

// The XML reader takes minutes for large numbers of either.
TEST(Feed, TooManyAttributesOrNamespacesAreRefusedBeforeParsing) {
    EXPECT_TRUE(readFeed(feedWithAttributes(maximumFeedAttributes)));
    EXPECT_EQ(charactersReadUntilRefused(feedWithAttributes(maximumFeedAttributes + 1)), 0);
    EXPECT_EQ(charactersReadUntilRefused(feedWithAttributes(400'000)), 0);
    EXPECT_TRUE(readFeed(feedWithNamespaces(maximumFeedNamespaces)));
    EXPECT_EQ(charactersReadUntilRefused(feedWithNamespaces(maximumFeedNamespaces + 1)), 0);
    EXPECT_EQ(charactersReadUntilRefused(feedWithNamespaces(150'000)), 0);
    EXPECT_EQ(charactersReadUntilRefused(QByteArray(maximumFeedBytes + 1, ' ')), 0);
}

TEST(Feed, ParsingStopsAtTheFirstError) {
    qint64 all = 0;
    const QByteArray good = feedOf("<item><sparkle:version>1</sparkle:version></item>");
    EXPECT_TRUE(readFeed(good, &all));
    EXPECT_EQ(all, good.size());
    constexpr qint64 few = 1000;
    EXPECT_LT(charactersReadUntilRefused("<rss>" + QByteArray("<a>").repeated(1'000'000)), few);
    EXPECT_LT(charactersReadUntilRefused(QByteArray("<").repeated(maximumFeedBytes)), few);
    EXPECT_LT(charactersReadUntilRefused("<!DOCTYPE rss [<!ENTITY a \"b\">]><rss><channel>" +
                                         QByteArray("&a;").repeated(1'000'000) + "</channel></rss>"),
              few);
    const QByteArray comment = "<rss><!--" + QByteArray("-").repeated(maximumFeedBytes - 20);
    EXPECT_LE(charactersReadUntilRefused(comment), comment.size());
}

TEST(Feed, OnlyTheBeginningOfVeryLongNotesIsConverted) {
    const auto notes = [](qsizetype tags) {
        return onlyItem("<sparkle:version>1</sparkle:version><description><![CDATA[a" +
                        QByteArray("<b>").repeated(tags) + "z]]></description>")
            .releaseNotes;
    };
    EXPECT_EQ(notes(maximumReleaseNotes), u"az"_s);
    EXPECT_EQ(notes(2 * maximumReleaseNotes), u"a"_s)
        << "more than four characters for each that may be shown";
}

namespace {

FeedItem itemOf(const QString& version) {
    FeedItem item;
    item.version = version;
    return item;
}

// An item all of whose links lead to the address.
FeedItem linkedItem(const QString& address) {
    FeedItem item = itemOf(u"2"_s);
    item.releasePage = item.releaseNotesPage = QUrl(address);
    item.enclosure = FeedEnclosure{.address = QUrl(address), .length = 1, .signature = {}};
    return item;
}

// The version that is chosen over 1.0 on a system 6.1; empty: none.
QString chosen(const std::vector<FeedItem>& items, const std::optional<QString>& skipped = {},
               const QSet<QString>& channels = {}) {
    const auto update = chooseUpdate(items, u"1.0"_s, u"6.1"_s, channels, skipped);
    return update ? update->version : QString();
}

} // namespace

TEST(FeedChoice, IsTheNewestInAnyOrder) {
    EXPECT_EQ(chosen({itemOf(u"1.2"_s), itemOf(u"1.10"_s), itemOf(u"1.9"_s)}), u"1.10"_s);
}

TEST(FeedChoice, IsNewerThanTheInstalledVersion) {
    EXPECT_EQ(chosen({}), QString());
    EXPECT_EQ(chosen({itemOf(u"0.9"_s), itemOf(u"1.0"_s), itemOf(u"1.0.0"_s), itemOf(u"1.0rc2"_s)}),
              QString());
}

TEST(FeedChoice, IsForThisOperatingSystem) {
    FeedItem foreign = itemOf(u"3"_s);
    foreign.operatingSystem = u"windows"_s;
    FeedItem ours = itemOf(u"2"_s);
    ours.operatingSystem = u"Linux"_s;
    EXPECT_EQ(chosen({foreign, ours}), u"2"_s);
    EXPECT_EQ(chosen({foreign}), QString());
    EXPECT_EQ(chosen({foreign, itemOf(u"1.5"_s)}), u"1.5"_s);
}

TEST(FeedChoice, DoesNotNeedANewerSystem) {
    FeedItem future = itemOf(u"3"_s);
    future.minimumSystemVersion = u"6.2"_s;
    FeedItem present = itemOf(u"2"_s);
    present.minimumSystemVersion = u"6.1.0"_s;
    EXPECT_EQ(chosen({future, present}), u"2"_s);
    EXPECT_EQ(chosen({future}), QString());
}

TEST(FeedChoice, IsOfAChosenChannelOrNone) {
    FeedItem beta = itemOf(u"3b"_s);
    beta.channel = u"beta"_s;
    EXPECT_EQ(chosen({beta, itemOf(u"2"_s)}), u"2"_s);
    EXPECT_EQ(chosen({beta, itemOf(u"2"_s)}, {}, {u"beta"_s}), u"3b"_s);
}

TEST(FeedChoice, IsNewerThanTheSkippedVersion) {
    EXPECT_EQ(chosen({itemOf(u"2"_s), itemOf(u"1.5"_s)}, u"2"_s), QString());
    EXPECT_EQ(chosen({itemOf(u"2.1"_s), itemOf(u"2"_s)}, u"2"_s), u"2.1"_s);
    EXPECT_EQ(chosen({itemOf(u"2"_s)}, u"1.5"_s), u"2"_s);
}

TEST(FeedChoice, TheSystemVersionIsTheKernels) {
    EXPECT_TRUE(QRegularExpression(u"^[0-9]+\\.[0-9.]*$"_s).match(systemVersion()).hasMatch())
        << systemVersion().toStdString();
}

TEST(FeedLinks, ARemoteFeedMayNotLinkToThisMachine) {
    const QUrl feed(u"https://example.org/feed"_s);
    for (const QString& target : {u"http://127.0.0.1/a"_s, u"https://127.0.0.1/a"_s, u"https://localhost/a"_s,
                                  u"http://example.org/a"_s}) {
        const FeedItem item = withAllowedLinks(linkedItem(target), feed);
        EXPECT_FALSE(item.enclosure) << target.toStdString();
        EXPECT_FALSE(item.releasePage.isValid()) << target.toStdString();
        EXPECT_FALSE(item.releaseNotesPage.isValid()) << target.toStdString();
    }
    const FeedItem elsewhere = linkedItem(u"https://example.net/a"_s);
    EXPECT_EQ(withAllowedLinks(elsewhere, feed), elsewhere);
}

TEST(FeedLinks, AFeedOfThisMachineMayLinkToItAndToOthers) {
    const QUrl feed(u"http://127.0.0.1/feed"_s);
    for (const QString& target :
         {u"http://127.0.0.1/a"_s, u"http://localhost/a"_s, u"https://example.org/a"_s}) {
        EXPECT_EQ(withAllowedLinks(linkedItem(target), feed), linkedItem(target)) << target.toStdString();
    }
    EXPECT_FALSE(withAllowedLinks(linkedItem(u"http://example.org/a"_s), feed).enclosure);
}
