#pragma once

#include "data/LaunchItem.h"

#include <QString>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace amberquill {

class NameOrder;

// Finds installed applications by their names. The names are prepared once; a search is one pass over them.
class SearchIndex {
public:
    SearchIndex() = default;
    // Letters are compared by the rules of the language of `order`.
    SearchIndex(const std::vector<AppInfo>& apps, const NameOrder& order);

    // The positions in `apps` of the names that contain `text`, regardless of case and of white space around
    // `text`. Names that start with it come first. Both groups are in the order of names, equal names in the
    // order of `apps`. An empty text finds nothing.
    [[nodiscard]] std::vector<std::size_t> find(const QString& text) const;

private:
    // Texts in one UTF-8 buffer, for a search in one pass.
    class Texts {
    public:
        void append(const QString& text);
        [[nodiscard]] const std::string& all() const { return all_; }
        [[nodiscard]] std::size_t end(std::size_t text) const { return ends_[text]; }
        [[nodiscard]] std::string_view at(std::size_t text) const;

    private:
        std::string all_;
        std::vector<std::size_t> ends_;
    };

    bool isTurkic_ = false;              // i and ı are different letters
    std::vector<std::size_t> positions_; // of the applications, in the order of names
    Texts folded_;                       // case-folded names, in the same order
    Texts lowered_;                      // lower-case names, in the same order
};

} // namespace amberquill
