#pragma once

#include "data/LaunchItem.h"

#include <QString>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace amberquill {

class NameOrder;

// Finds installed applications by their names. All that does not depend on the text searched for is worked
// out once: a search is one pass over the names.
class SearchIndex {
public:
    SearchIndex() = default;
    // Letters are told from each other as in the language of `order`.
    SearchIndex(const std::vector<AppInfo>& apps, const NameOrder& order);

    // The positions in `apps` of those whose names hold `text`, white space at its ends and letter case
    // aside. Names that start with it come first; within each kind they are in the order of names, equal ones
    // in that of `apps`. Nothing but white space finds nothing.
    [[nodiscard]] std::vector<std::size_t> find(const QString& text) const;

private:
    // Texts one behind the other in UTF-8, so that one pass reads them all.
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
    std::vector<std::size_t> positions_; // in the applications, in the order of names
    Texts folded_;                       // names without letter case, in the same order
    Texts lowered_;                      // names in lower case, in the same order
};

} // namespace amberquill
