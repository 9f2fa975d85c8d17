#include "platform/updater/script_paths.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace tally::platform::Updater {
namespace {

QString with_backslashes(QString path)
{
    path.replace(u'/', u'\\');
    // The root of a drive: '\' before the quote that follows would make it a part of the name.
    return path.endsWith(u'\\') ? path + u'.' : path;
}

/// The short name of as much of the path as exists, and the rest as it is.
QString shortened(const QString &path, const ShortNames &short_names)
{
    QString rest;
    for (QFileInfo known(path); !known.isRoot(); known.setFile(known.path())) {
        if (known.exists()) {
            const QString name = short_names(known.filePath());
            return name.isEmpty() ? path : name + rest;
        }
        rest.prepend(u'/' + known.fileName());
    }
    return path;
}

} // namespace

bool is_safe_in(ScriptLine line, const QString &path)
{
    // In PowerShell "'" ends the text, and the commands take the others for patterns.
    const QStringView refused = line == ScriptLine::PowerShell ? u"%\"'[]*?`" : u"%\"";
    return std::all_of(path.begin(), path.end(), [refused](QChar c) {
        return c >= u' ' && c <= u'~' && !refused.contains(c);
    });
}

std::optional<QString> safe_path(const QString &path, ScriptLine line,
                                 const ShortNames &short_names)
{
    for (const QString &form : {path, shortened(path, short_names)}) {
        if (is_safe_in(line, form))
            return with_backslashes(form);
    }
    return std::nullopt;
}

} // namespace tally::platform::Updater
