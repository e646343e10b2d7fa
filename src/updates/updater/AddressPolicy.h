#pragma once

#include <QUrl>

// From where anything may be fetched.
namespace amberquill {

// Whether the address names this machine: a loopback address, or "localhost".
[[nodiscard]] bool isLoopback(const QUrl& address);

// HTTPS, or plain HTTP from this machine; a host, and neither a user's name nor a password.
[[nodiscard]] bool mayFetch(const QUrl& address);

// Whether what came from `from` may lead to `to`, by a redirect or by naming it: one that may be fetched, and
// on this machine only where the first was. A stranger has no business with what listens here.
[[nodiscard]] bool mayLeadTo(const QUrl& from, const QUrl& to);

} // namespace amberquill
