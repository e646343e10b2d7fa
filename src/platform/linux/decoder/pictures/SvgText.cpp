#include "platform/linux/decoder/pictures/SvgText.h"

#include <string_view>

namespace amberquill::desktop {

using namespace std::string_view_literals;

namespace {

constexpr auto endsOfName = " \t\r\n/>"sv;
constexpr std::size_t longestPrefix = 64;

// What stands before an element's name: the mark of a tag, perhaps a namespace's prefix.
bool beginsTag(std::string_view before) {
    if (!before.ends_with(':')) {
        return before.ends_with('<');
    }
    before = before.substr(before.size() - std::min(before.size(), longestPrefix));
    const auto mark = before.rfind('<');
    return mark != std::string_view::npos && before.find_first_of(endsOfName, mark) == std::string_view::npos;
}

} // namespace

bool mayHoldText(const QByteArray& document) {
    QByteArray narrow;
    if (document.contains('\0')) { // two or four bytes a letter
        narrow = document;
        narrow.removeIf([](char byte) { return byte == '\0'; });
    }
    const auto& bytes = narrow.isEmpty() ? document : narrow;
    const std::string_view text(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    constexpr auto name = "text"sv;
    for (auto at = text.find(name); at != std::string_view::npos; at = text.find(name, at + 1)) {
        const auto after = text.substr(at + name.size(), 1);
        if (!after.empty() && endsOfName.find(after.front()) != std::string_view::npos &&
            beginsTag(text.substr(0, at))) {
            return true;
        }
    }
    return false;
}

} // namespace amberquill::desktop
