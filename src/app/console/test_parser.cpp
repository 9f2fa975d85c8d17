#include "app/console/console_mode.h"

#include "data/mail/mail_value.h"
#include "platform/identity.h"

#include <QByteArray>

namespace tally::app {
namespace {

/// A mail whose "mailScene" holds "type" = "Battle" and "level" = 45.
QByteArray small_mail()
{
    return QByteArray::fromHex("05"
                               "0409000000 6d61696c5363656e65" // mailScene
                               "05"
                               "0404000000 74797065"     // type
                               "0406000000 426174746c65" // Battle
                               "0405000000 6c6576656c"   // level
                               "03 4046800000000000"     // 45.0
                               "ff"
                               "ff");
}

bool refuses_garbage()
{
    try {
        data::parse_bytes("garbage no marker");
        return false;
    } catch (const data::ParseError &) {
        return true;
    }
}

} // namespace

int test_parser()
{
    return run_console_mode(QStringLiteral("./smoke-test-parser.log"), [](RunLog &log) {
        const QString level_key = QStringLiteral("level");
        log.line(
            QStringLiteral("== TallyParser smoke test — %1 ==").arg(platform::application_version));

        const QVariantMap root = data::parse_bytes(small_mail());
        const QVariant scene_value = root.value(QStringLiteral("mailScene"));
        require(scene_value.isValid(), QStringLiteral("outer map missing 'mailScene' key"));
        require(scene_value.typeId() == QMetaType::QVariantMap,
                QStringLiteral("mailScene value not a map"));
        const QVariantMap scene = scene_value.toMap();
        const QString type = scene.value(QStringLiteral("type")).toString();
        const double level = scene.value(level_key).toDouble();
        log.line(QStringLiteral("parsed: type=%1  level=%2").arg(type).arg(level));
        require(type == u"Battle", QStringLiteral("type mismatch"));
        require(level == 45.0, QStringLiteral("level mismatch (BE double decode?)"));

        const QVariant found = data::find_first(root, level_key);
        require(found.toDouble() == 45.0, QStringLiteral("find_first did not locate level"));
        log.line(QStringLiteral("find_first(level) = %1 OK").arg(found.toDouble()));
        require(refuses_garbage(), QStringLiteral("parse_bytes on garbage did not throw"));
        log.line(QStringLiteral("no-marker throws ParseError OK"));
        log.line(QStringLiteral("== TallyParser smoke test PASSED =="));
    });
}

} // namespace tally::app
