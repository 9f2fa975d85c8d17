#pragma once

#include <QByteArray>

namespace tally::platform::Updater {

/// Whether `signature` is the Ed25519 signature of `message` by the owner of the public key.
/// \param public_key Base64 of its 32 bytes
/// \param signature Base64 of its 64 bytes
bool is_signed(const QByteArray &message, const QByteArray &signature,
               const QByteArray &public_key);

} // namespace tally::platform::Updater
