#include "platform/updater/sha256.h"

#include "platform/net/openssl_handle.h"

#include <openssl/evp.h>

#include <new>

namespace tally::platform::Updater {

struct Sha256::State {
    OpensslHandle<EVP_MD_CTX, EVP_MD_CTX_free> digest{EVP_MD_CTX_new()};
};

Sha256::Sha256() : state_(std::make_unique<State>())
{
    if (!state_->digest || EVP_DigestInit_ex(state_->digest.get(), EVP_sha256(), nullptr) != 1)
        throw std::bad_alloc(); // it has no other way to fail
}

Sha256::~Sha256() = default;

void Sha256::add(const QByteArray &bytes)
{
    EVP_DigestUpdate(state_->digest.get(), bytes.constData(), static_cast<size_t>(bytes.size()));
}

QString Sha256::hex() const
{
    const State copy;
    QByteArray result(EVP_MD_size(EVP_sha256()), '\0');
    if (!copy.digest || EVP_MD_CTX_copy_ex(copy.digest.get(), state_->digest.get()) != 1 ||
        EVP_DigestFinal_ex(copy.digest.get(), reinterpret_cast<unsigned char *>(result.data()),
                           nullptr) != 1)
        throw std::bad_alloc();
    return QString::fromLatin1(result.toHex());
}

} // namespace tally::platform::Updater
