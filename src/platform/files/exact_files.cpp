#include "platform/files/exact_files.h"

#include <QFile>
#include <QStringDecoder>

#include <algorithm>

namespace tally::platform {
namespace {

// U+EF80 to U+EFFF stand for the bytes 80 to FF. A name that really holds one of these characters
// has its bytes written this way too, or two names could have the same text.
constexpr char16_t first_escape = u'\uef80';
constexpr char16_t last_escape = u'\uefff';

bool is_escape(QChar c)
{
    return c.unicode() >= first_escape && c.unicode() <= last_escape;
}

QString escape_of(char byte)
{
    return QString(QChar(static_cast<char16_t>(first_escape + (static_cast<uchar>(byte) - 0x80))));
}

/// The text of one or more whole characters, or a null string.
QString decode(QByteArrayView bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(bytes);
    const bool plain = !decoder.hasError() && std::none_of(text.cbegin(), text.cend(), is_escape);
    return plain ? text : QString();
}

} // namespace

QString text_of_native_name(QByteArrayView name)
{
    if (QString text = decode(name); !text.isNull())
        return text;
    QString text;
    while (!name.isEmpty()) {
        qsizetype length = 1;
        QString character;
        while (length <= 4 && length <= name.size() && character.isNull())
            character = decode(name.first(length++));
        text += character.isNull() ? escape_of(name.front()) : character;
        name = name.sliced(character.isNull() ? 1 : length - 1);
    }
    return text;
}

QByteArray native_name_of_text(QStringView text)
{
    QByteArray name;
    while (!text.isEmpty()) {
        const auto escape = std::find_if(text.cbegin(), text.cend(), is_escape);
        const qsizetype plain = escape - text.cbegin();
        name += text.first(plain).toUtf8();
        text = text.sliced(plain);
        if (!text.isEmpty()) {
            name += static_cast<char>(0x80 + (text.front().unicode() - first_escape));
            text = text.sliced(1);
        }
    }
    return name;
}

QString exact_path(const QString &path)
{
#ifdef Q_OS_WIN
    return path;
#else
    return std::any_of(path.cbegin(), path.cend(), is_escape)
               ? text_of_native_name(QFile::encodeName(path))
               : path;
#endif
}

QStringList regular_file_names(const QString &dir)
{
    return list_folder(dir).names;
}

QByteArray read_file(const QString &path)
{
    InputFile file(path);
    return file.read(file.size());
}

} // namespace tally::platform
