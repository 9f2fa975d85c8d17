#include "data/master/https_client.h"
#include "data/master/key_pin.h"
#include "support/reference_site.h"

#include <gmock/gmock.h>

namespace tally::data {
namespace {

using namespace Qt::StringLiterals;
using test::ReferenceSite;
using testing::StartsWith;

constexpr int timeout_ms = 10000;
constexpr int short_timeout_ms = 300;

HttpRequest get(const QString &path)
{
    HttpRequest request;
    request.path = path;
    request.timeout_ms = timeout_ms;
    return request;
}

const QString heroes = u"/api/master/heroes"_s;

TEST(ServerKey, DecidesWhetherAnswersCount)
{
    for (const auto &[key, is_trusted] : {std::pair(u"server"_s, true),
                                          {u"renewed"_s, true},
                                          {u"other"_s, false},
                                          {u"stranger"_s, false}}) {
        ReferenceSite site(key);
        site.put_table(u"heroes"_s, "{}");
        const HttpResult result = HttpsClient(site.endpoint()).http_request(get(heroes));
        EXPECT_EQ(result.error, is_trusted ? QString() : u"cert_pin_mismatch"_s)
            << key.toStdString();
        EXPECT_EQ(result.status, is_trusted ? 200 : 0);
        EXPECT_EQ(result.body, is_trusted ? QByteArray("{}") : QByteArray());
        // A server that is not ours does not even learn what was asked.
        EXPECT_EQ(site.requests_of(heroes), is_trusted ? 1 : 0);
    }
}

TEST(ServerPins, AnyOfTheListWillDo)
{
    ReferenceSite site;
    site.put_table(u"heroes"_s, "{}");
    platform::Endpoint endpoint = site.endpoint();
    endpoint.pins.prepend(QByteArray(43, 'A') + '=');
    EXPECT_EQ(HttpsClient(endpoint).http_request(get(heroes)).status, 200);
}

TEST(ServerPins, WhatIsNoCertificateHasNone)
{
    EXPECT_EQ(public_key_pin({}), QByteArray());
    EXPECT_EQ(public_key_pin("no certificate"), QByteArray());
}

TEST(HttpsClient, OtherMethodsAreNotSent)
{
    ReferenceSite site;
    HttpRequest request = get(heroes);
    request.method = u"DELETE"_s;
    EXPECT_EQ(HttpsClient(site.endpoint()).http_request(request).error, u"unsupported_method"_s);
    EXPECT_EQ(site.requests_of(heroes), 0);
}

TEST(ServerAnswer, CountsWholeInTimeAndWithinTheLimitOrNotAtAll)
{
    const struct {
        QString fault;
        int size_limit;
        std::string error; ///< how it begins; empty: none
    } cases[] = {
        {u""_s, 100'000, ""},
        {u""_s, 99'999, "body_too_large"},
        {u"silent"_s, 100'000, "network: "},
        {u"slow=100"_s, 100'000, ""},
        {u"cut"_s, 100'000, "network: "},
        {u"redirect=/api/master/items@/api/master/heroes"_s, 100'000, ""},
    };
    const QByteArray body(100'000, ' ');
    for (const auto &[fault, size_limit, error] : cases) {
        SCOPED_TRACE(fault.toStdString());
        ReferenceSite site;
        site.put_table(u"heroes"_s, body);
        site.put_table(u"items"_s, body);
        if (!fault.isEmpty())
            site.break_with(fault);
        HttpRequest request = get(heroes);
        request.size_limit = size_limit;
        if (fault == u"silent")
            request.timeout_ms = short_timeout_ms;

        const HttpResult result = HttpsClient(site.endpoint()).http_request(request);
        EXPECT_THAT(result.error.toStdString(), StartsWith(error));
        EXPECT_EQ(result.error.isEmpty(), error.empty());
        EXPECT_EQ(result.status, error.empty() ? 200 : 0);
        EXPECT_EQ(result.body, error.empty() ? body : QByteArray());
    }
}

TEST(HttpsClient, DoesNotFollowToAnotherHost)
{
    ReferenceSite site;
    ReferenceSite elsewhere;
    elsewhere.put_table(u"heroes"_s, "{}");
    site.break_with(
        u"redirect=https://localhost:%1/api/master/heroes"_s.arg(elsewhere.endpoint().port));
    const HttpResult result = HttpsClient(site.endpoint()).http_request(get(heroes));
    EXPECT_THAT(result.error.toStdString(), StartsWith("network: "));
    EXPECT_EQ(result.body, QByteArray());
    EXPECT_EQ(elsewhere.requests_of(heroes), 0);
}

} // namespace
} // namespace tally::data
