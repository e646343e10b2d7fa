#include "platform/linux/applications/icons/UndecodableFiles.h"

#include <gtest/gtest.h>

using namespace amberquill::desktop;

namespace {

FileState fileNumber(std::size_t number) {
    return {.path = "/icons/" + std::to_string(number), .modified = 1, .size = 2};
}

UndecodableList writtenAndRead(const UndecodableList& list) {
    return UndecodableList::read(list.written("1"), "1");
}

} // namespace

TEST(UndecodableList, AFileIsInItUntilItChanges) {
    UndecodableList list;
    EXPECT_FALSE(list.contains(fileNumber(1)));
    list.put(fileNumber(1));
    EXPECT_TRUE(list.contains(fileNumber(1)));
    EXPECT_FALSE(list.contains(fileNumber(2)));
    auto changed = fileNumber(1);
    changed.modified = 5;
    EXPECT_FALSE(list.contains(changed));
    list.put(changed);
    EXPECT_TRUE(list.contains(changed));
    EXPECT_FALSE(list.contains(fileNumber(1)));
}

TEST(UndecodableList, WhatIsWrittenIsRead) {
    UndecodableList list;
    const std::vector<FileState> files{
        {.path = "/a b\n\xFF%20/ü.svg", .modified = -1, .size = 0},
        {.path = "/" + std::string(4000, 'x'), .modified = 1'700'000'000'123'456'789, .size = 8}};
    for (const auto& file : files) {
        list.put(file);
    }
    for (const auto& file : files) {
        EXPECT_TRUE(writtenAndRead(list).contains(file)) << file.path;
    }
    EXPECT_EQ(list.written("1").count('\n'), 3);
}

TEST(UndecodableList, AnotherVersionsListIsEmpty) {
    UndecodableList list;
    list.put(fileNumber(1));
    EXPECT_FALSE(UndecodableList::read(list.written("1"), "2").contains(fileNumber(1)));
    EXPECT_FALSE(UndecodableList::read(list.written("1"), "").contains(fileNumber(1)));
    EXPECT_FALSE(UndecodableList::read(list.written("11"), "1").contains(fileNumber(1)));
}

TEST(UndecodableList, OfTooManyTheOldestGo) {
    UndecodableList list;
    for (std::size_t i = 0; i <= UndecodableList::maximumFiles; ++i) {
        list.put(fileNumber(i));
    }
    EXPECT_FALSE(list.contains(fileNumber(0)));
    EXPECT_TRUE(list.contains(fileNumber(1)));
    EXPECT_TRUE(writtenAndRead(list).contains(fileNumber(1)));
    list.put(fileNumber(1)); // the newest now
    list.put(fileNumber(0));
    EXPECT_TRUE(list.contains(fileNumber(1)));
    EXPECT_FALSE(list.contains(fileNumber(2)));
}

TEST(UndecodableList, ItsTextIsNeverTooLong) {
    UndecodableList list;
    for (std::size_t i = 0; i < UndecodableList::maximumFiles; ++i) {
        auto file = fileNumber(i);
        file.path += std::string(4000, '\x01');
        list.put(file);
    }
    auto tooLong = fileNumber(1000);
    tooLong.path += std::string(5000, 'x');
    list.put(tooLong);
    EXPECT_FALSE(list.contains(tooLong));
    const auto text = list.written("1");
    EXPECT_LE(text.size(), UndecodableList::maximumBytes);
    EXPECT_GT(text.size(), UndecodableList::maximumBytes - 20'000);
    auto newest = fileNumber(UndecodableList::maximumFiles - 1);
    newest.path += std::string(4000, '\x01');
    EXPECT_TRUE(UndecodableList::read(text, "1").contains(newest));
}

TEST(UndecodableList, ANonsensicalTextGivesWhatMakesSense) {
    const auto heading = UndecodableList().written("1");
    for (const QByteArray& text :
         {QByteArray(), QByteArray(100'000, '\xFF'), QByteArray(100'000, '\n'), QByteArray("1 2 /icons/1\n"),
          heading + "1 2\n", heading + "1 2 icons/1\n", heading + "x 2 /icons/1\n",
          heading + "1 x /icons/1\n", heading + "1 2 /icons/1 3\n",
          heading + "99999999999999999999 2 /icons/1\n",
          heading + QByteArray(heading.size() + UndecodableList::maximumBytes, '\n') + "1 2 /icons/1\n"}) {
        EXPECT_EQ(UndecodableList::read(text, "1").written("1"), heading) << text.left(200).toStdString();
    }
    EXPECT_TRUE(UndecodableList::read(heading + "nonsense\n\n1 2 /icons/1", "1").contains(fileNumber(1)));
}
