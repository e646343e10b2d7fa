#include "platform/linux/applications/icons/MarkupScanner.h"

#include <gtest/gtest.h>
#include <string>

using namespace amberquill::desktop;

namespace {

// All pieces as text, "!" at the end where the scanner failed.
std::string pieces(std::string_view text) {
    MarkupScanner scanner(text);
    std::string all;
    std::size_t count = 0;
    while (const auto piece = scanner.next()) {
        if (++count > text.size()) { // each piece is of a letter at least
            ADD_FAILURE() << "the scanner does not come to the end of " << text;
            return all;
        }
        using Kind = MarkupScanner::Kind;
        switch (piece->kind) {
        case Kind::StartTag:
        case Kind::EmptyTag:
            all += '<' + std::string(piece->name);
            for (const auto& attribute : piece->attributes) {
                all += ' ' + std::string(attribute.name) + '=' + std::string(attribute.value);
            }
            all += piece->kind == Kind::EmptyTag ? "/>" : ">";
            break;
        case Kind::EndTag:
            all += "</" + std::string(piece->name) + '>';
            break;
        case Kind::Text:
            all += '{' + std::string(piece->text) + '}';
            break;
        case Kind::Instruction:
            all += "?{" + std::string(piece->text) + '}';
            break;
        case Kind::DocumentType:
            all += "!{" + std::string(piece->text) + '}';
            break;
        }
    }
    return all + (scanner.failed() ? "!" : "");
}

} // namespace

TEST(MarkupScanner, TagsAreToldApart) {
    EXPECT_EQ(pieces("<a><b/>text</a>"), "<a><b/>{text}</a>");
    EXPECT_EQ(pieces("<a ></a >"), "<a></a>");
}

TEST(MarkupScanner, PrefixesAreDropped) {
    EXPECT_EQ(pieces("<svg:a xlink:href='#b'/>"), "<a href=#b/>");
}

TEST(MarkupScanner, QuotedValuesMayHoldTheOtherQuoteAndAngles) {
    EXPECT_EQ(pieces("<a b = \"it's > '\" c='\"/>'>"), "<a b=it's > ' c=\"/>>");
}

TEST(MarkupScanner, CommentsArePassedOver) {
    EXPECT_EQ(pieces("<!-- <a> --><b><!-- -- > --></b>"), "<b></b>");
}

TEST(MarkupScanner, CharacterDataIsText) {
    EXPECT_EQ(pieces("<a><![CDATA[<b>&]]></a>"), "<a>{<b>&}</a>");
}

TEST(MarkupScanner, InstructionsAndDocumentTypesAreWhole) {
    EXPECT_EQ(pieces("<?xml version='1.0'?><a/>"), "?{xml version='1.0'}<a/>");
    EXPECT_EQ(pieces("<!DOCTYPE a [<!ENTITY b \"]>\"><!-- ]> --><?c ]>?>]><a/>"),
              "!{ a [<!ENTITY b \"]>\"><!-- ]> --><?c ]>?>]}<a/>");
}

TEST(MarkupScanner, WhatIsNotWellFormedEndsIt) {
    for (const auto* const text :
         {"<", "<>", "<a", "<a b", "<a b=", "<a b=c>", "<a b='c>", "<a b='<'>", "<!-- ", "<![CDATA[ ", "<?x ",
          "<!DOCTYPE a [", "<!DOCTYPE a \"", "<!x>", "</a b='c'>", "<a b='c' / >", "</a"}) {
        const auto all = pieces(text);
        ASSERT_FALSE(all.empty()) << text;
        EXPECT_EQ(all.back(), '!') << text;
    }
}
