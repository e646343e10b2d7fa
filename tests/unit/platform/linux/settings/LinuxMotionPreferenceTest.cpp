#include "platform/linux/settings/LinuxMotionPreference.h"

#include "MockPortal.h"
#include "platform/linux/queue/EventLoopQueue.h"
#include "support/DconfFiles.h"
#include "support/FixedEnvironment.h"
#include "support/PrivateBus.h"
#include "support/TemporaryTree.h"
#include "support/WaitUntil.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

const PortalKey reducedMotion{u"org.freedesktop.appearance"_s, u"reduced-motion"_s};
const PortalKey enableAnimations{u"org.gnome.desktop.interface"_s, u"enable-animations"_s};

constexpr auto off = "[KDE]\nAnimationDurationFactor=0\n";
constexpr auto on = "[KDE]\nAnimationDurationFactor=1\n";

QByteArray animationsInDconf(bool animations) {
    return dconfDatabase({}, 5, {{"/org/gnome/desktop/interface/enable-animations", animations}});
}

class LinuxMotionPreferenceTest : public testing::Test {
protected:
    void SetUp() override { tree_.makeFolder(""); }

    void make(const char* desktop, const QDBusConnection& bus) {
        preference_ =
            std::make_unique<LinuxMotionPreference>(environmentOf({{"XDG_CONFIG_HOME", tree_.path().toUtf8()},
                                                                   {"XDG_CONFIG_DIRS", "/nowhere"},
                                                                   {"XDG_CURRENT_DESKTOP", desktop}}),
                                                    queue_, [this, bus] {
                                                        ++connections_;
                                                        return bus;
                                                    });
    }

    void follow(const char* desktop, const QDBusConnection& bus) {
        make(desktop, bus);
        preference_->follow([this] { changes_.push_back(preference_->isReduced()); });
    }

    // Writes a temporary file and renames it, like settings programs.
    void replace(const char* name, const QByteArray& content) {
        tree_.write("new", content);
        std::filesystem::rename(tree_.at("new"), tree_.at(name));
    }

    bool becomes(bool reduced) {
        return waitUntil([this, reduced] { return preference_->isReduced() == reduced; });
    }

    TemporaryTree tree_;
    EventLoopQueue queue_;
    std::vector<bool> changes_;
    int connections_ = 0;
    std::unique_ptr<LinuxMotionPreference> preference_;
};

class OnABus : public LinuxMotionPreferenceTest {
protected:
    PrivateBus bus_;
    MockPortal portal_{bus_.connect()};
};

} // namespace

TEST_F(LinuxMotionPreferenceTest, NothingIsReadBeforeItIsFollowedAndFollowingDoesNotBlock) {
    tree_.write("kdeglobals", off);
    make("KDE", noBus());
    EXPECT_EQ(connections_, 0);
    preference_->follow([this] { changes_.push_back(preference_->isReduced()); });
    EXPECT_EQ(connections_, 1);
    EXPECT_FALSE(preference_->isReduced());
    EXPECT_TRUE(becomes(true));
    EXPECT_EQ(changes_, std::vector<bool>({true}));
}

TEST_F(LinuxMotionPreferenceTest, KdesFactorIsFollowed) {
    follow("KDE", noBus());
    replace("kdeglobals", off); // created
    EXPECT_TRUE(becomes(true));
    replace("kdeglobals", on); // replaced
    EXPECT_TRUE(becomes(false));
    tree_.write("kdeglobals", off); // overwritten
    EXPECT_TRUE(becomes(true));
    tree_.remove("kdeglobals"); // removed
    EXPECT_TRUE(becomes(false));
    EXPECT_EQ(changes_, std::vector<bool>({true, false, true, false}));
}

TEST_F(LinuxMotionPreferenceTest, FilesMayBeMissingAtFirst) {
    follow("GNOME", noBus());
    tree_.makeFolder("dconf");
    replace("dconf/user", animationsInDconf(false));
    EXPECT_TRUE(becomes(true));
    replace("dconf/user", animationsInDconf(true));
    EXPECT_TRUE(becomes(false));
}

TEST_F(LinuxMotionPreferenceTest, ItMayBeDestroyedWhileFilesAreRead) {
    tree_.write("kdeglobals", off);
    follow("KDE", noBus());
    preference_.reset();
    bool passed = false;
    queue_.runInBackground([] {}, [&passed] { passed = true; });
    EXPECT_TRUE(waitUntil([&passed] { return passed; }));
    EXPECT_TRUE(changes_.empty());
}

TEST_F(OnABus, ThePortalsSettingsAreFollowed) {
    portal_.set(reducedMotion, 0U);
    portal_.set(enableAnimations, true);
    portal_.appear();
    follow("GNOME", bus_.connect());
    ASSERT_TRUE(waitUntil([this] { return portal_.questions() == 2; }));
    portal_.change(reducedMotion, 1U);
    EXPECT_TRUE(becomes(true));
    portal_.change(reducedMotion, 0U);
    EXPECT_TRUE(becomes(false));
    portal_.change(enableAnimations, false);
    EXPECT_TRUE(becomes(true));
    EXPECT_EQ(changes_, std::vector<bool>({true, false, true}));
}

TEST_F(OnABus, TheFirstAnswerCountsBeforeAnyChange) {
    portal_.set(reducedMotion, 1U);
    portal_.appear();
    follow("sway", bus_.connect());
    EXPECT_TRUE(becomes(true));
}

TEST_F(OnABus, ThePortalOfARestartedBusIsFollowed) {
    portal_.set(reducedMotion, 1U);
    portal_.appear();
    QDBusConnection connection = bus_.connect();
    preference_ = std::make_unique<LinuxMotionPreference>(environmentOf({{"XDG_CONFIG_HOME", "/nowhere"}}),
                                                          queue_, [&connection] { return connection; });
    preference_->follow([] {});
    EXPECT_TRUE(becomes(true));
    bus_.stop();
    bus_.startAgain();
    MockPortal another(bus_.connect());
    another.set(reducedMotion, 0U);
    another.appear();
    connection = bus_.connect();
    preference_->busCameBack();
    EXPECT_TRUE(becomes(false));
    another.change(reducedMotion, 1U);
    EXPECT_TRUE(becomes(true));
}

TEST_F(OnABus, WithAHangingPortalTheFilesCount) {
    portal_.hang();
    portal_.appear();
    tree_.write("dconf/user", animationsInDconf(false));
    follow("GNOME", bus_.connect());
    EXPECT_TRUE(becomes(true));
}

TEST_F(OnABus, AnswersOfAnotherTypeAreIgnored) {
    portal_.set(reducedMotion, u"1"_s);
    portal_.set(enableAnimations, 0);
    portal_.appear();
    follow("GNOME", bus_.connect());
    ASSERT_TRUE(waitUntil([this] { return portal_.questions() == 2; }));
    portal_.change(reducedMotion, 2U);
    portal_.change(enableAnimations, QStringList{u"false"_s});
    // Changes come in order, so those before this one have been taken.
    portal_.change(enableAnimations, false);
    EXPECT_TRUE(becomes(true));
    portal_.change(enableAnimations, 0.0);
    EXPECT_TRUE(becomes(false));
    EXPECT_EQ(changes_, std::vector<bool>({true, false}));
}
