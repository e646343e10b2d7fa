#include "updates/updater/Signature.h"

#include "support/SigningKey.h"

#include <gtest/gtest.h>

using namespace amberquill;

namespace {

template<typename Bytes>
Bytes fromHex(const char* hex) {
    const QByteArray decoded = QByteArray::fromHex(hex);
    Bytes bytes = {};
    EXPECT_EQ(static_cast<std::size_t>(decoded.size()), bytes.size());
    std::copy(decoded.cbegin(), decoded.cend(), bytes.begin());
    return bytes;
}

} // namespace

TEST(Signature, TheExampleOfTheStandardIsValid) {
    // RFC 8032, section 7.1, test 3
    const auto key = fromHex<PublicKey>("fc51cd8e6218a1a38da47ed00230f0580816ed13ba3303ac5deb911548908025");
    const auto signature =
        fromHex<Signature>("6291d657deec24024827e69c3abe01a30ce548a284743a445e3680d7db5ac3ac"
                           "18ff9b538d16f290ae67f760984dc6594a7c15e9716ed28dc027beceea1ec40a");
    EXPECT_TRUE(isSignedBy(key, QByteArray::fromHex("af82"), signature));
    EXPECT_FALSE(isSignedBy(key, QByteArray::fromHex("af83"), signature));
}

TEST(Signature, IsValidOnlyForItsBytesAndItsKey) {
    const SigningKey key(1);
    const SigningKey other(2);
    const QByteArray bytes = "a program";
    EXPECT_TRUE(isSignedBy(key.publicKey(), bytes, key.sign(bytes)));
    EXPECT_FALSE(isSignedBy(other.publicKey(), bytes, key.sign(bytes)));
    EXPECT_FALSE(isSignedBy(key.publicKey(), bytes + ' ', key.sign(bytes)));
    EXPECT_FALSE(isSignedBy(key.publicKey(), {}, key.sign(bytes)));
    Signature flipped = key.sign(bytes);
    flipped.back() ^= 1U;
    EXPECT_FALSE(isSignedBy(key.publicKey(), bytes, flipped));
}

TEST(Signature, ZerosAreNotValidForAKeyOfZeros) {
    EXPECT_FALSE(isSignedBy(PublicKey{}, QByteArray("a program"), Signature{}));
}

TEST(Signature, IsReadFromBase64) {
    const SigningKey key;
    const QByteArray bytes = "a program";
    EXPECT_EQ(readPublicKey(key.publicKeyText()), key.publicKey());
    EXPECT_EQ(readPublicKey(QStringLiteral("\n ") + key.publicKeyText() + QStringLiteral(" ")),
              key.publicKey());
    EXPECT_EQ(readSignature(key.signatureText(bytes)), key.sign(bytes));
}

TEST(Signature, OfAWrongLengthOrOtherCharactersIsInvalid) {
    const QString key = SigningKey().publicKeyText();
    EXPECT_EQ(readPublicKey(QString()), std::nullopt);
    EXPECT_EQ(readPublicKey(key.chopped(4)), std::nullopt);
    EXPECT_EQ(readPublicKey(key + key), std::nullopt);
    EXPECT_EQ(readPublicKey(QString(key).replace(3, 1, QStringLiteral("*"))), std::nullopt);
    EXPECT_EQ(readPublicKey(QString(key).replace(3, 1, QChar(0x4E2D))), std::nullopt);
    EXPECT_EQ(readSignature(key), std::nullopt);
}
