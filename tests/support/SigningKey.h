#pragma once

#include "updates/updater/Signature.h"

#include <QByteArray>
#include <QString>
#include <algorithm>
#include <sodium.h>

namespace amberquill {

// A key pair for tests: the same number always gives the same pair.
class SigningKey {
public:
    explicit SigningKey(unsigned char number = 1) {
        std::array<unsigned char, crypto_sign_SEEDBYTES> seed = {};
        seed.fill(number);
        crypto_sign_seed_keypair(publicKey_.data(), secretKey_.data(), seed.data());
    }

    [[nodiscard]] const PublicKey& publicKey() const { return publicKey_; }
    [[nodiscard]] QString publicKeyText() const { return base64(publicKey_); }

    [[nodiscard]] Signature sign(const QByteArray& bytes) const {
        Signature signature = {};
        crypto_sign_detached(signature.data(), nullptr,
                             reinterpret_cast<const unsigned char*>(bytes.constData()),
                             static_cast<unsigned long long>(bytes.size()), secretKey_.data());
        return signature;
    }

    [[nodiscard]] QString signatureText(const QByteArray& bytes) const { return base64(sign(bytes)); }

private:
    template<typename Bytes>
    static QString base64(const Bytes& bytes) {
        return QString::fromLatin1(
            QByteArray(reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size()))
                .toBase64());
    }

    PublicKey publicKey_ = {};
    std::array<unsigned char, crypto_sign_SECRETKEYBYTES> secretKey_ = {};
};

} // namespace amberquill
