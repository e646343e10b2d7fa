#pragma once

#include <QUrl>

// Which addresses the updater may fetch.
namespace amberquill {

// Whether the address names this machine: a loopback address, or "localhost".
[[nodiscard]] bool isLoopback(const QUrl& address);

// HTTPS from any host, plain HTTP from this machine only; never with a user name or a password.
[[nodiscard]] bool mayFetch(const QUrl& address);

// Whether `from` may redirect or link to `to`: `to` may be fetched, and only this machine leads to this
// machine. Otherwise a remote server could make requests to services that listen here.
[[nodiscard]] bool mayLeadTo(const QUrl& from, const QUrl& to);

} // namespace amberquill
