#include "platform/linux/applications/icons/workers/WorkerProgram.h"

#include "support/FixedEnvironment.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

TEST(InstalledWorkerProgram, ItIsBesideTheLauncherOrInTheInstalledFolder) {
    const auto program = installedWorkerProgram(u"/mnt/image/usr/bin/amberquill"_s, environmentOf({}));
    ASSERT_EQ(program.paths.size(), 2U);
    EXPECT_EQ(program.paths[0], "/mnt/image/usr/bin/amberquill-icons");
    EXPECT_EQ(program.paths[1], "/mnt/image/usr/libexec/amberquill-icons");
    EXPECT_TRUE(program.environment.empty());
}

TEST(InstalledWorkerProgram, ItIsNotInTheWorkingDirectory) {
    EXPECT_TRUE(installedWorkerProgram({}, environmentOf({})).paths.empty());
}

TEST(InstalledWorkerProgram, ItsEnvironmentHasFontsLanguageAndLibrariesOnly) {
    const auto program = installedWorkerProgram(
        u"/usr/bin/amberquill"_s, environmentOf({{"HOME", "/home/user"},
                                                 {"LANG", "de_DE.UTF-8"},
                                                 {"GDK_PIXBUF_MODULE_FILE", "/mnt/image/loaders.cache"},
                                                 {"SECRET", "x"},
                                                 {"DISPLAY", ":0"}}));
    EXPECT_EQ(program.environment,
              (std::vector<std::string>{"HOME=/home/user", "LANG=de_DE.UTF-8",
                                        "GDK_PIXBUF_MODULE_FILE=/mnt/image/loaders.cache"}));
}
