#include "app/console/run_log.h"

#include "platform/files/whole_file.h"
#include "platform/log/error_stream.h"

namespace tally::app {

RunLog::~RunLog()
{
    if (const auto failure = platform::write_whole_file(path_, text_.toUtf8()))
        platform::print_line(path_ + QStringLiteral(": ") + *failure);
}

void RunLog::line(const QString &text)
{
    text_ += text + u'\n';
    platform::print_line(text);
}

} // namespace tally::app
