// Headers that nearly every file pulls in. A file includes what it uses all the same: this is only for speed.
#pragma once

#ifdef __cplusplus
#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QString>
#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>
#endif
