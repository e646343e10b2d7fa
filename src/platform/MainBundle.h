#pragma once

#include <QString>
#include <optional>

namespace amberquill {

// The launcher's own information property list, which is installed with the program's data.
class MainBundle {
public:
    MainBundle() = default;
    MainBundle(const MainBundle&) = delete;
    MainBundle& operator=(const MainBundle&) = delete;
    virtual ~MainBundle() = default;

    // The text under a key. None: no list, no such key, or a value that is no text.
    [[nodiscard]] virtual std::optional<QString> text(const QString& key) const = 0;
};

class NullMainBundle final : public MainBundle {
public:
    [[nodiscard]] std::optional<QString> text(const QString&) const override { return std::nullopt; }
};

// The program's version as users see it; "0" if the bundle has none.
[[nodiscard]] inline QString shownVersion(const MainBundle& bundle) {
    return bundle.text(QStringLiteral("CFBundleShortVersionString")).value_or(QStringLiteral("0"));
}

} // namespace amberquill
