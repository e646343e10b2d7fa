#include "updates/updater/Signature.h"

#include <sodium.h>

namespace amberquill {
namespace {

static_assert(std::tuple_size_v<PublicKey> == crypto_sign_PUBLICKEYBYTES);
static_assert(std::tuple_size_v<Signature> == crypto_sign_BYTES);

template<typename Bytes>
std::optional<Bytes> readBase64(const QString& text) {
    const auto decoded =
        QByteArray::fromBase64Encoding(text.trimmed().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    Bytes bytes = {};
    if (!decoded || static_cast<std::size_t>(decoded.decoded.size()) != bytes.size()) {
        return std::nullopt;
    }
    std::copy(decoded.decoded.cbegin(), decoded.decoded.cend(), bytes.begin());
    return bytes;
}

} // namespace

std::optional<PublicKey> readPublicKey(const QString& text) {
    return readBase64<PublicKey>(text);
}

std::optional<Signature> readSignature(const QString& text) {
    return readBase64<Signature>(text);
}

bool isSignedBy(const PublicKey& key, QByteArrayView bytes, const Signature& signature) {
    return sodium_init() >= 0 &&
           crypto_sign_verify_detached(signature.data(), reinterpret_cast<const unsigned char*>(bytes.data()),
                                       static_cast<unsigned long long>(bytes.size()), key.data()) == 0;
}

} // namespace amberquill
