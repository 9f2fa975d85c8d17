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
        QStringLiteral("^/api/(?:(version)/cpp|master/(?:icon/([A-Za-z0-9_-]+)|([a-z_]+)))$"));
    const QRegularExpressionMatch match = served.match(path);
    if (!match.hasMatch())
        return std::nullopt;
    if (match.hasCaptured(1))
        return QStringLiteral("version.json");
    if (match.hasCaptured(2))
        return QStringLiteral("icon/%1.webp").arg(match.captured(2));
    return QStringLiteral("master/%1.json").arg(match.captured(3));
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

void send(QTcpSocket &socket, const QByteArray &bytes)
{
    socket.write(bytes);
    socket.disconnectFromHost();
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
                send(*socket, json_error(400));
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
    const QByteArray answer = answer_to(path, fault);
    if (fault && fault->kind == Fault::Kind::Slow)
        QTimer::singleShot(fault->number, &socket, [&socket, answer] { send(socket, answer); });
    else
        send(socket, answer);
}

QByteArray ReferenceServer::answer_to(const QString &path, const std::optional<Fault> &fault) const
{
    if (fault && fault->kind == Fault::Kind::Status)
        return json_error(fault->number);
    if (fault && fault->kind == Fault::Kind::Redirect)
        return http_answer(302, {}, "Location: " + fault->target.toUtf8() + "\r\n");

    const std::optional<QString> name = file_of(path);
    const QDir folder(folder_);
    if (!name || !folder.exists(*name))
        return json_error(404);
    const QByteArray body = content_of(folder.filePath(*name));
    const QByteArray answer = http_answer(200, body);
    return fault && fault->kind == Fault::Kind::Cut ? answer.chopped((body.size() + 1) / 2)
                                                    : answer;
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
