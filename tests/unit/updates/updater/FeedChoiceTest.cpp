#include "updates/updater/Feed.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

FeedItem itemOf(const QString& version) {
    FeedItem item;
    item.version = version;
    return item;
}

// The version that is chosen over 1.0 on a system 6.1; empty: none.
QString chosen(const std::vector<FeedItem>& items, const std::optional<QString>& skipped = {},
               const QSet<QString>& channels = {}) {
    const auto update = chooseUpdate(items, u"1.0"_s, u"6.1"_s, channels, skipped);
    return update ? update->version : QString();
}

} // namespace

TEST(FeedChoice, IsTheNewestWhateverTheOrder) {
    EXPECT_EQ(chosen({itemOf(u"1.2"_s), itemOf(u"1.10"_s), itemOf(u"1.9"_s)}), u"1.10"_s);
}

TEST(FeedChoice, IsNoneThatIsNotNewerThanWhatIsInstalled) {
    EXPECT_EQ(chosen({}), QString());
    EXPECT_EQ(chosen({itemOf(u"0.9"_s), itemOf(u"1.0"_s), itemOf(u"1.0.0"_s), itemOf(u"1.0rc2"_s)}),
              QString());
}

TEST(FeedChoice, IsForThisSystem) {
    FeedItem foreign = itemOf(u"3"_s);
    foreign.operatingSystem = u"windows"_s;
    FeedItem ours = itemOf(u"2"_s);
    ours.operatingSystem = u"Linux"_s;
    EXPECT_EQ(chosen({foreign, ours}), u"2"_s);
    EXPECT_EQ(chosen({foreign}), QString());
    EXPECT_EQ(chosen({foreign, itemOf(u"1.5"_s)}), u"1.5"_s);
}

TEST(FeedChoice, NeedsNoNewerSystemThanThis) {
    FeedItem future = itemOf(u"3"_s);
    future.minimumSystemVersion = u"6.2"_s;
    FeedItem present = itemOf(u"2"_s);
    present.minimumSystemVersion = u"6.1.0"_s;
    EXPECT_EQ(chosen({future, present}), u"2"_s);
    EXPECT_EQ(chosen({future}), QString());
}

TEST(FeedChoice, IsOfNoChannelThatNobodyAskedFor) {
    FeedItem beta = itemOf(u"3b"_s);
    beta.channel = u"beta"_s;
    EXPECT_EQ(chosen({beta, itemOf(u"2"_s)}), u"2"_s);
    EXPECT_EQ(chosen({beta, itemOf(u"2"_s)}, {}, {u"beta"_s}), u"3b"_s);
}

TEST(FeedChoice, IsNothingThatWasSkippedAndNothingBeforeIt) {
    EXPECT_EQ(chosen({itemOf(u"2"_s), itemOf(u"1.5"_s)}, u"2"_s), QString());
    EXPECT_EQ(chosen({itemOf(u"2.1"_s), itemOf(u"2"_s)}, u"2"_s), u"2.1"_s);
    EXPECT_EQ(chosen({itemOf(u"2"_s)}, u"1.5"_s), u"2"_s);
}

TEST(FeedChoice, AsksTheSystemForItsVersion) {
    EXPECT_TRUE(QRegularExpression(u"^[0-9]+\\.[0-9.]*$"_s).match(systemVersion()).hasMatch())
        << systemVersion().toStdString();
}
