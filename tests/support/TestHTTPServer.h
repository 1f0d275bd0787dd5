#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lamina::test {

/// What the server answers.
struct HTTPAnswer {
    enum class Framing {
        Length,      ///< a Content-Length
        Chunked,     ///< chunks of `piece` bytes
        UntilClosed, ///< no length: the connection's end is the body's
    };
    int status = 200;
    std::string body = {};
    std::vector<std::pair<std::string, std::string>> headers = {};
    Framing framing = Framing::Length;
    std::int64_t copies = 1;    ///< of the body, one behind the other; `kEndless` makes no end of it
    std::size_t piece = 16'384; ///< bytes that are written at once
    bool isHeld = false;        ///< bytes of the body go when `release` lets them
    bool isPacked = false;      ///< as gzip; a body that isn't endless
    std::int64_t cutAt = -1;    ///< closes the connection after so many bytes of the body
    bool isSilent = false;      ///< takes the request and says nothing

    static constexpr std::int64_t kEndless = std::int64_t{1} << 62;
};
/// To another address.
HTTPAnswer redirectTo(const std::string& location, int status = 302);

/// A request as it came: names of headers in lower case.
struct HTTPRequest {
    std::string method;
    std::string path; ///< with its query
    std::map<std::string, std::string> headers;
};

/// A real server on this machine, on a thread of its own. Needs a `QCoreApplication`. All of it from one thread.
class TestHTTPServer {
public:
    /// Over TLS with a certificate of tests/data/tls ("good", "expired", "other"); in the open without a name.
    explicit TestHTTPServer(const std::string& certificate = {});
    ~TestHTTPServer();
    TestHTTPServer(const TestHTTPServer&) = delete;
    TestHTTPServer& operator=(const TestHTTPServer&) = delete;

    /// The address of a path such as "/picture.jpg", or of the root.
    std::string url(const std::string& path = "/") const;
    /// What that path answers from now on, whatever the query; others answer 404.
    void set(const std::string& path, HTTPAnswer answer);
    /// Lets further bytes of held bodies go, of all paths together.
    void release(std::int64_t bytes = HTTPAnswer::kEndless);

    /// All that came so far.
    std::vector<HTTPRequest> requests() const;
    /// Bytes of bodies that were given to the system.
    std::int64_t bytesSent() const;
    /// Connections that stand.
    int connections() const;

private:
    class Server;
    std::unique_ptr<Server> m_server;
};

} // namespace lamina::test
