#include "master/https_client.h"
#include "master/key_pin.h"
#include "support/reference_site.h"

#include <gtest/gtest.h>

namespace tally::data {
namespace {

using test::ReferenceSite;

constexpr int timeout_ms = 10000;
constexpr int short_timeout_ms = 300;

HttpRequest get(const QString &path)
{
    HttpRequest request;
    request.path = path;
    request.timeout_ms = timeout_ms;
    return request;
}

const QString heroes = QStringLiteral("/api/master/heroes");

struct KeyCase {
    const char *name;
    QString error;
};

class ServerKey : public testing::TestWithParam<KeyCase> {};

TEST_P(ServerKey, DecidesWhetherAnswersCount)
{
    ReferenceSite site(QLatin1StringView(GetParam().name));
    site.put_table(QStringLiteral("heroes"), "{}");

    const HttpResult result = HttpsClient(site.endpoint()).http_request(get(heroes));

    const bool is_trusted = GetParam().error.isEmpty();
    EXPECT_EQ(result.error, GetParam().error);
    EXPECT_EQ(result.status, is_trusted ? 200 : 0);
    EXPECT_EQ(result.body, is_trusted ? QByteArray("{}") : QByteArray());
    // A server that is not ours does not even learn what was asked.
    EXPECT_EQ(site.requests_of(heroes), is_trusted ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(, ServerKey,
                         testing::Values(KeyCase{"server", {}}, KeyCase{"renewed", {}},
                                         KeyCase{"other", QStringLiteral("cert_pin_mismatch")},
                                         KeyCase{"stranger", QStringLiteral("cert_pin_mismatch")}),
                         [](const auto &tested) { return std::string(tested.param.name); });

TEST(ServerPins, AnyOfTheListWillDo)
{
    ReferenceSite site;
    site.put_table(QStringLiteral("heroes"), "{}");
    platform::Endpoint endpoint = site.endpoint();
    endpoint.pins.prepend(QByteArray(43, 'A') + '=');
    EXPECT_EQ(HttpsClient(endpoint).http_request(get(heroes)).status, 200);

    endpoint.pins.removeLast();
    EXPECT_EQ(HttpsClient(endpoint).http_request(get(heroes)).error,
              QStringLiteral("cert_pin_mismatch"));
}

TEST(ServerPins, WhatIsNoCertificateHasNone)
{
    EXPECT_EQ(public_key_pin({}), QByteArray());
    EXPECT_EQ(public_key_pin("no certificate"), QByteArray());
}

TEST(HttpsClient, NobodyListeningReadsLikeAWrongKey)
{
    platform::Endpoint endpoint;
    {
        const ReferenceSite gone;
        endpoint = gone.endpoint();
    }
    const HttpResult result = HttpsClient(endpoint).http_request(get(heroes));
    EXPECT_EQ(result.error, QStringLiteral("cert_pin_mismatch"));
    EXPECT_EQ(result.status, 0);
}

TEST(HttpsClient, OtherMethodsAreNotSent)
{
    ReferenceSite site;
    HttpRequest request = get(heroes);
    request.method = QStringLiteral("DELETE");
    EXPECT_EQ(HttpsClient(site.endpoint()).http_request(request).error,
              QStringLiteral("unsupported_method"));
    EXPECT_EQ(site.requests_of(heroes), 0);
}

TEST(HttpsClient, SilenceEndsWithTheTimeOut)
{
    ReferenceSite site;
    site.break_with(QStringLiteral("silent"));
    HttpRequest request = get(heroes);
    request.timeout_ms = short_timeout_ms;

    const HttpResult result = HttpsClient(site.endpoint()).http_request(request);
    EXPECT_TRUE(result.error.startsWith(QStringLiteral("network: "))) << result.error.toStdString();
    EXPECT_EQ(result.status, 0);
}

TEST(HttpsClient, SlowAnswersWithinTheTimeOutCount)
{
    ReferenceSite site;
    site.put_table(QStringLiteral("heroes"), "{}");
    site.break_with(QStringLiteral("slow=100"));
    EXPECT_EQ(HttpsClient(site.endpoint()).http_request(get(heroes)).status, 200);
}

TEST(HttpsClient, HalfABodyIsNoAnswer)
{
    ReferenceSite site;
    site.put_table(QStringLiteral("heroes"), QByteArray(100000, ' '));
    site.break_with(QStringLiteral("cut"));

    const HttpResult result = HttpsClient(site.endpoint()).http_request(get(heroes));
    EXPECT_TRUE(result.error.startsWith(QStringLiteral("network: "))) << result.error.toStdString();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.body, QByteArray());
}

TEST(HttpsClient, ABodyOverTheLimitIsRefused)
{
    ReferenceSite site;
    site.put_table(QStringLiteral("heroes"), QByteArray(100001, ' '));
    HttpRequest request = get(heroes);
    request.size_limit = 100001;
    EXPECT_EQ(HttpsClient(site.endpoint()).http_request(request).body.size(), 100001);

    request.size_limit = 100000;
    const HttpResult result = HttpsClient(site.endpoint()).http_request(request);
    EXPECT_EQ(result.error, QStringLiteral("body_too_large"));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.body, QByteArray());
}

TEST(HttpsClient, DoesNotFollowToAnotherHost)
{
    ReferenceSite site;
    ReferenceSite elsewhere;
    elsewhere.put_table(QStringLiteral("heroes"), "{}");
    site.break_with(QStringLiteral("redirect=https://localhost:%1/api/master/heroes")
                        .arg(elsewhere.endpoint().port));

    const HttpResult result = HttpsClient(site.endpoint()).http_request(get(heroes));
    EXPECT_TRUE(result.error.startsWith(QStringLiteral("network: "))) << result.error.toStdString();
    EXPECT_EQ(result.body, QByteArray());
    EXPECT_EQ(elsewhere.requests_of(heroes), 0);
}

TEST(HttpsClient, FollowsWithinTheHost)
{
    ReferenceSite site;
    site.put_table(QStringLiteral("items"), R"({"items":{}})");
    site.break_with(QStringLiteral("redirect=/api/master/items@/api/master/heroes"));
    EXPECT_EQ(HttpsClient(site.endpoint()).http_request(get(heroes)).body,
              QByteArray(R"({"items":{}})"));
}

} // namespace
} // namespace tally::data
