#include "platform/linux/applications/icons/MarkupScanner.h"

namespace amberquill::desktop {

namespace {

constexpr std::string_view spaces = " \t\r\n";

std::string_view withoutPrefix(std::string_view name) {
    const auto colon = name.rfind(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

bool takePrefix(std::string_view& text, std::string_view prefix) {
    if (!text.starts_with(prefix)) {
        return false;
    }
    text.remove_prefix(prefix.size());
    return true;
}

MarkupScanner::Piece textPiece(MarkupScanner::Kind kind, std::string_view text) {
    return {.kind = kind, .name = {}, .text = text, .attributes = {}};
}

} // namespace

void skipSpace(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(spaces), text.size()));
}

std::string_view takeName(std::string_view& text) {
    const auto end = std::min(text.find_first_of(" \t\r\n/>=<\"'&"), text.size());
    const auto name = text.substr(0, end);
    text.remove_prefix(end);
    return name;
}

std::optional<std::string_view> takeQuoted(std::string_view& text) {
    if (text.empty() || (text.front() != '"' && text.front() != '\'')) {
        return std::nullopt;
    }
    const auto end = text.find(text.front(), 1);
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    const auto value = text.substr(1, end - 1);
    text.remove_prefix(end + 1);
    return value;
}

std::optional<MarkupScanner::Piece> MarkupScanner::fail() {
    failed_ = true;
    rest_ = {};
    return std::nullopt;
}

std::optional<std::string_view> MarkupScanner::takeThrough(std::string_view end) {
    const auto found = rest_.find(end);
    if (found == std::string_view::npos) {
        return std::nullopt;
    }
    const auto taken = rest_.substr(0, found);
    rest_.remove_prefix(found + end.size());
    return taken;
}

std::optional<MarkupScanner::Piece> MarkupScanner::next() {
    while (!rest_.empty()) {
        if (rest_.front() != '<') {
            const auto text = rest_.substr(0, rest_.find('<'));
            rest_.remove_prefix(text.size());
            return textPiece(Kind::Text, text);
        }
        if (takePrefix(rest_, "<!--")) {
            if (!takeThrough("-->")) {
                return fail();
            }
            continue;
        }
        if (takePrefix(rest_, "<![CDATA[")) {
            const auto text = takeThrough("]]>");
            return text ? std::optional(textPiece(Kind::Text, *text)) : fail();
        }
        if (takePrefix(rest_, "<?")) {
            const auto text = takeThrough("?>");
            return text ? std::optional(textPiece(Kind::Instruction, *text)) : fail();
        }
        if (takePrefix(rest_, "<!DOCTYPE")) {
            const auto text = takeDocumentType();
            return text ? std::optional(textPiece(Kind::DocumentType, *text)) : fail();
        }
        rest_.remove_prefix(1);
        return takeTag();
    }
    return std::nullopt;
}

// Up to the '>' that stands outside of quotes, comments and the brackets of the internal subset.
std::optional<std::string_view> MarkupScanner::takeDocumentType() {
    const auto begin = rest_;
    bool inSubset = false;
    while (!rest_.empty()) {
        const char character = rest_.front();
        if (character == '"' || character == '\'') {
            if (!takeQuoted(rest_)) {
                return std::nullopt;
            }
            continue;
        }
        if (takePrefix(rest_, "<!--")) {
            if (!takeThrough("-->")) {
                return std::nullopt;
            }
            continue;
        }
        if (takePrefix(rest_, "<?")) {
            if (!takeThrough("?>")) {
                return std::nullopt;
            }
            continue;
        }
        rest_.remove_prefix(1);
        if (character == '[') {
            inSubset = true;
        } else if (character == ']') {
            inSubset = false;
        } else if (character == '>' && !inSubset) {
            return begin.substr(0, begin.size() - rest_.size() - 1);
        }
    }
    return std::nullopt;
}

std::optional<MarkupScanner::Piece> MarkupScanner::takeTag() {
    Piece piece;
    piece.kind = Kind::StartTag;
    if (takePrefix(rest_, "/")) {
        piece.kind = Kind::EndTag;
    }
    piece.name = withoutPrefix(takeName(rest_));
    if (piece.name.empty() || piece.name.front() == '!') {
        return fail();
    }
    while (true) {
        skipSpace(rest_);
        if (takePrefix(rest_, ">")) {
            return piece;
        }
        if (piece.kind == Kind::StartTag && takePrefix(rest_, "/>")) {
            piece.kind = Kind::EmptyTag;
            return piece;
        }
        const auto name = takeName(rest_);
        skipSpace(rest_);
        if (name.empty() || piece.kind == Kind::EndTag || !takePrefix(rest_, "=")) {
            return fail();
        }
        skipSpace(rest_);
        const auto value = takeQuoted(rest_);
        if (!value || value->find('<') != std::string_view::npos) {
            return fail();
        }
        piece.attributes.push_back({.name = withoutPrefix(name), .value = *value});
    }
}

} // namespace amberquill::desktop
