#pragma once

class QKeyEvent;

namespace amberquill {

// Qt's code of the key, for finding combinations of keys. A letter of a script that has none of theirs stands
// for the Latin letter in its place on an American keyboard, so that they work where no Latin layout is set.
[[nodiscard]] int combinationKey(const QKeyEvent& event);

} // namespace amberquill
