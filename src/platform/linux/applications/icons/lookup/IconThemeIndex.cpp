#include "platform/linux/applications/icons/lookup/IconThemeIndex.h"

#include <algorithm>
#include <charconv>
#include <unordered_map>
#include <unordered_set>

namespace amberquill::desktop {

namespace {

constexpr std::size_t maximumContent = std::size_t{1024} * 1024;
constexpr std::size_t maximumDirectories = 4096;
constexpr std::size_t maximumInherits = 64;
constexpr std::size_t maximumThemeName = 255;
constexpr int maximumSize = 4096;
constexpr int maximumScale = 16;

constexpr bool isSpace(char character) {
    return character == ' ' || character == '\t' || character == '\r';
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// Takes the text up to `end`, and `end`, off the front of `rest`. Returns the text.
std::string_view takeUntil(std::string_view& rest, char end) {
    const auto found = rest.find(end);
    const auto taken = rest.substr(0, found);
    rest.remove_prefix(found == std::string_view::npos ? rest.size() : found + 1);
    return taken;
}

// A whole number. None: not a number, or too large.
std::optional<int> number(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

// The keys of one group that are used; none: absent.
struct KeyGroup {
    std::string_view type;
    std::string_view context;
    std::optional<int> size;
    std::optional<int> scale;
    std::optional<int> minimumSize;
    std::optional<int> maximumSize;
    std::optional<int> threshold;
};

void readKey(KeyGroup& group, std::string_view key, std::string_view value) {
    if (key == "Size") {
        group.size = number(value);
    } else if (key == "Scale") {
        group.scale = number(value);
    } else if (key == "Type") {
        group.type = value;
    } else if (key == "Context") {
        group.context = value;
    } else if (key == "MinSize") {
        group.minimumSize = number(value);
    } else if (key == "MaxSize") {
        group.maximumSize = number(value);
    } else if (key == "Threshold") {
        group.threshold = number(value);
    }
}

bool staysInside(std::string_view path) {
    if (path.empty() || path.size() > maximumThemeName || path.find('\0') != std::string_view::npos) {
        return false;
    }
    while (!path.empty()) {
        const auto part = takeUntil(path, '/');
        if (part.empty() || part.front() == '.') {
            return false;
        }
    }
    return true;
}

std::optional<IconDirectory> directory(std::string_view path, const KeyGroup& group) {
    const auto size = group.size.value_or(0);
    const auto scale = group.scale.value_or(1);
    if (size < 1 || size > maximumSize || scale < 1 || scale > maximumScale) {
        return std::nullopt;
    }
    IconDirectory result;
    result.path = path;
    result.size = size;
    result.scale = scale;
    result.context = group.context.substr(0, maximumThemeName);
    if (group.type == "Fixed") {
        result.type = IconDirectory::Type::Fixed;
    } else if (group.type == "Scalable") {
        result.type = IconDirectory::Type::Scalable;
    }
    result.minimumSize = std::clamp(group.minimumSize.value_or(size), 1, maximumSize);
    result.maximumSize = std::clamp(group.maximumSize.value_or(size), 1, maximumSize);
    result.threshold = std::clamp(group.threshold.value_or(2), 0, maximumSize);
    return result;
}

} // namespace

bool isIconThemeName(std::string_view name) {
    return !name.empty() && name.size() <= maximumThemeName && name.front() != '.' &&
           name.find('/') == std::string_view::npos && name.find('\0') == std::string_view::npos;
}

std::optional<IconThemeIndex> parseIconThemeIndex(std::string_view content) {
    if (content.size() > maximumContent) {
        return std::nullopt;
    }
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (content.starts_with(byteOrderMark)) {
        content.remove_prefix(byteOrderMark.size());
    }

    bool isTheme = false;
    bool inTheme = false;
    std::string_view listed;
    std::string_view listedScaled;
    std::string_view inherits;
    std::unordered_map<std::string_view, KeyGroup> groups;
    groups.reserve(content.size() / 64);
    KeyGroup* group = nullptr;
    while (!content.empty()) {
        const auto line = trimmed(takeUntil(content, '\n'));
        if (line.empty() || line.front() == '#') {
            continue;
        }
        if (line.front() == '[') {
            const auto name = line.substr(1, line.find(']') - 1);
            inTheme = name == "Icon Theme";
            isTheme = isTheme || inTheme;
            group = nullptr;
            if (!inTheme && groups.size() < maximumDirectories) {
                const auto [place, isNew] = groups.try_emplace(name);
                group = isNew ? &place->second : nullptr; // the first group of a name counts
            }
            continue;
        }
        auto rest = line;
        const auto key = trimmed(takeUntil(rest, '='));
        const auto value = trimmed(rest);
        if (group != nullptr) {
            readKey(*group, key, value);
        } else if (inTheme && key == "Directories") {
            listed = value;
        } else if (inTheme && key == "ScaledDirectories") {
            listedScaled = value;
        } else if (inTheme && key == "Inherits") {
            inherits = value;
        }
    }
    if (!isTheme) {
        return std::nullopt;
    }

    IconThemeIndex index;
    std::unordered_set<std::string_view> taken;
    for (auto names : {listed, listedScaled}) {
        while (!names.empty() && index.directories.size() < maximumDirectories) {
            auto path = trimmed(takeUntil(names, ','));
            const auto found = groups.find(path);
            while (path.ends_with('/')) {
                path.remove_suffix(1);
            }
            if (found == groups.end() || !staysInside(path) || !taken.insert(path).second) {
                continue;
            }
            if (auto described = directory(path, found->second)) {
                index.directories.push_back(*std::move(described));
            }
        }
    }
    while (!inherits.empty() && index.inherits.size() < maximumInherits) {
        const auto name = trimmed(takeUntil(inherits, ','));
        if (isIconThemeName(name)) {
            index.inherits.emplace_back(name);
        }
    }
    return index;
}

} // namespace amberquill::desktop
