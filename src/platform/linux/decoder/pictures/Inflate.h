#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <optional>

namespace amberquill::desktop {

enum class Compression { Gzip, Zlib };

// Uncompresses the whole of `bytes`. None: broken, or more than `limit` bytes come of it.
[[nodiscard]] std::optional<QByteArray> inflated(QByteArrayView bytes, Compression compression,
                                                 qsizetype limit);

} // namespace amberquill::desktop
