#pragma once

#include <QByteArray>

namespace tally::data {

/// The pin of a certificate's public key: the base64 text of the SHA-256 of its
/// SubjectPublicKeyInfo in DER form (RFC 7469). A renewed certificate over the same key has the
/// same pin. Empty if `certificate`, in DER form, is none.
QByteArray public_key_pin(const QByteArray &certificate);

} // namespace tally::data
