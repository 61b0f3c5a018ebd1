#include "update/updater.h"

#include "l10n/embedded_language_packs.h"
#include "update/local_server.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <ostream>

namespace velmora
{

static void PrintTo(const Alert& alert, std::ostream* out)
{
    *out << alert.title << " | " << alert.text;
    for (const auto& button : alert.buttons)
        *out << " [" << button << "]";
}

namespace
{

class ScriptedAlerts : public Alerts
{
public:
    std::size_t show(const Alert& alert) override
    {
        shown.push_back(alert);
        return answer;
    }

    std::vector<Alert> shown{};
    std::size_t answer = 1;
};

class RecordingDesktop : public Desktop
{
public:
    void reveal(const std::filesystem::path&) override { ADD_FAILURE() << "nothing to reveal"; }
    void openFolder(const std::filesystem::path&) override { ADD_FAILURE() << "nothing to open"; }
    void openAddress(const std::string& address) override { opened.push_back(address); }

    std::vector<std::string> opened{};
};

const char* const downloadPage = "https://downloads.test/";
const Alert upToDate{
    .title = "You’re Up to Date", .text = "Velmora 1.0.27 is the latest version.", .style = AlertStyle::informational};

Alert available(const std::string& version)
{
    return {.title = "Velmora " + version + " is available",
            .text = "You have 1.0.27. Would you like to download the update?",
            .style = AlertStyle::informational,
            .buttons = {"Download", "Later"}};
}

Alert failed()
{
    return {.title = "Couldn’t Check for Updates",
            .text = EmbeddedLanguagePacks::english().at("updates.check_fail_body")};
}

class UpdaterTest : public testing::Test
{
protected:
    void SetUp() override { m_updater = makeUpdater(); }

    std::unique_ptr<Updater> makeUpdater()
    {
        UpdateSource source{.currentVersion = "1.0.27",
                            .appcast = m_server.url(QStringLiteral("/appcast.json")),
                            .download = downloadPage};
        auto updater = std::make_unique<Updater>(source, *m_settings, m_alerts, m_desktop, [](std::string_view key) {
            const auto texts = EmbeddedLanguagePacks::english();
            const auto found = texts.find(key);
            return found == texts.end() ? std::string(key) : found->second;
        });
        QObject::connect(updater.get(), &Updater::checkFinished, updater.get(), [this] { ++m_finished; });
        return updater;
    }

    void serve(const QByteArray& body) { m_server.answer("/appcast.json", Answer::ok(body)); }

    void runCheck(bool userInitiated)
    {
        const int before = m_finished;
        m_updater->check(userInitiated);
        ASSERT_TRUE(waitUntil([&] { return m_finished > before; }));
    }

    LocalServer m_server{std::nullopt};
    QTemporaryDir m_folder;
    std::unique_ptr<SettingsStore> m_settings =
        openSettingsFile(std::filesystem::path(m_folder.path().toStdString()) / "settings.ini");
    ScriptedAlerts m_alerts;
    RecordingDesktop m_desktop;
    int m_finished = 0;
    std::unique_ptr<Updater> m_updater;
};

TEST_F(UpdaterTest, tellsThePersonWhatTheFeedSays)
{
    const QByteArray newer = R"({"version":"1.0.30","url":"https://a.test/get"})";
    const struct {
        const char* name;
        Answer answer;
        std::optional<Alert> onRequest;
        std::optional<Alert> onStartUp;
    } cases[] = {
        {"newer", Answer::ok(newer), available("1.0.30"), available("1.0.30")},
        {"the same", Answer::ok(R"({"version":"1.0.27"})"), upToDate, {}},
        {"older than the program", Answer::ok(R"({"version":"1.0.3"})"), upToDate, {}},
        {"a number for a version", Answer::ok(R"({"version":2})"), failed(), {}},
        {"not JSON", Answer::ok("soon"), failed(), {}},
        {"an error page", Answer::of("404 Not Found\r\nContent-Length: 6", "<html>"), failed(), {}},
        {"an error status with a feed", Answer::of("500 Oops", newer), available("1.0.30"), available("1.0.30")},
        {"cut short", Answer::of("200 OK\r\nContent-Length: 99", newer.left(30)), failed(), {}},
        {"above a mebibyte", Answer::ok(newer + QByteArray(1024 * 1024, ' ')), failed(), {}},
        {"just a mebibyte", Answer::ok(newer.leftJustified(1024 * 1024)), available("1.0.30"), available("1.0.30")},
        {"no screen is wide enough", Answer::ok("{\"version\":\"2." + QByteArray(9000, '1') + "\"}"),
         available("2." + std::string(62, '1') + "…"), available("2." + std::string(62, '1') + "…")},
        {"line breaks in the version", Answer::ok(R"({"version":"2\n\n3"})"), available("2 3"), available("2 3")},
    };
    for (const auto& c : cases) {
        for (const bool userInitiated : {true, false}) {
            SCOPED_TRACE(std::string(c.name) + (userInitiated ? ", on request" : ", at start-up"));
            m_server.answer("/appcast.json", c.answer);
            m_alerts.shown.clear();
            runCheck(userInitiated);
            const auto& expected = userInitiated ? c.onRequest : c.onStartUp;
            EXPECT_EQ(m_alerts.shown, expected ? std::vector{*expected} : std::vector<Alert>{});
        }
    }
    EXPECT_TRUE(m_desktop.opened.empty()) << "Later opens nothing";
}

TEST_F(UpdaterTest, opensTheFeedsAddressOrTheDownloadPage)
{
    const struct {
        const char* feed;
        const char* opened;
    } cases[] = {
        {R"({"version":"1.0.30","url":"https://a.test/get"})", "https://a.test/get"},
        {R"({"version":"1.0.30","url":"not an address"})", downloadPage},
        {R"({"version":"1.0.30","url":7})", downloadPage},
        {R"({"version":"1.0.30"})", downloadPage},
    };
    m_alerts.answer = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.feed);
        serve(c.feed);
        m_desktop.opened.clear();
        runCheck(false);
        EXPECT_EQ(m_desktop.opened, std::vector<std::string>{c.opened});
    }
    serve(R"({"version":"1.0.27","url":"https://a.test/get"})");
    m_desktop.opened.clear();
    runCheck(true);
    EXPECT_TRUE(m_desktop.opened.empty()) << "the up-to-date alert's one button is no download";
}

TEST_F(UpdaterTest, checksAtStartUpUnlessTheUserForbadeIt)
{
    serve(R"({"version":"1.0.30"})");
    EXPECT_TRUE(m_updater->autoCheck());
    m_updater->setAutoCheck(false);
    EXPECT_FALSE(makeUpdater()->autoCheck()) << "it is stored";
    EXPECT_EQ(m_settings->boolValue("autoCheckUpdates"), false);

    m_updater->checkAtStartUp();
    runCheck(true);
    EXPECT_EQ(m_server.requests().size(), 1) << "only the one that was asked for";
    m_updater->setAutoCheck(true);
    m_updater->checkAtStartUp();
    EXPECT_TRUE(waitUntil([&] { return m_finished == 2; }));
    EXPECT_EQ(m_server.requests().value(0), "GET /appcast.json HTTP/1.1");
}

TEST_F(UpdaterTest, answersEachCheckOnceAndNoneWhenItIsGone)
{
    serve(R"({"version":"1.0.27"})");
    m_updater->check();
    m_updater->check();
    EXPECT_TRUE(m_alerts.shown.empty()) << "a check returns before it answers";
    EXPECT_TRUE(waitUntil([&] { return m_finished == 2; }));
    EXPECT_EQ(m_alerts.shown.size(), 2U);

    m_updater->check();
    m_updater = makeUpdater();
    runCheck(true);
    EXPECT_EQ(m_alerts.shown.size(), 3U);
}

TEST(Updater, looksAtTheProductsOwnSiteWithTheUsualPatience)
{
    const auto source = officialUpdateSource();
    EXPECT_EQ(source.appcast.toString(), "https://velmora.app/appcast.json");
    EXPECT_EQ(source.limits.silence, std::chrono::seconds(8));
    EXPECT_EQ(source.limits.total, std::chrono::seconds(30));
    EXPECT_EQ(source.limits.largestBody, 1048576);
    EXPECT_EQ(source.tls.peerVerifyMode(), QSslSocket::AutoVerifyPeer);
}

} // namespace
} // namespace velmora
