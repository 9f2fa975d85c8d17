#pragma once

#include <QByteArray>

#include <functional>

class QTcpSocket;

namespace tally::reference {

/// Gives the next piece of an answer at each call; an empty one at its end.
using Pieces = std::function<QByteArray()>;

/// The same bytes for ever.
Pieces endless();
Pieces pieces_of(const QByteArray &bytes);

/// Sends the pieces as fast as the client takes them, and then ends the connection.
void send(QTcpSocket &socket, const Pieces &pieces);

} // namespace tally::reference
