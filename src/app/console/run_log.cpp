#include "app/console/run_log.h"

#include "platform/files/whole_file.h"

#include <cstdio>

namespace tally::app {

RunLog::~RunLog()
{
    if (const auto failure = platform::write_whole_file(path_, text_.toUtf8()))
        std::fprintf(stderr, "%s: %s\n", path_.toLocal8Bit().constData(),
                     failure->toLocal8Bit().constData());
}

void RunLog::line(const QString &text)
{
    text_ += text + u'\n';
    std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
}

} // namespace tally::app
