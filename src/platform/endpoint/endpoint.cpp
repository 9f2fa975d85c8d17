#include "platform/endpoint/endpoint.h"

#include "shipped_endpoint_values.h"

namespace tally::platform {

Endpoint shipped_endpoint()
{
    return {
        QStringLiteral(TALLY_SERVER_HOST),
        TALLY_SERVER_PORT,
        QByteArrayLiteral(TALLY_SERVER_PINS).split(';'),
        QStringLiteral(TALLY_SERVER_AUTHORITY_FILE),
        QStringLiteral(TALLY_UPDATE_HOST),
        QStringLiteral(TALLY_PRODUCT_PAGE),
        QByteArrayLiteral(TALLY_UPDATE_KEY),
        QStringLiteral(TALLY_UPDATED_BY),
    };
}

} // namespace tally::platform
