#include "platform/net/NSURLSession.h"

#include "CommandRunner.h"
#include "TestHTTPServer.h"
#include "TestPaths.h"
#include "platform/net/NetworkCauses.h"

#include <QCoreApplication>
#include <QSslCertificate>
#include <QSslConfiguration>

#include <future>
#include <gtest/gtest.h>

namespace lamina {
namespace {

using test::HTTPAnswer;
using test::TestHTTPServer;
using enum HTTPAnswer::Framing;

NSURLTaskResult load(NSURLRequest request)
{
    std::promise<NSURLTaskResult> promise;
    auto future = promise.get_future();
    NSURLSession::sharedSession().dataTask(std::move(request),
                                           [&](NSURLTaskResult result) { promise.set_value(std::move(result)); });
    return future.get();
}

std::string bodyOf(const NSURLTaskResult& result)
{
    return result.data ? std::string(result.data->begin(), result.data->end()) : "nothing came";
}

std::string causeOf(const NSURLTaskResult& result)
{
    return result.error ? result.error->cause : "";
}

const std::vector<std::pair<std::string, std::string>> gzip{{"Content-Encoding", "gzip"}};

struct Case {
    const char* name;
    HTTPAnswer answer;
    std::string body;
    std::int64_t length = -1;
    const char* cause = "";
};

TEST(NSURLSession, TakesEveryFormOfAnswer)
{
    const std::string text = "hello from afar";
    const Case cases[] = {
        {"of a length", {.body = text}, text, 15},
        {"chunked", {.body = text, .framing = Chunked, .piece = 4}, text},
        {"until closed", {.body = text, .framing = UntilClosed}, text},
        {"empty", {}, "", 0},
        {"no content", {.status = 204}, ""},
        {"asks for credentials", {.status = 401, .body = text, .headers = {{"WWW-Authenticate", "Basic"}}}, text, 15},
        {"failed", {.status = 500, .body = text, .framing = Chunked}, text},
        {"leads nowhere", {.status = 302, .body = text}, text, 15},
        {"packed", {.body = text, .copies = 2, .isPacked = true}, text + text},
        {"packed byte by byte", {.body = text, .framing = Chunked, .piece = 1, .isPacked = true}, text},
        {"cut", {.body = text, .cutAt = 5}, "hello", 15, cause::kAnswerCut},
        {"cut while failed", {.status = 500, .body = text, .cutAt = 5}, "hello", 15, cause::kAnswerCut},
        {"cut gzip",
         {.body = text, .framing = UntilClosed, .isPacked = true, .cutAt = 20},
         text,
         -1,
         cause::kAnswerCut},
        {"not packed as told", {.body = text, .headers = gzip}, "", -1, cause::kAnswerDamaged},
        {"packed otherwise", {.headers = {{"Content-Encoding", "br"}}}, "nothing came", -1, cause::kAnswerDamaged},
    };
    TestHTTPServer server;
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        server.set("/", each.answer);
        const NSURLTaskResult result = load({.URL = server.url("/?secret")});
        // The last of what came before a cut may be lost.
        EXPECT_TRUE(*each.cause ? each.body.starts_with(bodyOf(result)) : each.body == bodyOf(result));
        EXPECT_EQ(causeOf(result), each.cause);
        EXPECT_EQ(result.error.value_or(Error{server.url(), ""}).subject, server.url());
        if (!result.data)
            continue;
        EXPECT_EQ(result.response->statusCode, each.answer.status);
        EXPECT_EQ(result.response->expectedContentLength, each.length);
        EXPECT_EQ(result.response->URL, server.url("/?secret"));
    }
}

TEST(NSURLSession, BoundsWhatItTakes)
{
    const std::string block(1 << 16, 'x');
    const std::string nothing("\x1F\x8B\x08\0\0\0\0\0\0\x03\x03\0\0\0\0\0\0\0\0\0", 20);
    const Case cases[] = {
        {"by its claim", {.body = block, .copies = 1 << 20}, ""},
        {"without end", {.body = block, .framing = Chunked, .copies = HTTPAnswer::kEndless}, ""},
        {"packed nothing", {.body = nothing, .headers = gzip, .framing = Chunked, .copies = HTTPAnswer::kEndless}, ""},
        {"packed", {.body = block, .copies = 1 << 8, .isPacked = true}, ""},
    };
    TestHTTPServer server;
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        server.set("/", each.answer);
        const NSURLTaskResult result = load({.URL = server.url(), .mostBytes = 1 << 20});
        EXPECT_EQ(causeOf(result), cause::kAnswerTooLarge);
        EXPECT_LE(result.data ? result.data->size() : 0, std::size_t{1} << 20);
    }
    server.set("/", {.isSilent = true});
    EXPECT_EQ(causeOf(load({.URL = server.url(), .timeoutInterval = 0.1})), cause::kServerSilent);
    EXPECT_EQ(causeOf(load({.URL = server.url(), .mostSeconds = 0.1})), cause::kDownloadTooLong);
}

TEST(NSURLSession, FollowsRedirectionsWithinBounds)
{
    TestHTTPServer server;
    server.set("/a", test::redirectTo("b?x=1", 301));
    server.set("/b", test::redirectTo(server.url("/c"), 307));
    server.set("/c", {.body = "there"});
    server.set("/file", test::redirectTo("file:///etc/passwd"));
    const NSURLTaskResult result = load({.URL = server.url("/a"), .mostRedirects = 2});
    EXPECT_EQ(bodyOf(result), "there");
    EXPECT_EQ(result.response->URL, server.url("/c"));
    EXPECT_EQ(causeOf(load({.URL = server.url("/a"), .mostRedirects = 1})), cause::kTooManyRedirects);
    EXPECT_EQ(causeOf(load({.URL = server.url("/file")})), cause::kForeignRedirect);
    EXPECT_EQ(server.requests().size(), 3u + 2u + 1u);
}

TEST(NSURLSession, TellsNothingOfTheUser)
{
    TestHTTPServer server;
    server.set("/a", {.status = 302, .headers = {{"Location", "/b"}, {"Set-Cookie", "known=1; Path=/"}}});
    server.set("/b", {.status = 401, .headers = {{"WWW-Authenticate", "Basic realm=\"x\""}}});
    std::string url = server.url("/a");
    load({.URL = url.insert(url.find("127"), "user:secret@")});
    ASSERT_EQ(server.requests().size(), 2u);
    for (const test::HTTPRequest& request : server.requests()) {
        EXPECT_EQ(request.method, "GET");
        EXPECT_EQ(request.headers.at("user-agent").rfind("lamina/", 0), 0u);
        EXPECT_EQ(request.headers.at("accept-language"), "*");
        for (const char* const header : {"cookie", "authorization", "referer"})
            EXPECT_FALSE(request.headers.contains(header)) << header;
    }
}

TEST(NSURLSession, RefusesWhatIsNoAddressAndWhoIsNotThere)
{
    for (const char* const url : {"", "beach", "http://", "ftp://127.0.0.1/", "file:///etc/passwd", "http://a b/"})
        EXPECT_EQ(causeOf(load({.URL = url})), cause::kNotAWebAddress) << url;
    std::string gone;
    {
        const TestHTTPServer server;
        gone = server.url();
    }
    EXPECT_EQ(causeOf(load({.URL = gone})), cause::kConnectionRefused);
}

TEST(NSURLSession, TellsWhatIsWrongWithACertificate)
{
    for (const auto& [certificate, cause] :
         {std::pair("good", cause::kCertificateSelfSigned), std::pair("expired", cause::kCertificateExpired),
          std::pair("other", cause::kCertificateOfAnother)}) {
        const TestHTTPServer server(certificate);
        const NSURLTaskResult result = load({.URL = server.url()});
        EXPECT_EQ(causeOf(result), cause);
        EXPECT_TRUE(server.requests().empty());
    }
}

TEST(NSURLSession, NeverLeavesASecureConnectionForAnOpenOne)
{
    const QSslConfiguration former = QSslConfiguration::defaultConfiguration();
    QSslConfiguration trusting = former;
    trusting.addCaCertificates(QString::fromStdString(test::testData("tls/good.pem")));
    QSslConfiguration::setDefaultConfiguration(trusting);

    TestHTTPServer open;
    TestHTTPServer secure("good");
    open.set("/", test::redirectTo(secure.url("/here")));
    secure.set("/here", {.body = "safe"});
    secure.set("/", test::redirectTo(open.url()));
    EXPECT_EQ(bodyOf(load({.URL = open.url()})), "safe");
    EXPECT_EQ(causeOf(load({.URL = secure.url()})), cause::kInsecureRedirect);
    EXPECT_EQ(open.requests().size(), 1u);

    QSslConfiguration::setDefaultConfiguration(former);
}

/// For the test below, in a process of its own.
TEST(NSURLSession, DISABLED_BeginsLoadsAndGoes)
{
    const std::string server = QCoreApplication::arguments().last().toStdString();
    for (const char* const path : {"silent", "endless"})
        NSURLSession::sharedSession().dataTask({.URL = server + path}, [](const NSURLTaskResult&) {});
    EXPECT_EQ(causeOf(load({.URL = server + "short"})), "");
}

TEST(NSURLSession, LoadsUnderWayDontKeepTheApplication)
{
    TestHTTPServer server;
    server.set("/silent", {.isSilent = true});
    server.set("/endless", {.body = "x", .framing = Chunked, .copies = HTTPAnswer::kEndless});
    server.set("/short", {.body = "x"});
    const test::CommandResult run =
        test::runCommand("/proc/self/exe", {"--gtest_also_run_disabled_tests",
                                            "--gtest_filter=*DISABLED_BeginsLoadsAndGoes", server.url()});
    EXPECT_EQ(run.exitCode, 0) << run.errors;
}

} // namespace
} // namespace lamina
