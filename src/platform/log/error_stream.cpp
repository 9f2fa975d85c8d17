#include "platform/log/error_stream.h"

#include <QStringDecoder>

namespace tally::platform {

void print_line(const QString &text, std::FILE *stream)
{
    static_cast<void>(std::fputs((text + u'\n').toLocal8Bit().constData(), stream));
    static_cast<void>(std::fflush(stream));
}

void print_message(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    print_line(qFormatLogMessage(type, context, text));
}

QString text_of(const std::exception &failure)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8.decode(QByteArrayView(failure.what()));
    return utf8.hasError() ? QString::fromLocal8Bit(failure.what()) : text;
}

} // namespace tally::platform
