#include "platform/linux/applications/entries/EntryIndex.h"

#include <gtest/gtest.h>

using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

const DataFolders folders{{u"/a/applications/share"_s, u"/usr/share"_s}};

} // namespace

TEST(ApplicationId, IsThePathBelowTheApplicationFolderWithDashes) {
    EXPECT_EQ(applicationIdFor(u"/usr/share/applications/org.example.Calc.desktop"_s, folders),
              u"org.example.Calc"_s);
    EXPECT_EQ(applicationIdFor(u"/usr/share/applications/kde/calc.desktop"_s, folders), u"kde-calc"_s);
}

TEST(ApplicationId, TheFolderOfApplicationsMayStandInThePathMoreThanOnce) {
    EXPECT_EQ(applicationIdFor(u"/a/applications/share/applications/applications/x.desktop"_s, folders),
              u"applications-x"_s);
}

TEST(ApplicationId, ElsewhereItIsTheName) {
    EXPECT_EQ(applicationIdFor(u"/home/u/Desktop/calc.desktop"_s, folders), u"calc"_s);
}

TEST(ApplicationId, WhatIsNoDesktopFileHasNone) {
    EXPECT_EQ(applicationIdFor(u"/usr/share/applications/Calc.app"_s, folders), QString());
    EXPECT_EQ(applicationIdFor({}, folders), QString());
}
