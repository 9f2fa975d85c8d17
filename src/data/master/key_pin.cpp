#include "data/master/key_pin.h"

#include "platform/net/openssl_handle.h"

#include <QCryptographicHash>

#include <openssl/x509.h>

namespace tally::data {
namespace {

using Certificate = platform::OpensslHandle<X509, X509_free>;
using PublicKey = platform::OpensslHandle<EVP_PKEY, EVP_PKEY_free>;

QByteArray der_of(const PublicKey &key)
{
    const int size = i2d_PUBKEY(key.get(), nullptr);
    if (size <= 0)
        return {};
    QByteArray der(size, '\0');
    auto *position = reinterpret_cast<unsigned char *>(der.data());
    i2d_PUBKEY(key.get(), &position);
    return der;
}

} // namespace

QByteArray public_key_pin(const QByteArray &certificate)
{
    const auto *position = reinterpret_cast<const unsigned char *>(certificate.constData());
    const Certificate parsed(d2i_X509(nullptr, &position, static_cast<long>(certificate.size())));
    if (!parsed)
        return {};
    const PublicKey key(X509_get_pubkey(parsed.get()));
    const QByteArray der = key ? der_of(key) : QByteArray();
    return der.isEmpty() ? QByteArray()
                         : QCryptographicHash::hash(der, QCryptographicHash::Sha256).toBase64();
}

} // namespace tally::data
