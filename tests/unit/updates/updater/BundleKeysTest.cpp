#include "updates/updater/BundleKeys.h"

#include "platform/MainBundle.h"
#include "support/SigningKey.h"

#include <QHash>
#include <gtest/gtest.h>

using namespace amberquill;

namespace {

class FixedBundle final : public MainBundle {
public:
    explicit FixedBundle(QHash<QString, QString> texts)
        : texts_(std::move(texts)) {}

    [[nodiscard]] std::optional<QString> text(const QString& key) const override {
        const auto found = texts_.constFind(key);
        return found == texts_.constEnd() ? std::nullopt : std::optional(*found);
    }

private:
    QHash<QString, QString> texts_;
};

} // namespace

TEST(BundleKeys, AreReadFromTheBundle) {
    const SigningKey key;
    const auto keys = readBundleKeys(
        FixedBundle({{QStringLiteral("CFBundleVersion"), QStringLiteral("42")},
                     {QStringLiteral("CFBundleShortVersionString"), QStringLiteral("1.2")},
                     {QStringLiteral("SUFeedURL"), QStringLiteral("https://example.org/feed?a=b")},
                     {QStringLiteral("SUPublicEDKey"), key.publicKeyText()}}));
    EXPECT_EQ(keys.version, QStringLiteral("42"));
    EXPECT_EQ(keys.shownVersion, QStringLiteral("1.2"));
    EXPECT_EQ(keys.feedAddress, QUrl(QStringLiteral("https://example.org/feed?a=b")));
    EXPECT_EQ(keys.publicKey, key.publicKey());
}

TEST(BundleKeys, AreMissingWithoutABundle) {
    const auto keys = readBundleKeys(NullMainBundle());
    EXPECT_EQ(keys.shownVersion, QStringLiteral("0"));
    EXPECT_EQ(keys.version, QStringLiteral("0"));
    EXPECT_EQ(keys.feedAddress, std::nullopt);
    EXPECT_EQ(keys.publicKey, std::nullopt);
}

TEST(BundleKeys, TheShownVersionIsComparedIfThereIsNoOther) {
    const auto keys =
        readBundleKeys(FixedBundle({{QStringLiteral("CFBundleShortVersionString"), QStringLiteral("1.2")}}));
    EXPECT_EQ(keys.version, QStringLiteral("1.2"));
}

TEST(BundleKeys, AnInvalidFeedAddressIsIgnored) {
    for (const char* const text : {"", " ", "feed.xml", "//example.org/feed", "https://a b/", "https://[/"}) {
        const auto keys =
            readBundleKeys(FixedBundle({{QStringLiteral("SUFeedURL"), QString::fromLatin1(text)}}));
        EXPECT_EQ(keys.feedAddress, std::nullopt) << text;
    }
}

TEST(BundleKeys, AnInvalidPublicKeyIsIgnored) {
    const auto keys =
        readBundleKeys(FixedBundle({{QStringLiteral("SUPublicEDKey"), QStringLiteral("c2hvcnQ=")}}));
    EXPECT_EQ(keys.publicKey, std::nullopt);
}
