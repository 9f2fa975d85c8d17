#pragma once

#include <QByteArrayList>
#include <QString>

namespace tally::platform {

/// The servers and pages of the maker. Passed to whoever talks to them or links to them, so that a
/// test can point at a server of its own.
struct Endpoint {
    QString host;           ///< of the reference tables and icons
    quint16 port = 443;     ///< of `host`
    QByteArrayList pins;    ///< base64 of the SHA-256 of each public key that `host` may present
    QString authority_file; ///< PEM file of the authorities to trust; empty: those of the system
    QString update_host;    ///< of the version record; a port may follow a colon
    QString product_page;   ///< address for the user's browser
    QByteArray update_key;  ///< base64 of the Ed25519 key that signs version records; empty: none
    QString updated_by;     ///< who updates the program; empty: it does so itself
};

/// The endpoint that this build was configured for.
Endpoint shipped_endpoint();

} // namespace tally::platform
