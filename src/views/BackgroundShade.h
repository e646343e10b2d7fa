#pragma once

#include "data/BackgroundTheme.h"

#include <QSize>
#include <algorithm>
#include <cmath>

namespace amberquill {

// The colour wash at a point: premultiplied components and the alpha, 0 … 255.
struct Shade {
    float red;
    float green;
    float blue;
    float alpha;
};

// The colour wash of a theme as a function of the place: the gradient from the top left corner to the bottom
// right one at an opacity of 0.58, and over it a glow of white at 0.12 from the middle of the top edge to
// nothing 900 points away. Inline, so that a row of pixels is computed several at a time.
class BackgroundShade {
public:
    BackgroundShade(BackgroundTheme theme, const QSize& pixels, double devicePixelRatio)
        : BackgroundShade(coloursOf(theme), static_cast<float>(pixels.width()),
                          static_cast<float>(pixels.height()),
                          1 / static_cast<float>(glowRadius * devicePixelRatio)) {}

    // At a place in device pixels from the top left corner; pixels' centres are at halves.
    [[nodiscard]] Shade at(float across, float down) const {
        const float part = (across * width_ + down * height_) * toPart_;
        const float aside = across - width_ / 2;
        const float white =
            glowOpacity * std::max(1 - std::sqrt(aside * aside + down * down) * toGlow_, 0.0F);
        const float light = white * 255;
        const float rest = 1 - white;
        return {red_.at(part) * rest + light, green_.at(part) * rest + light, blue_.at(part) * rest + light,
                gradientOpacity * 255 * rest + light};
    }

private:
    static constexpr float gradientOpacity = 0.58F;
    static constexpr float middleStop = 0.45F;
    static constexpr float glowOpacity = 0.12F;
    static constexpr double glowRadius = 900; // points

    struct Colour {
        float red;
        float green;
        float blue;
    };

    struct ThemeColours {
        Colour top;
        Colour bottom;
    };

    // One component of the gradient, premultiplied, in 0 … 255: a straight line of the part of the way on
    // either side of the middle stop, where the mean of both ends is.
    class Ramp {
    public:
        Ramp(float top, float bottom)
            : start_(top * scale)
            , slope_((bottom - top) / 2 * scale / middleStop)
            , laterSlope_((bottom - top) / 2 * scale / (1 - middleStop) - slope_) {}

        [[nodiscard]] float at(float part) const {
            return start_ + slope_ * part + laterSlope_ * std::max(part - middleStop, 0.0F);
        }

    private:
        static constexpr float scale = gradientOpacity * 255;

        float start_;
        float slope_;
        float laterSlope_; // what the slope changes by from the middle stop on
    };

    BackgroundShade(const ThemeColours& colours, float width, float height, float toGlow)
        : red_(colours.top.red, colours.bottom.red)
        , green_(colours.top.green, colours.bottom.green)
        , blue_(colours.top.blue, colours.bottom.blue)
        , width_(width)
        , height_(height)
        , toPart_(1 / (width * width + height * height))
        , toGlow_(toGlow) {}

    static ThemeColours coloursOf(BackgroundTheme theme) {
        switch (theme) {
        case BackgroundTheme::Purple:
            return {{0.40F, 0.25F, 0.62F}, {0.14F, 0.07F, 0.30F}};
        case BackgroundTheme::Green:
            return {{0.13F, 0.47F, 0.38F}, {0.02F, 0.17F, 0.14F}};
        case BackgroundTheme::Blue:
            break;
        }
        return {{0.18F, 0.35F, 0.63F}, {0.04F, 0.10F, 0.28F}};
    }

    Ramp red_;
    Ramp green_;
    Ramp blue_;
    float width_;
    float height_;
    float toPart_;
    float toGlow_;
};

} // namespace amberquill
