#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace amberquill::desktop {

// What an icon's file may end in, in the order the icon theme standard prefers them (compressed SVG beside
// SVG).
enum class IconEnding : std::uint8_t { Png, Svg, Svgz, Xpm };
inline constexpr std::array iconEndings{IconEnding::Png, IconEnding::Svg, IconEnding::Svgz, IconEnding::Xpm};

// The ending with its dot.
[[nodiscard]] std::string_view endingText(IconEnding ending);

// A set of endings.
class IconEndings {
public:
    constexpr IconEndings() = default;
    constexpr IconEndings(std::initializer_list<IconEnding> endings) {
        for (const auto ending : endings) {
            insert(ending);
        }
    }

    constexpr void insert(IconEnding ending) { bits_ = static_cast<std::uint8_t>(bits_ | bit(ending)); }
    [[nodiscard]] constexpr bool contains(IconEnding ending) const { return (bits_ & bit(ending)) != 0; }
    [[nodiscard]] constexpr bool isEmpty() const { return bits_ == 0; }
    [[nodiscard]] constexpr IconEndings intersected(IconEndings other) const {
        IconEndings both;
        both.bits_ = bits_ & other.bits_;
        return both;
    }

    // The preferred one of a set that is not empty.
    [[nodiscard]] IconEnding first() const;

    bool operator==(const IconEndings&) const = default;

private:
    static constexpr std::uint8_t bit(IconEnding ending) {
        return static_cast<std::uint8_t>(1U << static_cast<unsigned>(ending));
    }

    std::uint8_t bits_ = 0;
};

// Drawings can be had in any size, pictures in the one they have. In the order of preference.
inline constexpr IconEndings pngEnding{IconEnding::Png};
inline constexpr IconEndings drawingEndings{IconEnding::Svg, IconEnding::Svgz};
inline constexpr IconEndings xpmEnding{IconEnding::Xpm};
inline constexpr std::array iconKinds{pngEnding, drawingEndings, xpmEnding};

// `name` without an icon's ending, or the whole of it where it has none. Capital endings count.
[[nodiscard]] std::string_view withoutIconEnding(std::string_view name);

// The icons that stand in one folder itself. A folder is read once and then asked from memory; of a large one
// (themes have some with ten thousand names) single files are looked for on the disk instead, until that has
// cost about as much as reading it would. Not safe on several threads at once.
class IconFolder {
public:
    // `size`: what the file system says of the folder, in bytes. Missing folders are empty ones.
    IconFolder(std::string path, std::int64_t size);

    // The endings that the icon of this name has here.
    [[nodiscard]] IconEndings endings(std::string_view name);

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };

    void read();
    [[nodiscard]] IconEndings lookedFor(std::string_view name) const;

    std::string path_;
    std::int64_t questionsBeforeReading_ = 0;
    bool isRead_ = false;
    std::unordered_map<std::string, IconEndings, Hash, std::equal_to<>> names_;
};

// Whether there is a regular file; symbolic links are followed.
[[nodiscard]] bool isRegularFile(const std::string& path);

} // namespace amberquill::desktop
