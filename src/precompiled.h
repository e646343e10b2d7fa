// Headers that nearly every file includes, compiled once. Files still include what they use.
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
