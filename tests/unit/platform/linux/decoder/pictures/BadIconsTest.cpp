#include "support/BadIcons.h"
#include "platform/linux/decoder/channel/IconBounds.h"
#include "platform/linux/decoder/pictures/IconDecoder.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

constexpr int badEdge = 96;

const BadIcons& all() {
    static const auto icons = badIcons();
    return icons;
}

} // namespace

TEST(BadIcons, EachHasItsExpectedOutcome) {
    for (const auto& [name, bytes, outcome] : all()) {
        EXPECT_LE(bytes.size(), maximumIconBytes) << name;
        if (outcome == BadIcon::Outcome::Overload) {
            continue; // for a process with limits
        }
        const auto icon = decodedIcon(bytes, badEdge, Fonts::Absent);
        EXPECT_FALSE(icon.needsFonts) << name;
        if (outcome == BadIcon::Outcome::Picture) {
            ASSERT_EQ(icon.image.size(), QSize(badEdge, badEdge)) << name;
            const auto pixel = icon.image.pixelColor(badEdge / 2, badEdge / 2);
            EXPECT_GT(pixel.red(), 240) << name;
            EXPECT_LT(pixel.blue(), 15) << name;
        } else if (outcome == BadIcon::Outcome::NoPicture) {
            EXPECT_TRUE(icon.image.isNull()) << name;
        } else {
            EXPECT_TRUE(icon.image.isNull() || icon.image.size() == QSize(badEdge, badEdge)) << name;
        }
    }
}

TEST(BadIcons, LibrariesPrintNothing) {
    testing::internal::CaptureStderr();
    for (const auto& icon : all()) {
        if (icon.outcome != BadIcon::Outcome::Overload) {
            static_cast<void>(decodedIcon(icon.bytes, badEdge, Fonts::Absent));
        }
    }
    for (const auto& bytes :
         {svg(R"svg(<use href="#x"/><rect fill="url(#y)"/><text font-size="-5">W</text>)svg"
              R"(<path stroke-width="999999" d="M0 0 L9 9 nonsense"/>)"),
          pngThatClaims(48, 48, pngChunk("IDAT", "garbage")),
          encoded(filledImage(48, 48, Qt::red), "jpeg").first(300),
          encoded(filledImage(48, 48, Qt::red), "tiff").first(100), QByteArray("/* XPM */\nnonsense")}) {
        static_cast<void>(decodedIcon(bytes, badEdge, Fonts::Present));
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(BadIcons, ReferencedFilesAreNotOpened) {
    const TemporaryTree tree;
    // The colours that the drawings would show.
    tree.write("picture.png", png(100, 100, Qt::blue));
    tree.write("drawing.svg", svg("<g id='a'>" + squareOf("blue") + "</g>"));
    tree.write("style.css", "rect{fill:blue}");
    const auto folder = tree.path().toUtf8() + '/';
    for (const auto& place : {"file://" + folder, folder}) {
        for (const auto& icon : drawingsThatReferTo(place, place.toStdString())) {
            const auto image = decodedIcon(icon.bytes, badEdge, Fonts::Absent).image;
            EXPECT_TRUE(image.isNull() || image.pixel(badEdge / 2, badEdge / 2) == red) << icon.name;
        }
    }
}
