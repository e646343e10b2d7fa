#include "platform/linux/decoder/pictures/SvgDrawing.h"

#include "support/BadDrawings.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;

TEST(Gunzip, WhatWasCompressedComesBack) {
    for (const auto& text : {QByteArray(), QByteArray("a"), QByteArray(1'000'000, 'x'), redSquare}) {
        EXPECT_EQ(gunzipped(gzipped(text), 1'000'000), text);
    }
}

TEST(Gunzip, WhatIsTooLargeIsNone) {
    const auto bytes = gzipped(QByteArray(1'000, 'x'));
    EXPECT_TRUE(gunzipped(bytes, 1'000));
    EXPECT_FALSE(gunzipped(bytes, 999));
    EXPECT_FALSE(gunzipped(compressedBomb(), 1'000'000));
}

TEST(Gunzip, ABrokenOrShortenedFileIsNone) {
    const auto whole = gzipped(redSquare);
    for (qsizetype size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(gunzipped(whole.first(size), 10'000)) << size;
    }
    EXPECT_FALSE(gunzipped("\x1F\x8B garbage", 10'000));
    EXPECT_FALSE(gunzipped(redSquare, 10'000));
}
