#include "model/MissingApplications.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

const QString system = u"/usr/share/applications"_s;
const QString own = u"/home/me/.local/share/applications"_s;

class MissingApplicationsTest : public testing::Test {
protected:
    [[nodiscard]] static QString systemPath(const QString& name) { return system + u"/"_s + name; }
    [[nodiscard]] static QString ownPath(const QString& name) { return own + u"/"_s + name; }

    // A layout of two applications of the system and two of the user, one of these in a folder.
    [[nodiscard]] static LaunchItems layout() {
        return {LaunchItem::app(systemPath(u"a"_s)), LaunchItem::app(ownPath(u"c"_s)),
                LaunchItem::folder({QUuid::createUuid(), u"F"_s, {systemPath(u"b"_s), ownPath(u"d"_s)}})};
    }

    [[nodiscard]] static ScanResult found(const QStringList& paths) {
        ScanResult scan;
        for (const QString& path : paths) {
            scan.apps.push_back({path, path});
        }
        scan.folders.roots = QStringList{system, own};
        return scan;
    }

    [[nodiscard]] static ScanResult all() {
        return found({systemPath(u"a"_s), systemPath(u"b"_s), ownPath(u"c"_s), ownPath(u"d"_s)});
    }
    [[nodiscard]] static ScanResult systemOnly() { return found({systemPath(u"a"_s), systemPath(u"b"_s)}); }

    QStringList stayingAt(double now, const ScanResult& scan) {
        return missing_.staying(layout(), scan, now);
    }

    const QStringList ownApps_ = {ownPath(u"c"_s), ownPath(u"d"_s)};
    MissingApplications missing_;
};

} // namespace

TEST_F(MissingApplicationsTest, NothingIsMissingWhenAllAreFound) {
    EXPECT_EQ(stayingAt(0, all()), QStringList());
    EXPECT_EQ(stayingAt(1, all()), QStringList());
    EXPECT_EQ(missing_.nextDecision(), std::nullopt);
}

TEST_F(MissingApplicationsTest, TheFirstScanRemovesMissingApplicationsAtOnce) {
    EXPECT_EQ(stayingAt(0, found({systemPath(u"a"_s)})), QStringList());
    EXPECT_EQ(missing_.nextDecision(), std::nullopt);
}

TEST_F(MissingApplicationsTest, LaterAMissingApplicationStaysForFiveSeconds) {
    std::ignore = stayingAt(0, all());
    const ScanResult without = found({systemPath(u"a"_s), ownPath(u"c"_s), ownPath(u"d"_s)});
    EXPECT_EQ(stayingAt(100, without), QStringList{systemPath(u"b"_s)});
    EXPECT_EQ(missing_.nextDecision(), 105);
    EXPECT_EQ(stayingAt(104.9, without), QStringList{systemPath(u"b"_s)});
    EXPECT_EQ(missing_.nextDecision(), 105);
    EXPECT_EQ(stayingAt(105, without), QStringList());
    EXPECT_EQ(missing_.nextDecision(), std::nullopt);
}

TEST_F(MissingApplicationsTest, AnApplicationThatWasBackStaysForFiveSecondsAgain) {
    std::ignore = stayingAt(0, all());
    const ScanResult without = found({systemPath(u"a"_s), ownPath(u"c"_s), ownPath(u"d"_s)});
    std::ignore = stayingAt(100, without);
    std::ignore = stayingAt(103, all());
    EXPECT_EQ(stayingAt(106, without), QStringList{systemPath(u"b"_s)});
    EXPECT_EQ(missing_.nextDecision(), 111);
}

TEST_F(MissingApplicationsTest, AMovedApplicationDoesNotStay) {
    std::ignore = stayingAt(0, all());
    ScanResult moved = found({systemPath(u"a"_s), ownPath(u"b"_s), ownPath(u"c"_s), ownPath(u"d"_s)});
    EXPECT_EQ(stayingAt(100, moved), QStringList());
}

TEST_F(MissingApplicationsTest, BelowAnUnreadableRootAllStay) {
    ScanResult unreadable = systemOnly();
    unreadable.folders.unreadable = QStringList{own};
    EXPECT_EQ(stayingAt(0, unreadable), ownApps_) << "at the start, too";
    EXPECT_EQ(stayingAt(100000, unreadable), ownApps_);
    EXPECT_EQ(missing_.nextDecision(), std::nullopt);
}

TEST_F(MissingApplicationsTest, BelowAnUnreadableFolderOfARootTheyStayToo) {
    LaunchItems items = {LaunchItem::app(ownPath(u"kde/e"_s)), LaunchItem::app(ownPath(u"kdeother"_s))};
    ScanResult scan = systemOnly();
    scan.folders.unreadable = QStringList{own + u"/kde"_s};
    EXPECT_EQ(missing_.staying(items, scan, 0), QStringList{ownPath(u"kde/e"_s)});
}

TEST_F(MissingApplicationsTest, BelowAMissingRootAllStayUntilItIsBack) {
    std::ignore = stayingAt(0, all());
    ScanResult gone = systemOnly();
    gone.folders.missing = QStringList{own};
    EXPECT_EQ(stayingAt(100, gone), ownApps_);
    EXPECT_EQ(stayingAt(100000, gone), ownApps_);
    EXPECT_EQ(missing_.nextDecision(), std::nullopt);
}

TEST_F(MissingApplicationsTest, BelowARootMissingAtTheStartNoneStays) {
    ScanResult gone = systemOnly();
    gone.folders.missing = QStringList{own};
    EXPECT_EQ(stayingAt(0, gone), QStringList());
}

TEST_F(MissingApplicationsTest, AnEmptyRootCountsInTheSecondScanTenSecondsLater) {
    std::ignore = stayingAt(0, all());
    EXPECT_EQ(stayingAt(100, systemOnly()), ownApps_);
    EXPECT_EQ(missing_.nextDecision(), 110);
    EXPECT_EQ(stayingAt(109.9, systemOnly()), ownApps_);
    EXPECT_EQ(stayingAt(110, systemOnly()), QStringList());
    EXPECT_EQ(missing_.nextDecision(), std::nullopt);
}

TEST_F(MissingApplicationsTest, ARootThatWasUnreadableMustBeEmptyTwiceAgain) {
    std::ignore = stayingAt(0, all());
    std::ignore = stayingAt(100, systemOnly());
    ScanResult unreadable = systemOnly();
    unreadable.folders.unreadable = QStringList{own};
    EXPECT_EQ(stayingAt(105, unreadable), ownApps_);
    EXPECT_EQ(stayingAt(111, systemOnly()), ownApps_);
    EXPECT_EQ(missing_.nextDecision(), 121);
}
