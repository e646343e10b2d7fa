#include "data/RememberedItem.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

std::vector<RememberedItem> somePlaces() {
    const QUuid folder = QUuid::fromString(u"3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s);
    const std::chrono::sys_seconds since{std::chrono::seconds(1'700'000'000)};
    return {
        {.id = folderItemId(folder), .folderName = u"Ga\"mes/"_s, .after = {}, .index = 0, .since = since},
        {.id = u"a:/x.app"_s, .after = u"a:/w.app"_s, .before = u"a:/y.app"_s, .index = 3, .since = since},
        {.id = u"a:/z.app"_s, .folder = folder, .after = u"a:/w.app"_s, .index = 1, .since = since}};
}

} // namespace

TEST(RememberedItem, PlacesAreReadBackUnchanged) {
    EXPECT_EQ(decodePlaces(encodePlaces(somePlaces())), somePlaces());
    EXPECT_EQ(decodePlaces(encodePlaces({})), std::vector<RememberedItem>());
}

TEST(RememberedItem, TheTextHasTheDocumentedForm) {
    EXPECT_EQ(encodePlaces({somePlaces()[1]}),
              R"({"places":[{"app":"\/x.app","after":"a:\/w.app","before":"a:\/y.app","index":3,)"
              R"("since":"2023-11-14T22:13:20Z"}]})");
}

TEST(RememberedItem, AnyOtherTextIsRefused) {
    const QByteArray whole = encodePlaces(somePlaces());
    for (const QByteArray& text :
         {QByteArray(), QByteArray("[]"), QByteArray("{}"), QByteArray("7"), whole + "x", whole.chopped(1)}) {
        EXPECT_EQ(decodePlaces(text), std::nullopt) << text.constData();
    }
}

TEST(RememberedItem, InvalidPlacesAreSkipped) {
    const char* const text =
        R"({"places":[{"app":"/a","since":"yesterday"},{"app":"/b"},{"since":"2023-11-14T22:13:20Z"},7,[],
           {"folder":"no","since":"2023-11-14T22:13:20Z"},{"app":"","since":"2023-11-14T22:13:20Z"},
           {"app":"/c","in":"no","since":"2023-11-14T22:13:20Z"},
           {"folder":"3F2504E0-4F89-11D3-9A0C-0305E82C3301","in":"3F2504E0-4F89-11D3-9A0C-0305E82C3301",
            "since":"2023-11-14T22:13:20Z"},
           {"app":"/good","index":"x","more":{},"after":3,"since":"2023-11-14T22:13:20Z"}]})";
    const auto places = decodePlaces(text);
    ASSERT_TRUE(places);
    ASSERT_EQ(places->size(), 1U);
    EXPECT_EQ(places->front().id, u"a:/good");
}
