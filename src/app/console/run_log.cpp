#include "app/console/run_log.h"

#include <QSaveFile>

#include <cstdio>

namespace tally::app {

RunLog::~RunLog()
{
    QSaveFile file(path_);
    if (file.open(QIODevice::WriteOnly) && file.write(text_.toUtf8()) >= 0)
        file.commit();
}

void RunLog::line(const QString &text)
{
    text_ += text + u'\n';
    std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
}

} // namespace tally::app
