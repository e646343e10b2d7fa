#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace amberquill::desktop {

// The file name extensions of icons, in the icon theme standard's order of preference (compressed SVG beside
// SVG).
enum class IconExtension : std::uint8_t { Png, Svg, Svgz, Xpm };
inline constexpr std::array iconExtensions{IconExtension::Png, IconExtension::Svg, IconExtension::Svgz,
                                           IconExtension::Xpm};

// With its dot.
[[nodiscard]] std::string_view extensionText(IconExtension extension);

// A set of extensions.
class IconExtensions {
public:
    constexpr IconExtensions() = default;
    constexpr IconExtensions(std::initializer_list<IconExtension> extensions) {
        for (const auto extension : extensions) {
            insert(extension);
        }
    }

    constexpr void insert(IconExtension extension) {
        bits_ = static_cast<std::uint8_t>(bits_ | bit(extension));
    }
    [[nodiscard]] constexpr bool contains(IconExtension extension) const {
        return (bits_ & bit(extension)) != 0;
    }
    [[nodiscard]] constexpr bool isEmpty() const { return bits_ == 0; }
    [[nodiscard]] constexpr IconExtensions intersected(IconExtensions other) const {
        IconExtensions both;
        both.bits_ = bits_ & other.bits_;
        return both;
    }

    // The preferred extension of a set that is not empty.
    [[nodiscard]] IconExtension first() const;

    bool operator==(const IconExtensions&) const = default;

private:
    static constexpr std::uint8_t bit(IconExtension extension) {
        return static_cast<std::uint8_t>(1U << static_cast<unsigned>(extension));
    }

    std::uint8_t bits_ = 0;
};

// The kinds of icon files in the order of preference. SVG drawings scale to any size.
inline constexpr IconExtensions pngExtension{IconExtension::Png};
inline constexpr IconExtensions svgExtensions{IconExtension::Svg, IconExtension::Svgz};
inline constexpr IconExtensions xpmExtension{IconExtension::Xpm};
inline constexpr std::array iconKinds{pngExtension, svgExtensions, xpmExtension};

// `name` without an icon's extension, whatever its case, or unchanged without one.
[[nodiscard]] std::string_view withoutIconExtension(std::string_view name);

// The icons in one folder, without subfolders. A small folder is read at the first question. In a large one
// (some themes have folders of ten thousand names) the first questions probe single files instead, until that
// has cost about as much as reading the folder. Not thread-safe.
class IconFolder {
public:
    // `size`: the folder's own st_size. A missing folder counts as empty.
    IconFolder(std::string path, std::int64_t size);

    // The extensions with which the icon of this name is in the folder.
    [[nodiscard]] IconExtensions extensions(std::string_view name);

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };

    void read();
    [[nodiscard]] IconExtensions probe(std::string_view name) const;

    std::string path_;
    std::int64_t probesBeforeReading_ = 0;
    bool isRead_ = false;
    std::unordered_map<std::string, IconExtensions, Hash, std::equal_to<>> names_;
};

// Whether `path` is a regular file, or a symbolic link to one.
[[nodiscard]] bool isRegularFile(const std::string& path);

} // namespace amberquill::desktop
