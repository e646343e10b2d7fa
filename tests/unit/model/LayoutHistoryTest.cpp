#include "model/LayoutHistory.h"

#include "data/LayoutCoding.h"
#include "data/LayoutFile.h"
#include "support/ModelFixture.h"

#include <gtest/gtest.h>
#include <optional>

using namespace amberquill;
using namespace Qt::StringLiterals;
using namespace std::chrono;

namespace {

using Reason = LayoutHistory::Reason;

const QString historyFolder = u"/data/Amberquill/layout-history"_s;
const sys_seconds noon = sys_days(2026y / 11 / 22) + 12h;

// Sets the user's time zone while this exists.
class InTimeZone {
public:
    explicit InTimeZone(const char* name)
        : before_(qEnvironmentVariableIsSet("TZ") ? std::optional(qgetenv("TZ")) : std::nullopt) {
        qputenv("TZ", name);
    }
    InTimeZone(const InTimeZone&) = delete;
    InTimeZone& operator=(const InTimeZone&) = delete;
    ~InTimeZone() {
        if (before_) {
            qputenv("TZ", *before_);
        } else {
            qunsetenv("TZ");
        }
    }

private:
    std::optional<QByteArray> before_;
};

QStringList copiesIn(const MemoryFileSystem& files) {
    QStringList names;
    for (const FolderEntry& entry : files.listFolder(historyFolder).value_or(std::vector<FolderEntry>())) {
        names.append(entry.name);
    }
    return names;
}

class LayoutHistoryTest : public testing::Test {
protected:
    LayoutHistoryTest() { queue_.setDate(noon); }

    void keep(Reason reason) {
        history_->keep({encodeItems({LaunchItem::app(u"/one.app"_s)}), 7, 5}, reason);
        queue_.runPosted();
    }
    void passDays(int count) { queue_.setDate(queue_.date() + count * days(1)); }
    void restart() { history_.emplace(queue_, files_, u"/data"_s, u"/home/me"_s); }

    const InTimeZone zone_{"UTC"};
    ManualQueue queue_;
    MemoryFileSystem files_;
    std::optional<LayoutHistory> history_{std::in_place, queue_, files_, u"/data"_s, u"/home/me"_s};
};

// A launcher with three applications, laid out and saved, at noon.
class ModelHistory : public ModelFixture {
protected:
    ModelHistory() { queue_.setDate(noon); }

    void SetUp() override {
        ModelFixture::SetUp();
        installed_ = apps(3);
        files_.addFile(layoutPath, encodeItems(saved_));
        makeModel();
        model_->applyScan(installed_);
        queue_.runPosted();
    }

    void moveAndSave() {
        model_->move(model_->items().front().id(), 2);
        model_->save();
        queue_.runPosted();
    }

    [[nodiscard]] QByteArray copy(const QString& name) const {
        return files_.file(historyFolder + u'/' + name).value_or(QByteArray());
    }
    [[nodiscard]] LaunchItems itemsOf(const QString& name) const {
        const auto file = decodeLayoutFile(copy(name));
        EXPECT_TRUE(file) << name.toStdString();
        return file ? file->items : LaunchItems();
    }

    const InTimeZone zone_{"UTC"};
    const LaunchItems saved_ = {LaunchItem::app(path(3)), LaunchItem::app(path(1)), LaunchItem::app(path(2))};
};

} // namespace

TEST_F(ModelHistory, BeforeTheFirstChangeOfADayTheLayoutIsCopied) {
    EXPECT_EQ(copiesIn(files_), QStringList()) << "nothing has changed yet";
    moveAndSave();
    const QString name = u"2026-11-22 12.00.00 before changes (1).json"_s;
    EXPECT_EQ(copiesIn(files_), QStringList{name});
    EXPECT_EQ(itemsOf(name), saved_);
    const LaunchItems before = model_->items();
    moveAndSave();
    EXPECT_EQ(copiesIn(files_), QStringList{name}) << "the second change of the day";
    const LaunchItems evening = model_->items();
    queue_.setDate(noon + days(1));
    moveAndSave();
    EXPECT_EQ(itemsOf(u"2026-11-23 12.00.00 before changes (2).json"_s), evening);
    EXPECT_NE(before, evening);
}

TEST_F(ModelHistory, SavingTheSameLayoutIsNoChange) {
    model_->save();
    queue_.runPosted();
    EXPECT_EQ(copiesIn(files_), QStringList());
}

TEST_F(ModelHistory, BeforeASortAResetAndAnImportTheLayoutIsCopiedAndCanBeImported) {
    model_->setGrid(8, 6);
    model_->sortByName();
    model_->resetLayout();
    ASSERT_FALSE(model_->importLayout(QByteArray(R"({"columns": 4, "exportedAt": "2026-11-15T03:24:07Z",
        "format": "amberquill-layout", "items": [], "rows": 3, "version": 1})")));
    queue_.runPosted();
    EXPECT_EQ(copiesIn(files_), (QStringList{u"2026-11-22 12.00.00 before sort (1).json"_s,
                                             u"2026-11-22 12.00.00 before reset (2).json"_s,
                                             u"2026-11-22 12.00.00 before import (3).json"_s}));
    EXPECT_NE(model_->items(), saved_);
    EXPECT_EQ(model_->columns(), 4);
    ASSERT_FALSE(model_->importLayout(copy(u"2026-11-22 12.00.00 before sort (1).json"_s)));
    EXPECT_EQ(model_->items(), saved_);
    EXPECT_EQ(model_->columns(), 8);
    EXPECT_EQ(model_->rows(), 6);
}

TEST_F(ModelHistory, ARefusedImportMakesNoCopy) {
    EXPECT_TRUE(model_->importLayout("{}"));
    queue_.runPosted();
    EXPECT_EQ(copiesIn(files_), QStringList());
}

TEST_F(ModelHistory, AFlushWritesWaitingCopies) {
    model_->sortByName();
    EXPECT_EQ(copiesIn(files_), QStringList()) << "the operation does not wait for it";
    model_->flushSaves();
    EXPECT_EQ(itemsOf(u"2026-11-22 12.00.00 before sort (1).json"_s), saved_);
}

TEST_F(ModelHistory, AFailedCopyDoesNotStopTheOperation) {
    files_.refuseWrites(true);
    testing::internal::CaptureStderr();
    model_->sortByName();
    queue_.runPosted();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(model_->items(),
              (LaunchItems{LaunchItem::app(path(1)), LaunchItem::app(path(2)), LaunchItem::app(path(3))}));
}

TEST_F(LayoutHistoryTest, ACopyIsAnExchangeFileWithPathsBelowHome) {
    history_->keep({encodeItems({LaunchItem::app(u"/home/me/x.app"_s),
                                 LaunchItem::folder({QUuid::createUuid(), u"F"_s, {u"/home/me/y"_s}})}),
                    8, 6},
                   Reason::Reset);
    queue_.runPosted();
    const auto file =
        decodeLayoutFile(*files_.file(historyFolder + u"/2026-11-22 12.00.00 before reset (1).json"_s));
    ASSERT_TRUE(file);
    EXPECT_EQ(file->format, LayoutFile::ownFormat);
    EXPECT_EQ(file->exportedAt, noon);
    EXPECT_EQ(file->columns, 8);
    EXPECT_EQ(file->rows, 6);
    EXPECT_EQ(file->items.front(), LaunchItem::app(u"~/x.app"_s));
    EXPECT_EQ(file->items.back().asFolder()->apps, QStringList{u"~/y"_s});
}

TEST_F(LayoutHistoryTest, TheDayIsThatOfTheUsersTimeZone) {
    const InTimeZone tokyo("Asia/Tokyo");
    queue_.setDate(sys_days(2026y / 11 / 22) + 14h + 59min);
    keep(Reason::Day);
    queue_.setDate(sys_days(2026y / 11 / 22) + 15h + 1min);
    keep(Reason::Day);
    EXPECT_EQ(copiesIn(files_), (QStringList{u"2026-11-22 23.59.00 before changes (1).json"_s,
                                             u"2026-11-23 00.01.00 before changes (2).json"_s}));
}

TEST_F(LayoutHistoryTest, AnotherStartOnTheSameDayMakesNoSecondCopy) {
    keep(Reason::Day);
    restart();
    keep(Reason::Day);
    EXPECT_EQ(copiesIn(files_).size(), 1);
    passDays(1);
    restart();
    keep(Reason::Day);
    EXPECT_EQ(copiesIn(files_).size(), 2);
}

TEST_F(LayoutHistoryTest, SeveralCopiesWithinASecondAreAllKept) {
    for (int i = 0; i < 5; ++i) {
        keep(Reason::Sort);
    }
    EXPECT_EQ(copiesIn(files_).size(), 5);
}

TEST_F(LayoutHistoryTest, TheNewestThirtyAreKeptAndOtherFilesStay) {
    const QStringList others = {u"my best layout.json"_s, u"2026-11-22 12.00.00.json"_s,
                                u"2026-11-22 12.00.00 before sort (1) copy.json"_s,
                                u"2026-11-22 12.00.00 before lunch (1).json"_s,
                                u"2026-11-22 12.00.00 before sort (1234567890).json"_s};
    for (const QString& name : others) {
        files_.addFile(historyFolder + u'/' + name, "of others");
    }
    for (int i = 0; i < 100; ++i) {
        files_.addFile(historyFolder + u"/%1"_s.arg(i), "of others");
    }
    for (int day = 1; day <= 35; ++day) {
        keep(Reason::Day);
        passDays(1);
    }
    const QStringList copies = copiesIn(files_);
    EXPECT_EQ(copies.size(), 100 + others.size() + 30);
    for (const QString& name : others) {
        EXPECT_TRUE(copies.contains(name)) << name.toStdString();
    }
    EXPECT_FALSE(copies.contains(u"2026-11-26 12.00.00 before changes (5).json"_s));
    EXPECT_TRUE(copies.contains(u"2026-11-27 12.00.00 before changes (6).json"_s));
    EXPECT_TRUE(copies.contains(u"2026-12-26 12.00.00 before changes (35).json"_s));
}

TEST_F(LayoutHistoryTest, AClockThatGoesBackDeletesNoNewerCopy) {
    for (int day = 1; day <= 30; ++day) {
        keep(Reason::Day);
        passDays(1);
    }
    queue_.setDate(sys_days(2020y / 1 / 1));
    restart();
    for (int day = 1; day <= 3; ++day) {
        keep(Reason::Day);
        passDays(1);
    }
    queue_.setDate(noon + days(40));
    keep(Reason::Day);
    const QStringList copies = copiesIn(files_);
    EXPECT_EQ(copies.size(), 30);
    EXPECT_TRUE(copies.contains(u"2020-01-01 00.00.00 before changes (31).json"_s));
    EXPECT_TRUE(copies.contains(u"2020-01-03 00.00.00 before changes (33).json"_s));
    EXPECT_FALSE(copies.contains(u"2026-11-25 12.00.00 before changes (4).json"_s));
    EXPECT_TRUE(copies.contains(u"2026-11-26 12.00.00 before changes (5).json"_s));
}

TEST_F(LayoutHistoryTest, AFailedCopyOfADayIsMadeBeforeTheNextChange) {
    files_.refuseWrites(true);
    keep(Reason::Day);
    files_.refuseWrites(false);
    keep(Reason::Day);
    EXPECT_EQ(copiesIn(files_).size(), 1);
}

TEST_F(LayoutHistoryTest, AnEmptyLayoutIsNotCopied) {
    history_->keep({encodeItems({}), 7, 5}, Reason::Sort);
    queue_.runPosted();
    EXPECT_EQ(copiesIn(files_), QStringList());
}
