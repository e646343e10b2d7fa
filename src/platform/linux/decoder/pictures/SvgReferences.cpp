#include "platform/linux/decoder/pictures/SvgReferences.h"

#include <algorithm>
#include <array>

namespace amberquill::desktop {

namespace {

constexpr std::size_t maximumSteps = 16;

// What a url() can stand for besides a colour, in alphabetical order.
constexpr std::array<std::string_view, 5> drawnByUrl{"clipPath", "filter", "marker", "mask", "pattern"};

} // namespace

void SvgReferences::begin(std::string_view element) {
    open_.push_back({.name = element, .index = elements_.size()});
    auto& added = elements_.emplace_back();
    added.isGradient = element.ends_with("Gradient");
    added.isDrawnByUrl = std::binary_search(drawnByUrl.begin(), drawnByUrl.end(), element);
}

void SvgReferences::end() {
    elements_[open_.back().index].end = elements_.size();
    open_.pop_back();
}

std::optional<std::size_t> SvgReferences::drawn() {
    if (elements_.empty()) {
        return 0;
    }
    auto all = drawnWith(0, 0);
    for (const auto id : styled_) {
        all += std::min(drawnBy({.from = 0, .id = id, .isUrl = true}, 0), limit_) * elements_.size();
    }
    return isEndless_ ? std::nullopt : std::optional(all);
}

std::size_t SvgReferences::drawnWith(std::size_t index, std::size_t steps) {
    auto& element = elements_[index];
    if (element.drawn > 0) {
        return element.drawn;
    }
    if (element.isBeingCounted || steps > maximumSteps) {
        isEndless_ = true;
        return 0;
    }
    element.isBeingCounted = true;
    auto all = element.end - index;
    auto reference = std::lower_bound(references_.begin(), references_.end(), index,
                                      [](const Reference& one, std::size_t at) { return one.from < at; });
    for (; reference != references_.end() && reference->from < element.end; ++reference) {
        all += drawnBy(*reference, steps);
        if (isEndless_ || all > limit_) {
            break;
        }
    }
    element.isBeingCounted = false;
    element.drawn = all;
    return all;
}

// All elements of the name count, of which there should be but one. A gradient is a colour, and as quickly
// drawn.
std::size_t SvgReferences::drawnBy(const Reference& reference, std::size_t steps) {
    std::size_t all = 0;
    const auto [first, last] = ids_.equal_range(reference.id);
    for (auto target = first; target != last && !isEndless_ && all <= limit_; ++target) {
        const auto& element = elements_[target->second];
        if (reference.isUrl && !element.isGradient && !element.isDrawnByUrl) {
            continue;
        }
        const auto more = drawnWith(target->second, steps + 1);
        all += element.isGradient ? 0 : more;
    }
    return all;
}

} // namespace amberquill::desktop
