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

struct KeyCase {
    const char *name;
    QString error;
};

class ServerKey : public testing::TestWithParam<KeyCase> {};

TEST_P(ServerKey, DecidesWhetherAnswersCount)
{
    ReferenceSite site(QLatin1StringView(GetParam().name));
    site.put_table(u"heroes"_s, "{}");

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
                                         KeyCase{"other", u"cert_pin_mismatch"_s},
                                         KeyCase{"stranger", u"cert_pin_mismatch"_s}),
                         [](const auto &tested) { return std::string(tested.param.name); });

TEST(ServerPins, AnyOfTheListWillDo)
{
    ReferenceSite site;
    site.put_table(u"heroes"_s, "{}");
    platform::Endpoint endpoint = site.endpoint();
    endpoint.pins.prepend(QByteArray(43, 'A') + '=');
    EXPECT_EQ(HttpsClient(endpoint).http_request(get(heroes)).status, 200);

    endpoint.pins.removeLast();
    EXPECT_EQ(HttpsClient(endpoint).http_request(get(heroes)).error, u"cert_pin_mismatch"_s);
}

TEST(ServerPins, WhatIsNoCertificateHasNone)
{
    EXPECT_EQ(public_key_pin({}), QByteArray());
    EXPECT_EQ(public_key_pin("no certificate"), QByteArray());
}

TEST(HttpsClient, NobodyListeningReadsLikeAWrongKey)
{
    platform::Endpoint endpoint = ReferenceSite().endpoint();
    EXPECT_EQ(HttpsClient(endpoint).http_request(get(heroes)).error, u"cert_pin_mismatch"_s);
}

TEST(HttpsClient, OtherMethodsAreNotSent)
{
    ReferenceSite site;
    HttpRequest request = get(heroes);
    request.method = u"DELETE"_s;
    EXPECT_EQ(HttpsClient(site.endpoint()).http_request(request).error, u"unsupported_method"_s);
    EXPECT_EQ(site.requests_of(heroes), 0);
}

struct AnswerCase {
    const char *name;
    QString fault;
    int size_limit;
    QByteArray error; ///< how it begins; empty: none
};

class ServerAnswer : public testing::TestWithParam<AnswerCase> {};

TEST_P(ServerAnswer, CountsWholeInTimeAndWithinTheLimitOrNotAtAll)
{
    const QByteArray body(100000, ' ');
    ReferenceSite site;
    site.put_table(u"heroes"_s, body);
    site.put_table(u"items"_s, body);
    if (!GetParam().fault.isEmpty())
        site.break_with(GetParam().fault);
    HttpRequest request = get(heroes);
    request.size_limit = GetParam().size_limit;
    if (GetParam().fault == u"silent")
        request.timeout_ms = short_timeout_ms;

    const HttpResult result = HttpsClient(site.endpoint()).http_request(request);
    const bool is_fine = GetParam().error.isEmpty();
    EXPECT_THAT(result.error.toStdString(), StartsWith(GetParam().error.toStdString()));
    EXPECT_EQ(result.error.isEmpty(), is_fine);
    EXPECT_EQ(result.status, is_fine ? 200 : 0);
    EXPECT_EQ(result.body, is_fine ? body : QByteArray());
}

INSTANTIATE_TEST_SUITE_P(, ServerAnswer,
                         testing::Values(AnswerCase{"Whole", {}, 100000, {}},
                                         AnswerCase{"OverTheLimit", {}, 99999, "body_too_large"},
                                         AnswerCase{"Silent", u"silent"_s, 100000, "network: "},
                                         AnswerCase{"Slow", u"slow=100"_s, 100000, {}},
                                         AnswerCase{"Cut", u"cut"_s, 100000, "network: "},
                                         AnswerCase{
                                             "MovedWithinTheHost",
                                             u"redirect=/api/master/items@/api/master/heroes"_s,
                                             100000,
                                             {}}),
                         [](const auto &tested) { return std::string(tested.param.name); });

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
