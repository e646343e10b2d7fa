#include "platform/linux/files/JsonPreferences.h"

#include "platform/linux/files/PosixFileSystem.h"
#include "support/ManualQueue.h"
#include "support/MemoryFileSystem.h"
#include "support/TemporaryTree.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

const QString path = u"/config/preferences.json"_s;
const QString asidePath = u"/config/preferences.json.unreadable-1"_s;

class JsonPreferencesTest : public testing::Test {
protected:
    JsonPreferences preferencesOf(const QByteArray& content) {
        files_.addFile(path, content);
        return {files_, path};
    }

    // The file's content after all writes.
    [[nodiscard]] QJsonObject written() {
        queue_.runPosted();
        return QJsonDocument::fromJson(files_.file(path).value_or(QByteArray())).object();
    }

    ManualQueue queue_;
    MemoryFileSystem files_;
};

} // namespace

TEST_F(JsonPreferencesTest, EachTypeIsRead) {
    const JsonPreferences preferences =
        preferencesOf(R"({"i": 42, "n": -7, "b": true, "f": false, "s": "text"})");
    EXPECT_EQ(preferences.integer(u"i"_s), 42);
    EXPECT_EQ(preferences.integer(u"n"_s), -7);
    EXPECT_EQ(preferences.boolean(u"b"_s), true);
    EXPECT_EQ(preferences.boolean(u"f"_s), false);
    EXPECT_EQ(preferences.string(u"s"_s), u"text"_s);
}

TEST_F(JsonPreferencesTest, AValueOfAnotherTypeIsReadAsAbsent) {
    const JsonPreferences preferences =
        preferencesOf(R"({"i": 1, "b": true, "s": "1", "null": null, "list": [1], "object": {"i": 1}})");
    for (const QString& key : {u"b"_s, u"s"_s, u"null"_s, u"list"_s, u"object"_s, u"missing"_s}) {
        EXPECT_EQ(preferences.integer(key), std::nullopt) << key.toStdString();
    }
    for (const QString& key : {u"i"_s, u"s"_s, u"null"_s, u"list"_s, u"object"_s, u"missing"_s}) {
        EXPECT_EQ(preferences.boolean(key), std::nullopt) << key.toStdString();
    }
    for (const QString& key : {u"i"_s, u"b"_s, u"null"_s, u"list"_s, u"object"_s, u"missing"_s}) {
        EXPECT_EQ(preferences.string(key), std::nullopt) << key.toStdString();
    }
}

TEST_F(JsonPreferencesTest, OnlyWholeNumbersInRangeAreIntegers) {
    const JsonPreferences preferences = preferencesOf(
        R"({"half": 1.5, "whole": 3.0, "max": 2147483647, "over": 2147483648, "min": -2147483648,
            "under": -2147483649, "huge": 1e300, "long": 9223372036854775807, "tiny": 1e-300})");
    EXPECT_EQ(preferences.integer(u"whole"_s), 3);
    EXPECT_EQ(preferences.integer(u"max"_s), 2147483647);
    EXPECT_EQ(preferences.integer(u"min"_s), -2147483647 - 1);
    for (const QString& key : {u"half"_s, u"over"_s, u"under"_s, u"huge"_s, u"long"_s, u"tiny"_s}) {
        EXPECT_EQ(preferences.integer(key), std::nullopt) << key.toStdString();
    }
}

TEST_F(JsonPreferencesTest, ALateFileIsNotWrittenEarlyAndValuesSetBeforeTakePrecedence) {
    const QByteArray stored = R"({"i": 1, "kept": 2, "removed": 3})";
    files_.addFile(path, stored);
    JsonPreferences preferences(files_, path, std::nullopt);
    EXPECT_EQ(preferences.integer(u"i"_s), std::nullopt);
    preferences.setInteger(u"before"_s, 4);
    preferences.writeOn(queue_);
    preferences.setInteger(u"i"_s, 5);
    preferences.remove(u"removed"_s);
    EXPECT_EQ(preferences.integer(u"i"_s), 5);
    queue_.runPosted();
    preferences.flush();
    EXPECT_EQ(files_.file(path), stored);
    preferences.takeLate(JsonPreferences::read(files_, path));
    EXPECT_EQ(preferences.integer(u"i"_s), 5);
    EXPECT_EQ(preferences.integer(u"kept"_s), 2);
    EXPECT_EQ(written(), (QJsonObject{{u"before"_s, 4}, {u"i"_s, 5}, {u"kept"_s, 2}}));
    EXPECT_EQ(files_.file(asidePath), std::nullopt) << "a file that was read needs no copy";
}

TEST_F(JsonPreferencesTest, ALateFileIsNotWrittenIfNothingWasSet) {
    const QByteArray stored = R"({"i": 1})";
    files_.addFile(path, stored);
    JsonPreferences preferences(files_, path, std::nullopt);
    preferences.writeOn(queue_);
    preferences.remove(u"not there"_s);
    preferences.takeLate(JsonPreferences::read(files_, path));
    EXPECT_EQ(preferences.integer(u"i"_s), 1);
    queue_.runPosted();
    EXPECT_EQ(files_.file(path), stored);
}

TEST_F(JsonPreferencesTest, ALateUnreadableFileIsSetAside) {
    files_.addFile(path, "[1]");
    JsonPreferences preferences(files_, path, std::nullopt);
    preferences.writeOn(queue_);
    preferences.setInteger(u"i"_s, 5);
    preferences.takeLate(JsonPreferences::read(files_, path));
    EXPECT_EQ(written(), (QJsonObject{{u"i"_s, 5}}));
    EXPECT_EQ(files_.file(asidePath), "[1]");
}

TEST_F(JsonPreferencesTest, ASetValueIsReadBackAtOnceAndWrittenLaterWithTheOthers) {
    JsonPreferences preferences(files_, path);
    preferences.writeOn(queue_);
    preferences.setInteger(u"i"_s, 5);
    preferences.setBoolean(u"b"_s, false);
    preferences.setString(u"s"_s, u"größer"_s);
    EXPECT_EQ(preferences.integer(u"i"_s), 5);
    EXPECT_EQ(files_.writes(), 0);
    queue_.runPosted();
    EXPECT_EQ(files_.writes(), 1);

    const JsonPreferences later(files_, path);
    EXPECT_EQ(later.integer(u"i"_s), 5);
    EXPECT_EQ(later.boolean(u"b"_s), false);
    EXPECT_EQ(later.string(u"s"_s), u"größer"_s);
}

TEST_F(JsonPreferencesTest, AFlushWritesAtOnce) {
    JsonPreferences preferences(files_, path);
    preferences.writeOn(queue_);
    preferences.setInteger(u"i"_s, 5);
    preferences.flush();
    EXPECT_EQ(JsonPreferences(files_, path).integer(u"i"_s), 5);
}

TEST_F(JsonPreferencesTest, ValuesSetBeforeTheQueueExistsAreWrittenOnceItDoes) {
    JsonPreferences preferences(files_, path);
    preferences.setInteger(u"i"_s, 5);
    preferences.flush();
    EXPECT_EQ(files_.writes(), 0);
    preferences.writeOn(queue_);
    EXPECT_EQ(written(), (QJsonObject{{u"i"_s, 5}}));
}

TEST_F(JsonPreferencesTest, AFileThatCannotBeSetAsideStaysUntilItCan) {
    JsonPreferences preferences = preferencesOf("{\"i\": 1");
    preferences.writeOn(queue_);
    files_.refuseSettingAside(true);
    preferences.setInteger(u"i"_s, 5);
    queue_.advance(3600);
    preferences.flush();
    EXPECT_EQ(files_.file(path), "{\"i\": 1");
    files_.refuseSettingAside(false);
    queue_.advance(300);
    EXPECT_EQ(written(), (QJsonObject{{u"i"_s, 5}}));
    EXPECT_EQ(files_.file(asidePath), "{\"i\": 1");
}

TEST_F(JsonPreferencesTest, AValueOfAnotherTypeIsReplaced) {
    JsonPreferences preferences = preferencesOf(R"({"key": "text"})");
    preferences.writeOn(queue_);
    preferences.setInteger(u"key"_s, 1);
    EXPECT_EQ(preferences.integer(u"key"_s), 1);
    EXPECT_EQ(preferences.string(u"key"_s), std::nullopt);
}

TEST_F(JsonPreferencesTest, UnknownKeysAreKept) {
    JsonPreferences preferences =
        preferencesOf(R"({"later": {"deep": [1, 2.5, "x", null]}, "long": 9007199254740993, "known": 1})");
    preferences.writeOn(queue_);
    preferences.setInteger(u"known"_s, 2);
    const QJsonObject object = written();
    EXPECT_EQ(object.value(u"known"_s).toInt(), 2);
    EXPECT_EQ(object.value(u"long"_s).toInteger(), 9007199254740993);
    EXPECT_EQ(object.value(u"later"_s).toObject().value(u"deep"_s).toArray(),
              (QJsonArray{1, 2.5, u"x"_s, QJsonValue::Null}));
    EXPECT_EQ(files_.file(asidePath), std::nullopt);
}

TEST_F(JsonPreferencesTest, AMissingFileGivesDefaultsAndIsNotSetAside) {
    JsonPreferences preferences(files_, path);
    preferences.writeOn(queue_);
    EXPECT_EQ(preferences.integer(u"i"_s), std::nullopt);
    EXPECT_EQ(files_.writes(), 0);
    preferences.setInteger(u"i"_s, 1);
    queue_.runPosted();
    EXPECT_EQ(files_.paths(), QStringList{path});
}

TEST_F(JsonPreferencesTest, AnUnreadableFileGivesDefaultsAndIsSetAsideBeforeTheFirstWrite) {
    const QByteArray oversize = R"({"i": 1, "pad": ")" + QByteArray(qsizetype{1024} * 1024, 'x') + R"("})";
    const QByteArray deep = QByteArray(2000, '[') + QByteArray(2000, ']');
    for (const QByteArray& broken :
         {QByteArray(), "{\"i\": 1"_ba, "[1]"_ba, "\"text\""_ba, "17"_ba, "not JSON"_ba, "{\"i\": 1} {}"_ba,
          "{\"i\": 1, \"s\": \"\xFF\"}"_ba, deep, oversize}) {
        MemoryFileSystem files;
        files.addFile(path, broken);
        JsonPreferences preferences(files, path);
        preferences.writeOn(queue_);
        EXPECT_EQ(preferences.integer(u"i"_s), std::nullopt) << broken.left(30).toStdString();
        EXPECT_EQ(files.file(path), broken); // untouched until a value is set
        preferences.setInteger(u"other"_s, 2);
        preferences.flush();
        preferences.setInteger(u"other"_s, 3);
        preferences.flush();
        EXPECT_EQ(files.file(asidePath), broken) << broken.left(30).toStdString();
        EXPECT_EQ(JsonPreferences(files, path).integer(u"other"_s), 3);
        EXPECT_EQ(files.paths().size(), 2);
    }
}

TEST_F(JsonPreferencesTest, AValueThatCannotBeWrittenIsKeptAndWrittenWithTheNext) {
    JsonPreferences preferences(files_, path);
    preferences.writeOn(queue_);
    files_.refuseWrites(true);
    preferences.setInteger(u"first"_s, 1);
    queue_.runPosted();
    EXPECT_EQ(preferences.integer(u"first"_s), 1);
    EXPECT_EQ(files_.paths(), QStringList());
    files_.refuseWrites(false);
    preferences.setBoolean(u"second"_s, true);
    EXPECT_EQ(written(), (QJsonObject{{u"first"_s, 1}, {u"second"_s, true}}));
}

TEST_F(JsonPreferencesTest, OnDiskTheFolderIsMadeAndTheBrokenFileIsKept) {
    const TemporaryTree tree;
    PosixFileSystem files;
    const auto set = [&](const QString& key) {
        JsonPreferences preferences(files, tree.path("Amberquill/preferences.json"));
        preferences.writeOn(queue_);
        preferences.setInteger(key, 1);
        preferences.flush();
    };
    set(u"i"_s);
    EXPECT_EQ(QJsonDocument::fromJson(tree.read("Amberquill/preferences.json")).object(),
              (QJsonObject{{u"i"_s, 1}}));
    tree.write("Amberquill/preferences.json", "{");
    set(u"i"_s);
    EXPECT_EQ(tree.read("Amberquill/preferences.json.unreadable-1"), "{");
}

TEST_F(JsonPreferencesTest, OnlyAListOfTextsIsReadAsAList) {
    const JsonPreferences preferences =
        preferencesOf(R"({"texts": ["ja", "en"], "none": [], "mixed": ["ja", 1], "text": "ja"})");
    EXPECT_EQ(preferences.stringList(u"texts"_s), (QStringList{u"ja"_s, u"en"_s}));
    EXPECT_EQ(preferences.stringList(u"none"_s), QStringList());
    for (const QString& key : {u"mixed"_s, u"text"_s, u"missing"_s}) {
        EXPECT_EQ(preferences.stringList(key), std::nullopt) << key.toStdString();
    }
}

TEST_F(JsonPreferencesTest, AListIsWrittenAndARemovedKeyIsNotInTheFile) {
    JsonPreferences preferences = preferencesOf(R"({"other": 1})");
    preferences.writeOn(queue_);
    preferences.setStringList(u"list"_s, {u"ja"_s});
    EXPECT_EQ(written(), (QJsonObject{{u"other"_s, 1}, {u"list"_s, QJsonArray{u"ja"_s}}}));
    preferences.remove(u"list"_s);
    EXPECT_EQ(written(), (QJsonObject{{u"other"_s, 1}}));
    EXPECT_EQ(preferences.stringList(u"list"_s), std::nullopt);
}

TEST_F(JsonPreferencesTest, UnchangedContentIsNotWritten) {
    JsonPreferences preferences = preferencesOf(R"({"i": 1, "s": "x", "list": ["a"]})");
    preferences.writeOn(queue_);
    preferences.setInteger(u"i"_s, 1);
    preferences.setString(u"s"_s, u"x"_s);
    preferences.setStringList(u"list"_s, {u"a"_s});
    preferences.remove(u"missing"_s);
    queue_.runPosted();
    EXPECT_EQ(files_.writes(), 0);
    preferences.setInteger(u"i"_s, 2);
    queue_.runPosted();
    EXPECT_EQ(files_.writes(), 1);
}

TEST_F(JsonPreferencesTest, AValueThatCouldNotBeWrittenIsTriedAgain) {
    JsonPreferences preferences = preferencesOf(R"({"i": 1})");
    preferences.writeOn(queue_);
    files_.refuseWrites(true);
    preferences.setInteger(u"i"_s, 2);
    queue_.runPosted();
    files_.refuseWrites(false);
    preferences.setInteger(u"i"_s, 2);
    EXPECT_EQ(written(), (QJsonObject{{u"i"_s, 2}}));
}
