#pragma once

#include <QByteArray>
#include <QHash>
#include <QTcpServer>
#include <QUrl>

class QTcpSocket;

// A tiny HTTP/1.1 server on 127.0.0.1 for tests: one canned response per path, each
// optionally held back until release() so a test can look at a check in flight.
class LoopbackHttpServer : public QObject {
    Q_OBJECT

public:
    struct Response {
        int status = 200;
        QByteArray body;
        bool held = false;
    };

    explicit LoopbackHttpServer(QObject *parent = nullptr);
    bool listen();
    QUrl url(const QString &path) const;
    void setResponse(const QString &path, Response response);
    void release();
    int requestCount() const { return m_requests; }

private:
    void serve(QTcpSocket *socket);
    void answer(QTcpSocket *socket, const Response &response);

    QTcpServer m_server;
    QHash<QString, Response> m_responses;
    QList<QPair<QTcpSocket *, Response>> m_held;
    int m_requests = 0;
};
