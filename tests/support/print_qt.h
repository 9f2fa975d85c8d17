#pragma once

#include <QString>

#include <ostream>

/// How a failing expectation shows a text; otherwise it would list its characters as containers.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}
