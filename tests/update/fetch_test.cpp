#include "update/fetch.h"

#include "update/local_server.h"

#include <QElapsedTimer>
#include <QNetworkAccessManager>
#include <QTcpServer>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace velmora
{
namespace
{

using std::chrono::milliseconds;

/// Made once: a key takes a while.
const std::optional<TlsIdentity>& identity()
{
    static const auto made = TlsIdentity::make(QStringLiteral("IP:127.0.0.1"));
    return made;
}

QSslConfiguration trusting(const QSslCertificate& certificate)
{
    auto configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates({certificate});
    return configuration;
}

class FetchTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!identity())
            GTEST_SKIP() << "the openssl command makes no certificate here";
        m_server.emplace(identity());
        m_tls = trusting(identity()->certificate);
    }

    LocalServer& server() { return *m_server; }

    /// What is handed over, as text: "-" for nothing, "never" when there is no answer at all.
    std::string fetched(const QUrl& url)
    {
        QNetworkAccessManager manager;
        QObject context;
        std::string result = "never";
        QElapsedTimer timer;
        timer.start();
        fetch(manager, url, m_tls, m_limits, &context,
              [&](const std::optional<QByteArray>& body) { result = body ? body->toStdString() : "-"; });
        waitUntil([&] { return result != "never"; });
        m_took = milliseconds(timer.elapsed());
        return result;
    }

    std::string fetched(const Answer& answer)
    {
        server().answer("/feed", answer);
        return fetched(server().url(QStringLiteral("/feed")));
    }

    std::optional<LocalServer> m_server;
    QSslConfiguration m_tls;
    FetchLimits m_limits{.silence = milliseconds(600), .total = milliseconds(4000), .largestBody = 1000};
    milliseconds m_took{};
};

TEST_F(FetchTest, handsOverWhateverBodyComes)
{
    const QByteArray zeros(100000, '0');
    const QByteArray squeezed = qCompress(zeros).mid(4);
    const struct {
        const char* name;
        Answer answer;
        std::string body;
    } cases[] = {
        {"an ordinary answer", Answer::ok("{}"), "{}"},
        {"no length, ended by closing", Answer::of("200 OK", "{}"), "{}"},
        {"in chunks", Answer::of("200 OK\r\nTransfer-Encoding: chunked", "1\r\n{\r\n1\r\n}\r\n0\r\n\r\n"), "{}"},
        {"an error page", Answer::of("404 Not Found\r\nContent-Length: 6", "<html>"), "<html>"},
        {"a server error without a body", Answer::of("500 Oops\r\nContent-Length: 0", ""), ""},
        {"cut short", Answer::of("200 OK\r\nContent-Length: 90", "{\"ver"), "{\"ver"},
        {"longer than it says", Answer::of("200 OK\r\nContent-Length: 2", "{}junk"), "{}"},
        {"as large as allowed", Answer::ok(QByteArray(1000, 'x')), std::string(1000, 'x')},
        {"compressed though nobody asked: not unpacked",
         Answer::of("200 OK\r\nContent-Encoding: deflate\r\nContent-Length: " + QByteArray::number(squeezed.size()),
                    squeezed),
         squeezed.toStdString()},
        {"not HTTP at all", {.bytes = "SSH-2.0-None\r\n\r\n"}, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(fetched(c.answer), c.body);
    }
}

TEST_F(FetchTest, handsNothingOverOnceALimitIsPassed)
{
    const QByteArray head = "HTTP/1.1 200 OK\r\nContent-Length: 60\r\n\r\n";
    const struct {
        const char* name;
        Answer answer;
    } cases[] = {
        {"one byte too many", Answer::ok(QByteArray(1001, 'x'))},
        {"one byte too many, unannounced", Answer::of("200 OK", QByteArray(1001, 'x'))},
        {"silence before the headers", {.bytes = "", .closes = false}},
        {"silence in the headers", {.bytes = "HTTP/1.1 200 OK\r\n", .closes = false}},
        {"silence in the body, though what came is whole", {.bytes = head + "{}", .closes = false}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(fetched(c.answer), "-");
        EXPECT_LT(m_took, milliseconds(3000)) << "ended by silence, not by the limit on the whole";
    }

    server().answer("/endless", {.bytes = "HTTP/1.1 200 OK\r\n\r\n", .endless = QByteArray(1 << 20, 'x')});
    EXPECT_EQ(fetched(server().url(QStringLiteral("/endless"))), "-");
}

TEST_F(FetchTest, waitsForASlowAnswerButNotForEver)
{
    m_limits.total = milliseconds(1500);
    EXPECT_EQ(fetched({.bytes = "HTTP/1.1 200 OK\r\n\r\n", .drip = "{      }", .everyByte = milliseconds(100)}),
              "{      }");
    EXPECT_GE(m_took, milliseconds(700)) << "longer than the silence allowed, but never silent for so long";

    EXPECT_EQ(
        fetched({.bytes = "HTTP/1.1 200 OK\r\n\r\n", .drip = QByteArray(99, 'x'), .everyByte = milliseconds(100)}),
        "-");
    EXPECT_GE(m_took, milliseconds(1400));
    EXPECT_LT(m_took, milliseconds(3500));
}

TEST_F(FetchTest, followsRedirectsButNotOutOfEncryption)
{
    const auto redirect = [](const QUrl& to) {
        return Answer::of("302 Found\r\nContent-Length: 0\r\nLocation: " + to.toEncoded(), "");
    };
    server().answer("/target", Answer::ok("{}"));
    EXPECT_EQ(fetched(redirect(server().url(QStringLiteral("/target")))), "{}");

    LocalServer plain(std::nullopt);
    plain.answer("/target", Answer::ok("{}"));
    EXPECT_EQ(fetched(redirect(plain.url(QStringLiteral("/target")))), "");
    EXPECT_TRUE(plain.requests().isEmpty());

    EXPECT_EQ(fetched(redirect(QUrl(QStringLiteral("file:///etc/hostname")))), "");
    EXPECT_NE(fetched(redirect(server().url(QStringLiteral("/feed")))), "never") << "a circle comes to an end";
}

TEST_F(FetchTest, takesNothingFromAServerThatCannotProveItsName)
{
    const QUrl url = server().url(QStringLiteral("/feed"));
    server().answer("/feed", Answer::ok("{}"));
    m_tls.setCaCertificates({});
    EXPECT_EQ(fetched(url), "") << "an authority that nobody trusts";

    const auto elsewhere = TlsIdentity::make(QStringLiteral("DNS:elsewhere.test"));
    ASSERT_TRUE(elsewhere);
    LocalServer misnamed(elsewhere);
    misnamed.answer("/feed", Answer::ok("{}"));
    m_tls = trusting(elsewhere->certificate);
    EXPECT_EQ(fetched(misnamed.url(QStringLiteral("/feed"))), "") << "trusted, but for another name";
    EXPECT_TRUE(server().requests().isEmpty());
    EXPECT_TRUE(misnamed.requests().isEmpty());
}

TEST_F(FetchTest, givesUpOnAServerThatIsNotThere)
{
    QTcpServer mute; // connections are taken, but nobody speaks TLS
    ASSERT_TRUE(mute.listen(QHostAddress::LocalHost));
    QUrl url = server().url(QStringLiteral("/feed"));
    url.setPort(mute.serverPort());
    EXPECT_EQ(fetched(url), "-");
    EXPECT_LT(m_took, milliseconds(3000));
    mute.close();
    EXPECT_EQ(fetched(url), "") << "connection refused";
}

TEST_F(FetchTest, tellsNobodyWhoIsGone)
{
    QNetworkAccessManager manager;
    auto context = std::make_unique<QObject>();
    bool told = false;
    server().answer("/feed", Answer::ok("{}"));
    fetch(manager, server().url(QStringLiteral("/feed")), m_tls, m_limits, context.get(),
          [&](const auto&) { told = true; });
    context.reset();
    EXPECT_EQ(fetched(Answer::ok("{}")), "{}");
    EXPECT_FALSE(told);
}

} // namespace
} // namespace velmora
