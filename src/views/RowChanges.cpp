#include "views/RowChanges.h"

#include <QHash>
#include <QSet>
#include <algorithm>
#include <iterator>
#include <utility>

namespace amberquill {

namespace {

// Marks a longest ascending subsequence: these rows stay while the others move around them.
std::vector<bool> longestAscendingSubsequence(const std::vector<int>& positions) {
    const std::size_t count = positions.size();
    std::vector<std::size_t> previous(count, count);
    std::vector<std::size_t> ends; // for each length, the subsequence that ends lowest
    for (std::size_t i = 0; i < count; ++i) {
        const auto longer = std::lower_bound(
            ends.begin(), ends.end(), positions[i],
            [&positions](std::size_t end, int position) { return positions[end] < position; });
        previous[i] = longer == ends.begin() ? count : *std::prev(longer);
        if (longer == ends.end()) {
            ends.push_back(i);
        } else {
            *longer = i;
        }
    }
    std::size_t best = ends.empty() ? count : ends.back();
    std::vector<bool> stays(count, false);
    for (; best < count; best = previous[best]) {
        stays[best] = true;
    }
    return stays;
}

void removeAllBut(const QSet<QString>& kept, QStringList& rows, std::vector<RowChange>& changes) {
    for (qsizetype last = rows.size() - 1; last >= 0; --last) {
        if (kept.contains(rows[last])) {
            continue;
        }
        qsizetype first = last;
        while (first > 0 && !kept.contains(rows[first - 1])) {
            --first;
        }
        const qsizetype count = last - first + 1;
        changes.push_back({RowChange::Kind::Remove, static_cast<int>(first), static_cast<int>(count), 0});
        rows.remove(first, count);
        last = first;
    }
}

QSet<QString> stayingRows(const QStringList& rows, const QStringList& after) {
    QHash<QString, int> places;
    places.reserve(after.size());
    for (qsizetype i = 0; i < after.size(); ++i) {
        places.insert(after[i], static_cast<int>(i));
    }
    std::vector<int> positions;
    positions.reserve(static_cast<std::size_t>(rows.size()));
    for (const QString& row : rows) {
        positions.push_back(places.value(row));
    }
    const std::vector<bool> run = longestAscendingSubsequence(positions);
    QSet<QString> staying;
    for (std::size_t i = 0; i < run.size(); ++i) {
        if (run[i]) {
            staying.insert(rows[static_cast<qsizetype>(i)]);
        }
    }
    return staying;
}

} // namespace

std::vector<RowChange> rowChanges(const QStringList& before, const QStringList& after) {
    std::vector<RowChange> changes;
    if (before == after) {
        return changes;
    }
    QStringList rows = before;
    removeAllBut(QSet<QString>(after.begin(), after.end()), rows, changes);
    const QSet<QString> known(rows.begin(), rows.end());
    const QSet<QString> staying = stayingRows(rows, after);
    qsizetype next = 0; // where the next row of `after` belongs
    for (qsizetype i = 0; i < after.size(); ++i) {
        const QString& wanted = after[i];
        if (staying.contains(wanted)) {
            next = rows.indexOf(wanted, next) + 1;
            continue;
        }
        if (known.contains(wanted)) {
            const qsizetype from = rows.indexOf(wanted);
            changes.push_back({RowChange::Kind::Move, static_cast<int>(from), 1, static_cast<int>(next)});
            rows.removeAt(from);
            next -= from < next ? 1 : 0;
            rows.insert(next++, wanted);
            continue;
        }
        qsizetype end = i + 1;
        while (end < after.size() && !known.contains(after[end])) {
            ++end;
        }
        const qsizetype count = end - i;
        changes.push_back(
            {RowChange::Kind::Insert, static_cast<int>(next), static_cast<int>(count), static_cast<int>(i)});
        for (; i < end; ++i) {
            rows.insert(next++, after[i]);
        }
        --i;
    }
    return changes;
}

} // namespace amberquill
