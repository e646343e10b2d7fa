#pragma once

#include <QStringList>
#include <vector>

namespace amberquill {

// One change of a list's rows.
struct RowChange {
    enum class Kind { Remove, Insert, Move };

    Kind kind;
    int first; // the row it begins at; of a move, the row that moves
    int count; // rows removed or inserted; 1 for a move
    int to;    // of a move, the row before which it goes, counted before the move; of an insertion, where the
               // new rows begin in the new list

    bool operator==(const RowChange&) const = default;
};

// The changes, one after another, that turn a list of identities into another one; neither holds one twice.
// Rows that stand in both stay where the others can move around them: each row is moved, inserted or removed
// at most once.
std::vector<RowChange> rowChanges(const QStringList& before, const QStringList& after);

} // namespace amberquill
