#include "platform/net/tls.h"

#include <QSslCertificate>

namespace tally::platform {

QSslConfiguration tls_of(const Endpoint &endpoint)
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    if (!endpoint.authority_file.isEmpty())
        configuration.setCaCertificates(QSslCertificate::fromPath(endpoint.authority_file));
    return configuration;
}

} // namespace tally::platform
