#include "LoopbackHttpServer.h"

#include <QTcpSocket>

LoopbackHttpServer::LoopbackHttpServer(QObject *parent) : QObject(parent)
{
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { serve(socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
}

bool LoopbackHttpServer::listen()
{
    return m_server.listen(QHostAddress::LocalHost);
}

QUrl LoopbackHttpServer::url(const QString &path) const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path));
}

void LoopbackHttpServer::setResponse(const QString &path, Response response)
{
    m_responses.insert(path, std::move(response));
}

void LoopbackHttpServer::release()
{
    const auto held = std::exchange(m_held, {});
    for (const auto &[socket, response] : held)
        answer(socket, response);
}

void LoopbackHttpServer::serve(QTcpSocket *socket)
{
    QByteArray request = socket->property("request").toByteArray() + socket->readAll();
    socket->setProperty("request", request);
    if (!request.contains("\r\n\r\n"))
        return;
    ++m_requests;
    const QList<QByteArray> requestLine = request.left(request.indexOf("\r\n")).split(' ');
    const QString path = requestLine.size() > 1 ? QString::fromUtf8(requestLine.at(1)) : QString();
    const Response response = m_responses.value(path, Response{404, QByteArrayLiteral("not here")});
    if (response.held) {
        m_held.append({socket, response});
        return;
    }
    answer(socket, response);
}

void LoopbackHttpServer::answer(QTcpSocket *socket, const Response &response)
{
    QByteArray reply = "HTTP/1.1 " + QByteArray::number(response.status) + " X\r\n";
    reply += "Content-Type: application/rss+xml\r\nContent-Length: " + QByteArray::number(response.body.size()) +
             "\r\nConnection: close\r\n\r\n" + response.body;
    socket->write(reply);
    socket->disconnectFromHost();
}
