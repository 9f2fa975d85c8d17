#include "data/mail/mail_value.h"
#include "fuzz_input.h"
#include "support/plain_decoder.h"

using namespace tally;

namespace {

QString outcome(QByteArrayView mail)
{
    try {
        const QVariantMap tree = data::parse_bytes(mail);
        const QVariant scene = data::find_first(tree, QStringLiteral("mailScene"));
        fuzz::require(test::description(scene) ==
                      test::description(tree.value(QStringLiteral("mailScene"))));
        data::find_first(tree, QStringLiteral("no such key"));
        return test::description(tree);
    } catch (const data::ParseError &error) {
        return QStringLiteral("error: ") + QString::fromUtf8(error.what());
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArrayView mail = fuzz::input_of(data, size);
    fuzz::require(outcome(mail) == test::PlainDecoder::outcome(mail));
    return 0;
}
