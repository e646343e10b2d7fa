#pragma once

#include <QByteArrayView>

namespace amberquill::desktop {

inline constexpr qsizetype maximumPropertyListBytes = qsizetype{1024} * 1024;

// Whether a property list, binary or XML, is safe for the library that parses it: not too large, not nested
// too deep, and not too large when unfolded (in a binary list many references may share one value). Does not
// check whether it is otherwise well formed.
[[nodiscard]] bool isSafePropertyList(QByteArrayView bytes);

// Whether the bytes are a binary property list, version 0.
[[nodiscard]] bool isBinaryPropertyList(QByteArrayView bytes);

} // namespace amberquill::desktop
