#include "data/DataLog.h"

#include "data/AppScanner.h"
#include "data/CacheFiles.h"
#include "data/LayoutCoding.h"
#include "data/LayoutFile.h"
#include "data/LayoutReconciler.h"
#include "data/NameOrder.h"
#include "data/PlaceMemory.h"
#include "support/LogRecorder.h"
#include "support/MemoryFileSystem.h"
#include "support/PlatformFakes.h"

#include <functional>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

std::string loggedBy(const std::function<void()>& work) {
    return debugLog("amberquill.data", work);
}

bool has(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

} // namespace

TEST(DataLog, NothingIsPrintedByDefault) {
    testing::internal::CaptureStderr();
    std::ignore = decodeItems("[7]");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(DataLog, AnUndecodableLayoutIsLoggedWithTheReasonAndItsPlace) {
    const std::string log = loggedBy([] { std::ignore = decodeItems(R"([{"app":{"_0":7}}])"); });
    EXPECT_TRUE(has(log, "Expected a string.")) << log;
    EXPECT_TRUE(has(log, "Index 0/app/_0")) << log;
}

TEST(DataLog, ARefusedExchangeFileIsLoggedWithTheWrongItem) {
    const std::string log =
        loggedBy([] { EXPECT_EQ(decodeLayoutFile(R"({"items":[{"app":{"_0":7}}]})"), std::nullopt); });
    EXPECT_TRUE(has(log, "Index 0/app/_0")) << log;
    EXPECT_TRUE(has(log, "version false")) << log;
}

TEST(DataLog, ASkippedBundleIsLoggedWithTheReason) {
    MemoryFileSystem files;
    files.addFolder(u"/Applications/A.app"_s);
    files.addLink(u"/Applications/B.app"_s, u"/Applications/A.app"_s);
    files.addFolder(u"/Applications/Own.app"_s);
    files.addFolder(u"/Applications/locked"_s);
    files.makeUnreadable(u"/Applications/locked"_s);
    const std::string log = loggedBy([&] {
        std::ignore = AppScanner::scan(
            {files, NoBundles(), NoRegisteredApplications(), u"/home/me"_s, u"/Applications/Own.app"_s});
    });
    EXPECT_TRUE(has(log, "/Applications/B.app listed already")) << log;
    EXPECT_TRUE(has(log, "/Applications/Own.app the launcher itself")) << log;
    EXPECT_TRUE(has(log, "/Applications/locked")) << log;
    EXPECT_FALSE(has(log, "/System")) << "missing folders are normal: " << log;
}

TEST(DataLog, ADroppedItemIsLogged) {
    const std::string log = loggedBy([] {
        std::ignore = LayoutReconciler::reconcile({LaunchItem::app(u"/gone.app"_s)}, {}, std::nullopt,
                                                  NameOrder(QLocale::c()));
    });
    EXPECT_TRUE(has(log, "/gone.app")) << log;
}

TEST(DataLog, ForgottenAndInvalidPlacesAreLogged) {
    const PlaceMemory::Date now{std::chrono::days(1000)};
    const std::string old = loggedBy([&] {
        const PlaceMemory memory({{.id = u"a:/x"_s, .since = now - std::chrono::days(100)}}, now);
        EXPECT_TRUE(memory.remembered().empty());
    });
    EXPECT_TRUE(has(old, "too old: 1")) << old;
    const std::string invalid = loggedBy([] { std::ignore = decodePlaces(R"({"places":[7,8]})"); });
    EXPECT_TRUE(has(invalid, "skipped: 2")) << invalid;
}

TEST(DataLog, RefusedCacheFilesAreLogged) {
    EXPECT_TRUE(has(loggedBy([] { std::ignore = decodeIcons("other"); }), "icon file refused"));
    EXPECT_TRUE(has(loggedBy([] { std::ignore = decodeNames("other", u"de"_s); }), "name file refused"));
}
