#include "pieces.h"

#include <QSslSocket>

#include <memory>

namespace tally::reference {
namespace {

constexpr qsizetype piece_size = 256 << 10;
constexpr qint64 enough_on_the_way = 1 << 20; // bytes

} // namespace

Pieces endless()
{
    return [piece = QByteArray(piece_size, 'x')] {
        return piece;
    };
}

Pieces pieces_of(const QByteArray &bytes)
{
    return [bytes, at = qsizetype(0)]() mutable {
        const QByteArray piece = bytes.mid(at, piece_size);
        at += piece.size();
        return piece;
    };
}

void send(QTcpSocket &socket, const Pieces &pieces)
{
    const auto source = std::make_shared<Pieces>(pieces);
    const auto pump = [&socket, source] {
        const auto *tls = qobject_cast<const QSslSocket *>(&socket);
        while (*source && socket.bytesToWrite() + (tls ? tls->encryptedBytesToWrite() : 0) <
                              enough_on_the_way) {
            const QByteArray piece = (*source)();
            if (piece.isEmpty()) {
                *source = nullptr;
                return socket.disconnectFromHost();
            }
            socket.write(piece);
        }
    };
    QObject::connect(&socket, &QIODevice::bytesWritten, &socket, pump);
    if (auto *tls = qobject_cast<QSslSocket *>(&socket))
        QObject::connect(tls, &QSslSocket::encryptedBytesWritten, &socket, pump);
    pump();
}

} // namespace tally::reference
