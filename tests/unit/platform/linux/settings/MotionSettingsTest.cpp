#include "platform/linux/settings/MotionSettings.h"

#include "support/DconfFiles.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

QByteArray dconfWithAnimations(bool animations) {
    return dconfDatabase({}, 5, {{"/org/gnome/desktop/interface/enable-animations", animations}});
}

// Reads AnimationDurationFactor from a file with this value.
std::optional<double> factor(const QByteArray& value) {
    const TemporaryTree tree;
    tree.write("kdeglobals", "[KDE]\nAnimationDurationFactor=" + value + "\n");
    return readMotionFiles({tree.path()}).durationFactor;
}

} // namespace

TEST(LessMotion, IsOffByDefault) {
    EXPECT_FALSE(asksForLessMotion({}));
    EXPECT_FALSE(asksForLessMotion({.isKde = true}));
}

TEST(LessMotion, TheSettingOfAllDesktopsCountsOnEachOfThem) {
    EXPECT_TRUE(asksForLessMotion({.portalReducedMotion = true}));
    EXPECT_TRUE(asksForLessMotion({.isKde = true, .files = {{}, 1}, .portalReducedMotion = true}));
    EXPECT_TRUE(asksForLessMotion({.portalReducedMotion = false, .portalAnimations = false}))
        << "no preference there is none against";
}

TEST(LessMotion, IsOnWhenAnimationsAreOff) {
    EXPECT_TRUE(asksForLessMotion({.portalAnimations = false}));
    EXPECT_TRUE(asksForLessMotion({.files = {false, {}}}));
    EXPECT_FALSE(asksForLessMotion({.files = {true, {}}, .portalAnimations = true}));
}

TEST(LessMotion, ThePortalOverridesTheFile) {
    EXPECT_FALSE(asksForLessMotion({.files = {false, {}}, .portalAnimations = true}));
    EXPECT_TRUE(asksForLessMotion({.files = {true, {}}, .portalAnimations = false}));
}

TEST(LessMotion, OnKdeItsOwnFactorCountsAlone) {
    EXPECT_TRUE(asksForLessMotion({.isKde = true, .files = {{}, 0}}));
    EXPECT_FALSE(asksForLessMotion({.isKde = true, .files = {{}, 0.25}}));
    EXPECT_FALSE(asksForLessMotion({.isKde = true, .files = {false, 1}, .portalAnimations = false}));
    EXPECT_FALSE(asksForLessMotion({.files = {{}, 0}})) << "left behind by an earlier desktop";
}

TEST(MotionFiles, AreReadFromDconfAndKdeglobals) {
    const TemporaryTree tree;
    const QStringList configuration{tree.path("own"), tree.path("system")};
    EXPECT_EQ(readMotionFiles(configuration), MotionFiles());
    tree.write("own/dconf/user", dconfWithAnimations(false));
    tree.write("system/kdeglobals", "[KDE]\nAnimationDurationFactor=0.5\n");
    EXPECT_EQ(readMotionFiles(configuration), (MotionFiles{false, 0.5}));
    tree.write("own/kdedefaults/kdeglobals", "[KDE]\nAnimationDurationFactor=0.25\n");
    EXPECT_EQ(readMotionFiles(configuration).durationFactor, 0.25);
    tree.write("own/kdeglobals", "[General]\nAnimationDurationFactor=3\n[KDE]\nAnimationDurationFactor=0\n");
    EXPECT_EQ(readMotionFiles(configuration).durationFactor, 0);
    tree.write("own/dconf/user", dconfWithAnimations(true));
    EXPECT_EQ(readMotionFiles(configuration).animations, true);
}

TEST(MotionFiles, AFactorThatIsNotANumberIsIgnored) {
    EXPECT_EQ(factor("0.125"), 0.125);
    for (const auto* const value : {"", "fast", "nan", "inf", "-inf", "0x", "1,5"}) {
        EXPECT_EQ(factor(value), std::nullopt) << value;
    }
}

TEST(MotionFiles, BrokenFilesAreIgnored) {
    const TemporaryTree tree;
    tree.write("dconf/user", "GVariant" + QByteArray(100, '\xFF'));
    tree.makeFolder("kdeglobals");
    tree.write("kdedefaults/kdeglobals", QByteArray(5 * 1024 * 1024, '['));
    EXPECT_EQ(readMotionFiles({tree.path()}), MotionFiles());
}
