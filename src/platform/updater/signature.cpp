#include "platform/updater/signature.h"

#include "platform/net/openssl_handle.h"

#include <openssl/evp.h>

namespace tally::platform::Updater {
namespace {

using PublicKey = OpensslHandle<EVP_PKEY, EVP_PKEY_free>;
using Digest = OpensslHandle<EVP_MD_CTX, EVP_MD_CTX_free>;

QByteArray from_base64(const QByteArray &text)
{
    const auto result =
        QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    return result ? *result : QByteArray();
}

const unsigned char *bytes_of(const QByteArray &array)
{
    return reinterpret_cast<const unsigned char *>(array.constData());
}

size_t size_of(const QByteArray &array)
{
    return static_cast<size_t>(array.size());
}

} // namespace

bool is_signed(const QByteArray &message, const QByteArray &signature, const QByteArray &public_key)
{
    const QByteArray key_bytes = from_base64(public_key);
    const QByteArray signature_bytes = from_base64(signature);
    const PublicKey key(EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr, bytes_of(key_bytes),
                                                    size_of(key_bytes)));
    const Digest digest(EVP_MD_CTX_new());
    return key && digest &&
           EVP_DigestVerifyInit(digest.get(), nullptr, nullptr, nullptr, key.get()) == 1 &&
           EVP_DigestVerify(digest.get(), bytes_of(signature_bytes), size_of(signature_bytes),
                            bytes_of(message), size_of(message)) == 1;
}

} // namespace tally::platform::Updater
