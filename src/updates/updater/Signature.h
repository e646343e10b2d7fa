#pragma once

#include <QByteArrayView>
#include <QString>
#include <array>
#include <optional>

// Ed25519 signatures (RFC 8032).
namespace amberquill {

using PublicKey = std::array<unsigned char, 32>;
using Signature = std::array<unsigned char, 64>;

// From Base64 (RFC 4648, section 4), with white space around it allowed. None: the text is invalid.
[[nodiscard]] std::optional<PublicKey> readPublicKey(const QString& text);
[[nodiscard]] std::optional<Signature> readSignature(const QString& text);

// Whether the signature is valid for exactly these bytes and this key. Any thread.
[[nodiscard]] bool isSignedBy(const PublicKey& key, QByteArrayView bytes, const Signature& signature);

} // namespace amberquill
