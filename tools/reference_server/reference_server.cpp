#include "reference_server.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QTcpSocket>
#include <QTimer>
#include <QUrl>

#include <memory>
#include <utility>

namespace tally::reference {
namespace {

constexpr qsizetype longest_head = 16 << 10;

QByteArray content_of(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QSslConfiguration tls_of(const QDir &keys, const QString &name)
{
    const QByteArray key = content_of(keys.filePath(name + QStringLiteral(".key")));
    const QByteArray certificate = content_of(keys.filePath(name + QStringLiteral(".pem")));
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    configuration.setPrivateKey(QSslKey(key, QSsl::Ec));
    configuration.setLocalCertificate(QSslCertificate(certificate));
    return configuration;
}

/// The file that a path stands for, relative to the server's folder.
std::optional<QString> file_of(const QString &path)
{
    static const QRegularExpression served(
        QStringLiteral("^/(?:api/(?:(version)/cpp|master/(?:icon/([A-Za-z0-9_-]+)|([a-z_]+)))|"
                       "updates/([A-Za-z0-9_-][A-Za-z0-9._-]*))$"));
    const QRegularExpressionMatch match = served.match(path);
    if (!match.hasMatch())
        return std::nullopt;
    if (match.hasCaptured(1))
        return QStringLiteral("version.json");
    if (match.hasCaptured(2))
        return QStringLiteral("icon/%1.webp").arg(match.captured(2));
    if (match.hasCaptured(3))
        return QStringLiteral("master/%1.json").arg(match.captured(3));
    return QStringLiteral("updates/%1").arg(match.captured(4));
}

QByteArray http_answer(int status, const QByteArray &body, const QByteArray &further_head = {})
{
    return "HTTP/1.1 " + QByteArray::number(status) +
           " .\r\nConnection: close\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\n" + further_head + "\r\n" + body;
}

QByteArray json_error(int status)
{
    return http_answer(status, R"({"error":"server"})", "Content-Type: application/json\r\n");
}

/// An answer with what a file holds, bent by a fault.
Pieces file_answer(QByteArray body, const std::optional<Fault> &fault)
{
    if (!fault)
        return pieces_of(http_answer(200, body));
    switch (fault->kind) {
    case Fault::Kind::Endless: {
        const auto head =
            std::make_shared<QByteArray>("HTTP/1.1 200 .\r\nConnection: close\r\n\r\n");
        return [head, rest = endless()] {
            return head->isEmpty() ? rest() : std::exchange(*head, {});
        };
    }
    case Fault::Kind::Cut:
        return pieces_of(http_answer(200, body).chopped((body.size() + 1) / 2));
    case Fault::Kind::Short:
        return pieces_of(http_answer(200, body.first(body.size() / 2)));
    case Fault::Kind::Garbled:
        body.prepend('~').chop(1);
        return pieces_of(http_answer(200, body));
    default:
        return pieces_of(http_answer(200, body));
    }
}

} // namespace

ReferenceServer::ReferenceServer(QString folder, const QString &keys, const QString &name)
    : folder_(std::move(folder))
{
    server_.setSslConfiguration(tls_of(keys, name));
    QObject::connect(&server_, &QTcpServer::pendingConnectionAvailable, &server_,
                     [this] { on_connection(); });
}

bool ReferenceServer::listen(quint16 port)
{
    return server_.listen(QHostAddress::LocalHost, port);
}

void ReferenceServer::on_connection()
{
    while (QTcpSocket *socket = server_.nextPendingConnection()) {
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        const auto head = std::make_shared<QByteArray>();
        const auto on_data = [this, socket, head] {
            *head += socket->readAll();
            const bool is_whole = head->contains("\r\n\r\n");
            if (!is_whole && head->size() <= longest_head)
                return;
            QObject::disconnect(socket, &QTcpSocket::readyRead, nullptr, nullptr);
            const QByteArrayList words = head->left(head->indexOf('\r')).split(' ');
            if (is_whole && words.size() == 3)
                on_request(*socket, QUrl::fromPercentEncoding(words[1]));
            else
                send(*socket, pieces_of(json_error(400)));
        };
        QObject::connect(socket, &QTcpSocket::readyRead, socket, on_data);
        on_data();
    }
}

void ReferenceServer::on_request(QTcpSocket &socket, const QString &path)
{
    requests_.append(path);
    const std::optional<Fault> fault = fault_of(path);
    if (fault && fault->kind == Fault::Kind::Silent)
        return;
    const Pieces answer = answer_to(path, fault);
    if (fault && fault->kind == Fault::Kind::Slow)
        QTimer::singleShot(fault->number, &socket, [&socket, answer] { send(socket, answer); });
    else
        send(socket, answer);
}

Pieces ReferenceServer::answer_to(const QString &path, const std::optional<Fault> &fault) const
{
    if (fault && fault->kind == Fault::Kind::Status)
        return pieces_of(json_error(fault->number));
    if (fault && fault->kind == Fault::Kind::Redirect)
        return pieces_of(http_answer(302, {}, "Location: " + fault->target.toUtf8() + "\r\n"));

    const std::optional<QString> name = file_of(path);
    const QDir folder(folder_);
    if (!name || !folder.exists(*name))
        return pieces_of(json_error(404));
    return file_answer(content_of(folder.filePath(*name)), fault);
}

std::optional<Fault> ReferenceServer::fault_of(const QString &path) const
{
    for (const Fault &fault : faults_) {
        if (path.startsWith(fault.path))
            return fault;
    }
    return std::nullopt;
}

} // namespace tally::reference
