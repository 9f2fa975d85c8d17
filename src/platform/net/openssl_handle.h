#pragma once

#include <memory>

namespace tally::platform {

template <auto release>
struct OpensslRelease {
    template <typename T>
    void operator()(T *owned) const
    {
        release(owned);
    }
};

/// Owns what a function of libcrypto made: OpensslHandle<X509, X509_free>.
template <typename T, auto release>
using OpensslHandle = std::unique_ptr<T, OpensslRelease<release>>;

} // namespace tally::platform
