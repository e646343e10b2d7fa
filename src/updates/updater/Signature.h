#pragma once

#include <QByteArrayView>
#include <QString>
#include <array>
#include <optional>

// Ed25519 (RFC 8032), over the whole of what is signed.
namespace amberquill {

using PublicKey = std::array<unsigned char, 32>;
using Signature = std::array<unsigned char, 64>;

// From Base64 (RFC 4648, section 4); white space around it does not count. None: anything else.
[[nodiscard]] std::optional<PublicKey> readPublicKey(const QString& text);
[[nodiscard]] std::optional<Signature> readSignature(const QString& text);

// Whether whoever holds the key has signed exactly these bytes. Any thread.
[[nodiscard]] bool isSignedBy(const PublicKey& key, QByteArrayView bytes, const Signature& signature);

} // namespace amberquill
