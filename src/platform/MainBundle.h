#pragma once

#include <QString>
#include <optional>

namespace amberquill {

// What the launcher's own bundle says of it: the information property list that is installed beside the
// program's data.
class MainBundle {
public:
    MainBundle() = default;
    MainBundle(const MainBundle&) = delete;
    MainBundle& operator=(const MainBundle&) = delete;
    virtual ~MainBundle() = default;

    // The text that stands under a key, or none: no list, no such key, or another kind of value.
    [[nodiscard]] virtual std::optional<QString> text(const QString& key) const = 0;
};

class NullMainBundle final : public MainBundle {
public:
    [[nodiscard]] std::optional<QString> text(const QString&) const override { return std::nullopt; }
};

// The program's version as people are shown it everywhere; "0" where the bundle says none.
[[nodiscard]] inline QString shownVersion(const MainBundle& bundle) {
    return bundle.text(QStringLiteral("CFBundleShortVersionString")).value_or(QStringLiteral("0"));
}

} // namespace amberquill
