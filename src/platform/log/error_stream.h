#pragma once

#include <QString>
#include <QtGlobal>

#include <cstdio>
#include <exception>

namespace tally::platform {

/// Writes a line in the local 8-bit encoding, by default to the standard error stream.
void print_line(const QString &text, std::FILE *stream = stderr);

/// A message handler that prints. Qt's own sends messages to the debugger on Windows as soon as the
/// standard error stream is no console.
void print_message(QtMsgType type, const QMessageLogContext &context, const QString &text);

/// What an exception says. This program throws UTF-8, so that every name survives; what libraries
/// throw may be in the local 8-bit encoding.
QString text_of(const std::exception &failure);

} // namespace tally::platform
