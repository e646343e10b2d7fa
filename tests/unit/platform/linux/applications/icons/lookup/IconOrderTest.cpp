#include "platform/linux/applications/icons/lookup/IconOrder.h"

#include <gtest/gtest.h>

using namespace amberquill::desktop;

namespace {

using Type = IconDirectory::Type;
using Names = std::vector<std::string>;

IconDirectory fixed(int size, int scale = 1) {
    return {.path = std::to_string(size) + "@" + std::to_string(scale),
            .type = Type::Fixed,
            .size = size,
            .scale = scale,
            .minimumSize = size,
            .maximumSize = size,
            .threshold = 2,
            .context = "Applications"};
}

IconDirectory scalable(const std::string& path, int size, int minimum, int maximum) {
    return {.path = path,
            .type = Type::Scalable,
            .size = size,
            .scale = 1,
            .minimumSize = minimum,
            .maximumSize = maximum,
            .threshold = 2,
            .context = "Applications"};
}

// The directories in the order of one kind of icon.
Names order(const std::vector<IconDirectory>& directories, int edge, const IconExtensions& extensions) {
    Names names;
    const IconOrder made(directories, edge);
    for (const auto& candidate : made.candidates()) {
        if (candidate.extensions == extensions) {
            names.push_back(directories[candidate.directory].path);
        }
    }
    return names;
}

// The same for all kinds.
Names fullOrder(const std::vector<IconDirectory>& directories, int edge) {
    Names names;
    const IconOrder made(directories, edge);
    for (const auto& candidate : made.candidates()) {
        const std::string kind = candidate.extensions == pngExtension   ? " png"
                                 : candidate.extensions == xpmExtension ? " xpm"
                                                                        : " svg";
        names.push_back(directories[candidate.directory].path + kind);
    }
    return names;
}

} // namespace

TEST(IconOrder, TheExactSizeIsFollowedByLargerOnesThenByTheLargestSmallerOnes) {
    EXPECT_EQ(order({fixed(16), fixed(256), fixed(48), fixed(128), fixed(96), fixed(120)}, 120, pngExtension),
              (Names{"120@1", "128@1", "256@1", "96@1", "48@1", "16@1"}));
}

TEST(IconOrder, LargePicturesInScalableDirectoriesCountWithTheirSize) {
    const std::vector<IconDirectory> hicolor{fixed(48), scalable("256x256/apps", 256, 64, 256), fixed(128),
                                             scalable("512x512/apps", 512, 64, 512)};
    EXPECT_EQ(order(hicolor, 120, pngExtension), (Names{"128@1", "256x256/apps", "512x512/apps", "48@1"}));
    EXPECT_EQ(order(hicolor, 256, pngExtension), (Names{"256x256/apps", "512x512/apps", "128@1", "48@1"}));
}

TEST(IconOrder, DevicePixelsDecide) {
    EXPECT_EQ(order({fixed(64), fixed(48, 2), fixed(96), fixed(128)}, 96, pngExtension),
              (Names{"96@1", "48@2", "128@1", "64@1"}));
}

TEST(IconOrder, ADrawingComesBetweenLargerAndSmallerPictures) {
    EXPECT_EQ(fullOrder({fixed(48), scalable("scalable", 128, 8, 512), fixed(256)}, 120),
              (Names{"256@1 png", "256@1 xpm", "scalable svg", "256@1 svg", "48@1 svg", "48@1 png",
                     "48@1 xpm", "scalable png", "scalable xpm"}));
}

TEST(IconOrder, APictureOfTheExactSizeComesBeforeADrawingForIt) {
    EXPECT_EQ(fullOrder({scalable("scalable", 128, 8, 512), fixed(120)}, 120).front(), "120@1 png");
}

TEST(IconOrder, OfDrawingsForOtherSizesTheNextLargerComesFirst) {
    EXPECT_EQ(order({fixed(16), fixed(22), fixed(32), scalable("48", 48, 48, 256)}, 26, svgExtensions),
              (Names{"32@1", "48", "22@1", "16@1"}));
}

TEST(IconOrder, InADirectoryOfTheExactSizeTheStandardsOrderOfFormatsCounts) {
    EXPECT_EQ(fullOrder({fixed(64)}, 64), (Names{"64@1 png", "64@1 svg", "64@1 xpm"}));
}

TEST(IconOrder, AScalableDirectorysSizeIsNotExact) {
    EXPECT_EQ(order({scalable("scalable", 128, 8, 512)}, 128, svgExtensions), Names{"scalable"});
    EXPECT_EQ(fullOrder({scalable("scalable", 128, 8, 512), fixed(64, 2)}, 128).front(), "64@2 png");
}

TEST(IconOrder, ADrawingForTheSizeComesBeforeANearerOneForAnother) {
    EXPECT_EQ(order({scalable("small", 110, 8, 112), scalable("wide", 48, 48, 256)}, 120, svgExtensions),
              (Names{"wide", "small"}));
}

TEST(IconOrder, OfDrawingsForTheSizeTheNearestComesFirst) {
    EXPECT_EQ(order({scalable("16", 16, 8, 256), scalable("64", 64, 8, 256), scalable("32", 32, 8, 256)}, 120,
                    svgExtensions),
              (Names{"64", "32", "16"}));
}

TEST(IconOrder, ADrawingsScaleDoesNotCount) {
    const auto wide = scalable("wide", 48, 48, 256);
    EXPECT_EQ(order({fixed(16, 3), fixed(24, 2), wide}, 48, svgExtensions), (Names{"wide", "24@2", "16@3"}));
    EXPECT_EQ(order({fixed(22, 2), wide}, 44, svgExtensions), (Names{"wide", "22@2"}));
    EXPECT_EQ(order({fixed(22, 3), fixed(64)}, 66, svgExtensions), (Names{"64@1", "22@3"}));
    EXPECT_EQ(order({fixed(22, 3), fixed(64)}, 512, svgExtensions), (Names{"64@1", "22@3"}));
    EXPECT_EQ(order({fixed(22, 2), fixed(22)}, 22, svgExtensions), (Names{"22@1", "22@2"}));
    // A picture's size in pixels is fixed.
    EXPECT_EQ(order({fixed(24, 2), fixed(64)}, 48, pngExtension), (Names{"24@2", "64@1"}));
}

TEST(IconOrder, AThresholdWidensADrawingsSizes) {
    auto nearly = fixed(118);
    nearly.type = Type::Threshold;
    auto outside = fixed(117);
    outside.type = Type::Threshold;
    EXPECT_EQ(order({outside, nearly, scalable("all", 60, 8, 512)}, 120, svgExtensions),
              (Names{"118@1", "all", "117@1"}));
    // Not for pictures: enlarging by two pixels blurs them.
    EXPECT_EQ(order({nearly, fixed(128)}, 120, pngExtension), (Names{"128@1", "118@1"}));
}

TEST(IconOrder, AmongEqualsApplicationsComeFirstThenTheThemesOrder) {
    auto status = fixed(48);
    status.path = "48/status";
    status.context = "Status";
    auto first = fixed(48);
    first.path = "48/apps";
    first.context.clear(); // derived from its name
    auto second = fixed(48);
    second.path = "48/second";
    EXPECT_EQ(order({status, first, second}, 48, pngExtension), (Names{"48/apps", "48/second", "48/status"}));
}

TEST(IconOrder, APositionIsItsCandidatesIndex) {
    const std::vector<IconDirectory> directories{fixed(16), scalable("s", 128, 8, 512), fixed(48, 2),
                                                 fixed(300)};
    const IconOrder made(directories, 96);
    ASSERT_EQ(made.candidates().size(), directories.size() * iconKinds.size());
    for (std::size_t i = 0; i < directories.size(); ++i) {
        for (std::size_t kind = 0; kind < iconKinds.size(); ++kind) {
            EXPECT_EQ(made.candidates()[made.position(i, kind)].directory, i);
            EXPECT_EQ(made.candidates()[made.position(i, kind)].extensions, iconKinds.at(kind));
        }
    }
}
