#pragma once

#include "ViewStage.h"
#include "views/BackgroundWash.h"

#include <gtest/gtest.h>

namespace amberquill {

// The views in a window as large as the test's parameter.
class RootViewFixture : public testing::TestWithParam<QSize>, protected ViewStage {
protected:
    void SetUp() override { begin(GetParam()); }
    void TearDown() override { end(); }
};

inline testing::AssertionResult isAbout(const QColor& colour, const QColor& wanted, int tolerance = 2) {
    if (std::abs(colour.red() - wanted.red()) <= tolerance &&
        std::abs(colour.green() - wanted.green()) <= tolerance &&
        std::abs(colour.blue() - wanted.blue()) <= tolerance) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << colour.name().toStdString() << " instead of " << wanted.name().toStdString();
}

// A translucent white over a colour.
inline QColor lightened(const QColor& colour, double white) {
    const auto mix = [white](int component) {
        return static_cast<int>(std::lround(component * (1 - white) + 255 * white));
    };
    return {mix(colour.red()), mix(colour.green()), mix(colour.blue())};
}

} // namespace amberquill
