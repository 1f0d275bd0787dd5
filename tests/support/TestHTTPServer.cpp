#include "TestHTTPServer.h"

#include "TestPaths.h"

#include <QFile>
#include <QHostAddress>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <zlib.h>

namespace lamina::test {

namespace {

std::string packed(const HTTPAnswer& answer)
{
    z_stream stream{};
    constexpr int kGzip = 15 + 16;
    deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, kGzip, 8, Z_DEFAULT_STRATEGY);
    std::string out;
    std::string piece(64 << 10, '\0');
    for (std::int64_t copy = 0; copy < answer.copies; ++copy) {
        std::string in = answer.body;
        stream.next_in = reinterpret_cast<Bytef*>(in.data());
        stream.avail_in = static_cast<uInt>(in.size());
        do {
            stream.next_out = reinterpret_cast<Bytef*>(piece.data());
            stream.avail_out = static_cast<uInt>(piece.size());
            deflate(&stream, copy + 1 == answer.copies ? Z_FINISH : Z_NO_FLUSH);
            out.append(piece, 0, piece.size() - stream.avail_out);
        } while (stream.avail_out == 0);
    }
    deflateEnd(&stream);
    return out;
}

QSslConfiguration withCertificate(const std::string& name)
{
    const auto read = [](const std::string& file) {
        QFile pem(QString::fromStdString(testData("tls/" + file + ".pem")));
        EXPECT_TRUE(pem.open(QIODevice::ReadOnly)) << file;
        return pem.readAll();
    };
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(QSslCertificate(read(name)));
    configuration.setPrivateKey(QSslKey(read("key"), QSsl::Ec));
    return configuration;
}

HTTPRequest parsedRequest(const QByteArray& head)
{
    const QList<QByteArray> lines = head.split('\n');
    const QList<QByteArray> first = lines.first().split(' ');
    HTTPRequest request{first.value(0).toStdString(), first.value(1).toStdString(), {}};
    for (const QByteArray& line : lines.mid(1)) {
        const qsizetype colon = line.indexOf(':');
        request.headers[line.left(colon).toLower().toStdString()] = line.mid(colon + 1).trimmed().toStdString();
    }
    return request;
}

} // namespace

HTTPAnswer redirectTo(const std::string& location, int status)
{
    return {.status = status, .headers = {{"Location", location}}};
}

/// The server on its thread; every member below `m_thread` is that thread's, but for the counts.
class TestHTTPServer::Server : public QObject {
public:
    explicit Server(const std::string& certificate)
        : m_isSecure(!certificate.empty())
    {
        m_thread.setObjectName(QStringLiteral("test server"));
        moveToThread(&m_thread);
        m_thread.start();
        onThread([&] { listen(certificate); });
    }
    ~Server() override
    {
        onThread([this] {
            delete m_listener;
            for (Connection* const each : std::vector(m_connections))
                delete each;
        });
        m_thread.quit();
        m_thread.wait();
    }

    /// Runs it on the server's thread and waits.
    void onThread(const std::function<void()>& work)
    {
        QMetaObject::invokeMethod(this, work, Qt::BlockingQueuedConnection);
    }

    std::string root() const { return (m_isSecure ? "https" : "http") + ("://127.0.0.1:" + std::to_string(m_port)); }

    void release(std::int64_t bytes)
    {
        m_released = std::min(m_released + bytes, HTTPAnswer::kEndless);
        for (Connection* const each : std::vector(m_connections))
            each->pump();
    }

    std::map<std::string, HTTPAnswer> answers;
    std::vector<HTTPRequest> requests;
    std::atomic<std::int64_t> bytesSent{0};
    std::atomic<int> connectionCount{0};

private:
    /// One connection, which may bring several requests, one after another.
    class Connection : public QObject {
    public:
        Connection(Server& server, QTcpSocket* socket)
            : m_server(server)
            , m_socket(socket)
        {
            socket->setParent(this);
            m_server.m_connections.push_back(this);
            ++m_server.connectionCount;
            connect(socket, &QTcpSocket::readyRead, this, &Connection::read);
            connect(socket, &QTcpSocket::bytesWritten, this, &Connection::pump);
            connect(socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
            read();
        }
        ~Connection() override
        {
            std::erase(m_server.m_connections, this);
            --m_server.connectionCount;
            m_socket->disconnect(this);
        }

        /// Writes as much of the answer as may go, and the system takes.
        void pump()
        {
            constexpr qint64 kMostWaiting = 64 << 10;
            while (m_isAnswering && m_socket->bytesToWrite() < kMostWaiting) {
                const std::int64_t end = m_answer.cutAt >= 0 ? std::min(m_answer.cutAt, m_length) : m_length;
                std::int64_t size = std::min<std::int64_t>(end - m_sent, static_cast<std::int64_t>(m_answer.piece));
                if (m_answer.isHeld)
                    size = std::min(size, m_server.m_released);
                if (m_sent < end && size <= 0)
                    return; // until more is let go
                if (m_sent == end)
                    return finish();
                write(size);
            }
        }

    private:
        void read()
        {
            m_head += m_socket->readAll().replace("\r", "");
            const qsizetype end = m_head.indexOf("\n\n");
            if (end < 0 || m_isAnswering)
                return;
            const HTTPRequest request = parsedRequest(m_head.left(end));
            m_head.remove(0, end + 2);
            m_server.requests.push_back(request);
            const auto found = m_server.answers.find(request.path.substr(0, request.path.find('?')));
            m_answer = found != m_server.answers.end() ? found->second : HTTPAnswer{.status = 404, .body = "nothing"};
            if (!m_answer.isSilent)
                answer();
        }

        void answer()
        {
            std::string head = "HTTP/1.1 " + std::to_string(m_answer.status) + " As told\r\n";
            if (m_answer.isPacked) {
                m_answer.body = packed(m_answer);
                m_answer.copies = 1;
                head += "Content-Encoding: gzip\r\n";
            }
            const auto size = static_cast<std::int64_t>(m_answer.body.size());
            m_length = m_answer.copies == HTTPAnswer::kEndless ? HTTPAnswer::kEndless : size * m_answer.copies;
            const bool hasBody = m_answer.status != 204 && m_answer.status != 304;
            if (m_answer.framing == HTTPAnswer::Framing::Chunked)
                head += "Transfer-Encoding: chunked\r\n";
            else if (m_answer.framing == HTTPAnswer::Framing::UntilClosed)
                head += "Connection: close\r\n";
            else if (hasBody)
                head += "Content-Length: " + std::to_string(m_length) + "\r\n";
            for (const auto& [name, value] : m_answer.headers)
                head += name + ": " + value + "\r\n";
            m_socket->write(QByteArray::fromStdString(head + "\r\n"));
            m_sent = 0;
            m_isAnswering = true;
            pump();
        }

        void write(std::int64_t size)
        {
            const bool isChunked = m_answer.framing == HTTPAnswer::Framing::Chunked;
            std::string piece;
            while (static_cast<std::int64_t>(piece.size()) < size) {
                const std::size_t from =
                    static_cast<std::size_t>(m_sent + static_cast<std::int64_t>(piece.size())) % m_answer.body.size();
                piece.append(m_answer.body, from, static_cast<std::size_t>(size) - piece.size());
            }
            m_sent += size;
            m_server.bytesSent += size;
            if (m_answer.isHeld)
                m_server.m_released -= size;
            if (isChunked)
                piece = QByteArray::number(piece.size(), 16).toStdString() + "\r\n" + piece + "\r\n";
            m_socket->write(QByteArray::fromStdString(piece));
        }

        void finish()
        {
            m_isAnswering = false;
            if (m_answer.cutAt >= 0 || m_answer.framing == HTTPAnswer::Framing::UntilClosed)
                return m_socket->disconnectFromHost();
            if (m_answer.framing == HTTPAnswer::Framing::Chunked)
                m_socket->write("0\r\n\r\n");
            read();
        }

        Server& m_server;
        QTcpSocket* m_socket;
        QByteArray m_head;
        HTTPAnswer m_answer;
        std::int64_t m_length = 0;
        std::int64_t m_sent = 0;
        bool m_isAnswering = false;
    };

    void listen(const std::string& certificate)
    {
        if (m_isSecure) {
            auto* const server = new QSslServer;
            server->setSslConfiguration(withCertificate(certificate));
            m_listener = server;
        } else {
            m_listener = new QTcpServer;
        }
        connect(m_listener, &QTcpServer::pendingConnectionAvailable, this, [this] {
            while (QTcpSocket* const socket = m_listener->nextPendingConnection())
                new Connection(*this, socket);
        });
        EXPECT_TRUE(m_listener->listen(QHostAddress::LocalHost));
        m_port = m_listener->serverPort();
    }

    const bool m_isSecure;
    quint16 m_port = 0;
    QThread m_thread;
    QTcpServer* m_listener = nullptr;
    std::vector<Connection*> m_connections;
    std::int64_t m_released = 0;
};

TestHTTPServer::TestHTTPServer(const std::string& certificate)
    : m_server(std::make_unique<Server>(certificate))
{
}

TestHTTPServer::~TestHTTPServer() = default;

std::string TestHTTPServer::url(const std::string& path) const
{
    return m_server->root() + path;
}

void TestHTTPServer::set(const std::string& path, HTTPAnswer answer)
{
    m_server->onThread([&] { m_server->answers[path] = std::move(answer); });
}

void TestHTTPServer::release(std::int64_t bytes)
{
    m_server->onThread([&] { m_server->release(bytes); });
}

std::vector<HTTPRequest> TestHTTPServer::requests() const
{
    std::vector<HTTPRequest> all;
    m_server->onThread([&] { all = m_server->requests; });
    return all;
}

std::int64_t TestHTTPServer::bytesSent() const
{
    return m_server->bytesSent;
}

int TestHTTPServer::connections() const
{
    return m_server->connectionCount;
}

} // namespace lamina::test
