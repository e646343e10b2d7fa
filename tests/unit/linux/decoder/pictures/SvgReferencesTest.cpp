#include "platform/linux/decoder/pictures/SvgReferences.h"

#include <gtest/gtest.h>
#include <string>

using namespace amberquill::desktop;

namespace {

constexpr std::size_t limit = 1'000;

void addElements(SvgReferences& drawing, int count) {
    for (int i = 0; i < count; ++i) {
        drawing.begin("path");
        drawing.end();
    }
}

// An element of this name with so many others inside.
void addGroup(SvgReferences& drawing, std::string_view element, std::string_view id, int inside) {
    drawing.begin(element);
    drawing.setId(id);
    addElements(drawing, inside);
    drawing.end();
}

void addUse(SvgReferences& drawing, std::string_view id) {
    drawing.begin("use");
    drawing.addUse(id);
    drawing.end();
}

void addPainted(SvgReferences& drawing, std::string_view id) {
    drawing.begin("path");
    drawing.addUrl(id);
    drawing.end();
}

} // namespace

TEST(SvgReferences, ElementsAreCountedAsOftenAsTheyAreDrawn) {
    SvgReferences drawing(limit);
    drawing.begin("svg");
    addGroup(drawing, "g", "a", 9); // ten
    addUse(drawing, "a");           // itself, and those
    addUse(drawing, "a");
    drawing.end();
    EXPECT_EQ(drawing.elements(), 13U);
    EXPECT_EQ(drawing.drawn(), 33U);
}

TEST(SvgReferences, AUseOfAUseCountsAllOfIt) {
    SvgReferences drawing(limit);
    drawing.begin("svg");
    addGroup(drawing, "g", "a", 4); // five
    drawing.begin("g");
    drawing.setId("b");
    addUse(drawing, "a");
    addUse(drawing, "a"); // 1 + 2 * (1 + 5)
    drawing.end();
    addUse(drawing, "b"); // 1 + 13
    drawing.end();
    EXPECT_EQ(drawing.drawn(), 1U + 5U + 13U + 14U);
}

TEST(SvgReferences, AUrlDrawsOnlyWhatAUrlCanStandFor) {
    for (const auto* const element : {"pattern", "marker", "mask", "filter", "clipPath"}) {
        SvgReferences drawing(limit);
        drawing.begin("svg");
        addGroup(drawing, element, "a", 4);
        addPainted(drawing, "a");
        drawing.end();
        EXPECT_EQ(drawing.drawn(), 1U + 5U + 1U + 5U) << element;
    }
    for (const auto* const element : {"g", "path", "linearGradient", "radialGradient"}) {
        SvgReferences drawing(limit);
        drawing.begin("svg");
        addGroup(drawing, element, "a", 4);
        addPainted(drawing, "a");
        drawing.end();
        EXPECT_EQ(drawing.drawn(), 7U) << element;
    }
}

TEST(SvgReferences, AStyleSheetMayPaintEveryElement) {
    SvgReferences drawing(limit);
    drawing.begin("svg");
    addGroup(drawing, "pattern", "a", 4);
    drawing.addStyleUrl("a");
    drawing.end();
    EXPECT_EQ(drawing.drawn(), 6U + 6U * 5U);
}

TEST(SvgReferences, NamesThatNobodyHasDrawNothingAndNamesOfSeveralDrawThemAll) {
    SvgReferences drawing(limit);
    drawing.begin("svg");
    addUse(drawing, "missing");
    addGroup(drawing, "g", "a", 1);
    addGroup(drawing, "g", "a", 2);
    addUse(drawing, "a");
    drawing.end();
    EXPECT_EQ(drawing.drawn(), 1U + 1U + 2U + 3U + 1U + 5U);
}

TEST(SvgReferences, WhatRefersToItselfHasNoEnd) {
    SvgReferences drawing(limit);
    drawing.begin("svg");
    drawing.begin("g");
    drawing.setId("a");
    addUse(drawing, "a");
    drawing.end();
    drawing.end();
    EXPECT_EQ(drawing.drawn(), std::nullopt);
}

TEST(SvgReferences, ThirtyDoublingsAreFoundTooManyAtOnce) {
    std::vector<std::string> ids;
    for (int i = 0; i <= 30; ++i) {
        ids.push_back(std::to_string(i));
    }
    SvgReferences drawing(limit);
    drawing.begin("svg");
    addGroup(drawing, "g", ids[0], 0);
    for (std::size_t i = 1; i < ids.size(); ++i) {
        drawing.begin("g");
        drawing.setId(ids[i]);
        addUse(drawing, ids[i - 1]);
        addUse(drawing, ids[i - 1]);
        drawing.end();
    }
    drawing.end();
    EXPECT_GT(drawing.drawn().value_or(0), limit);
}

TEST(SvgReferences, ADrawingOfNothingDrawsNothing) {
    SvgReferences drawing(limit);
    EXPECT_EQ(drawing.drawn(), 0U);
}
