#pragma once

#include <QByteArray>
#include <optional>

namespace amberquill::desktop {

// What a gzip file holds. None: broken, or more than `limit` bytes.
[[nodiscard]] std::optional<QByteArray> gunzipped(const QByteArray& bytes, qsizetype limit);

} // namespace amberquill::desktop
