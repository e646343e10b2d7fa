#include "views/RowChanges.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

QStringList letters(const QString& text) {
    return text.split(QString(), Qt::SkipEmptyParts);
}

std::vector<RowChange> changes(const QString& before, const QString& after) {
    return rowChanges(letters(before), letters(after));
}

RowChange removal(int first, int count) {
    return {RowChange::Kind::Remove, first, count, 0};
}

RowChange insertion(int first, int count, int from) {
    return {RowChange::Kind::Insert, first, count, from};
}

RowChange move(int from, int to) {
    return {RowChange::Kind::Move, from, 1, to};
}

QStringList applied(QStringList rows, const std::vector<RowChange>& all, const QStringList& after) {
    for (const RowChange& change : all) {
        switch (change.kind) {
        case RowChange::Kind::Remove:
            rows.remove(change.first, change.count);
            break;
        case RowChange::Kind::Insert:
            for (int i = 0; i < change.count; ++i) {
                rows.insert(change.first + i, after[change.to + i]);
            }
            break;
        case RowChange::Kind::Move: {
            const QString row = rows.takeAt(change.first);
            rows.insert(change.first < change.to ? change.to - 1 : change.to, row);
            break;
        }
        }
    }
    return rows;
}

} // namespace

TEST(RowChanges, TheSameListNeedsNone) {
    EXPECT_TRUE(changes(u"abc"_s, u"abc"_s).empty());
    EXPECT_TRUE(changes(u""_s, u""_s).empty());
}

TEST(RowChanges, NeighboursGoAndComeTogether) {
    EXPECT_EQ(changes(u"abcdef"_s, u"af"_s), (std::vector{removal(1, 4)}));
    EXPECT_EQ(changes(u"af"_s, u"abcdef"_s), (std::vector{insertion(1, 4, 1)}));
    EXPECT_EQ(changes(u"abcd"_s, u"bd"_s), (std::vector{removal(2, 1), removal(0, 1)}));
}

TEST(RowChanges, OnlyTheRowThatMovesIsMoved) {
    EXPECT_EQ(changes(u"abcd"_s, u"bcda"_s), (std::vector{move(0, 4)}));
    EXPECT_EQ(changes(u"abcd"_s, u"dabc"_s), (std::vector{move(3, 0)}));
    EXPECT_EQ(changes(u"abcde"_s, u"acdbe"_s), (std::vector{move(1, 4)}));
}

TEST(RowChanges, AnyListIsReachedFromAnyOtherWithEachRowTouchedOnce) {
    std::mt19937 random(3);
    const QStringList all = letters(u"abcdefghijklmnopqrstuvwxyz"_s);
    for (int round = 0; round < 3000; ++round) {
        const auto some = [&] {
            QStringList list = all;
            std::shuffle(list.begin(), list.end(), random);
            return list.first(static_cast<qsizetype>(random() % 27));
        };
        const QStringList before = some();
        const QStringList after = some();
        const auto steps = rowChanges(before, after);
        ASSERT_EQ(applied(before, steps, after), after) << round;
        int touched = 0;
        for (const RowChange& step : steps) {
            touched += step.count;
        }
        ASSERT_LE(touched, before.size() + after.size());
    }
}
