#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace amberquill::desktop {

// Goes through XML text piece by piece, without believing it and without copying it. Nothing is expanded:
// values are as they are written. What it calls well-formed, an XML reader may still refuse; not the other
// way round for the things that matter: where tags begin and end, what they are called, what is quoted.
class MarkupScanner {
public:
    struct Attribute {
        std::string_view name; // without its prefix
        std::string_view value;
    };
    enum class Kind { StartTag, EmptyTag, EndTag, Text, Instruction, DocumentType };
    struct Piece {
        Kind kind = Kind::Text;
        std::string_view name; // of tags, without its prefix
        std::string_view text; // of text, and between the marks of an instruction or document type
        std::vector<Attribute> attributes;
    };

    explicit MarkupScanner(std::string_view text)
        : rest_(text) {}

    // The next piece; comments are passed over. None at the end and after an error.
    [[nodiscard]] std::optional<Piece> next();

    // The text is not well-formed where the scanner stopped.
    [[nodiscard]] bool failed() const { return failed_; }

private:
    [[nodiscard]] std::optional<Piece> fail();
    [[nodiscard]] std::optional<std::string_view> takeThrough(std::string_view end);
    [[nodiscard]] std::optional<std::string_view> takeDocumentType();
    [[nodiscard]] std::optional<Piece> takeTag();

    std::string_view rest_;
    bool failed_ = false;
};

// Takes a quoted value off the front of `text`, or none where there is no whole one.
[[nodiscard]] std::optional<std::string_view> takeQuoted(std::string_view& text);

// Takes white space off the front of `text`.
void skipSpace(std::string_view& text);

// Takes a name off the front of `text`; empty where none stands there.
[[nodiscard]] std::string_view takeName(std::string_view& text);

} // namespace amberquill::desktop
