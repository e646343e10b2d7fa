#pragma once

#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace amberquill::desktop {

// Which element of a drawing refers to which other by name, and how much is drawn by that: what is used ten
// times is drawn ten times, with all that it uses itself. Elements are told of in the text's order. Names are
// views into the text.
class SvgReferences {
public:
    explicit SvgReferences(std::size_t limit)
        : limit_(limit) {}

    // The next element begins inside the one that is open, or the last one that did ends.
    void begin(std::string_view element);
    void end();

    [[nodiscard]] std::size_t elements() const { return elements_.size(); }
    [[nodiscard]] std::size_t depth() const { return open_.size(); }
    [[nodiscard]] std::string_view openElement() const { return open_.back().name; }

    // Of the element that began last: its own name; one that it uses; one that it is painted with, by url().
    void setId(std::string_view id) { ids_.emplace(id, elements_.size() - 1); }
    void addUse(std::string_view id) { references_.push_back({elements_.size() - 1, id, false}); }
    void addUrl(std::string_view id) { references_.push_back({elements_.size() - 1, id, true}); }

    // A name that a style sheet may paint any element with.
    void addStyleUrl(std::string_view id) { styled_.push_back(id); }

    // How many elements are drawn, each as often as it is drawn; exact up to the limit. None: something
    // refers to itself, or by too many steps to something else. Asked once, at the end.
    [[nodiscard]] std::optional<std::size_t> drawn();

private:
    struct Element {
        std::size_t end = 0;   // one past the last element inside
        std::size_t drawn = 0; // elements drawn with it, once that is known
        bool isGradient = false;
        bool isDrawnByUrl = false;
        bool isBeingCounted = false;
    };
    struct Reference {
        std::size_t from = 0; // elements_
        std::string_view id;
        bool isUrl = false;
    };
    struct Open {
        std::string_view name;
        std::size_t index = 0;
    };

    [[nodiscard]] std::size_t drawnWith(std::size_t index, std::size_t steps);
    [[nodiscard]] std::size_t drawnBy(const Reference& reference, std::size_t steps);

    const std::size_t limit_;
    std::vector<Open> open_;
    std::vector<Element> elements_; // what is inside one follows it
    std::vector<Reference> references_;
    std::vector<std::string_view> styled_;
    std::unordered_multimap<std::string_view, std::size_t> ids_;
    bool isEndless_ = false;
};

} // namespace amberquill::desktop
