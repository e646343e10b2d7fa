#pragma once

#include <QStringList>
#include <vector>

namespace amberquill {

// One change of a list's rows.
struct RowChange {
    enum class Kind { Remove, Insert, Move };

    Kind kind;
    int first; // the first row removed or inserted; the row that moves
    int count; // rows removed or inserted; 1 for a move
    int to; // for a move, the row to insert before, counted before the move; for an insertion, where the new
            // rows begin in the new list

    bool operator==(const RowChange&) const = default;
};

// The changes, in order, that turn one list of identities into another; neither list has duplicates. As few
// rows as possible move, and each row is moved, inserted or removed at most once.
std::vector<RowChange> rowChanges(const QStringList& before, const QStringList& after);

} // namespace amberquill
