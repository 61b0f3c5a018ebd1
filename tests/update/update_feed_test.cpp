#include "update/update_feed.h"

#include "update/app_links.h"

#include <gtest/gtest.h>

namespace velmora
{
namespace
{

TEST(UpdateFeed, readsWhatIsThereAndRefusesWhatIsNotJson)
{
    const struct {
        const char* name;
        std::string body;
        std::optional<UpdateFeed> feed;
    } cases[] = {
        {"both keys", R"({"version": "1.2", "url": "https://a.test/"})", UpdateFeed{"1.2", "https://a.test/"}},
        {"version alone", R"({"version":"1.2"})", UpdateFeed{"1.2", std::nullopt}},
        {"other keys are passed over", R"({"a":[1,{"version":"9"}],"version":"1.2"})", UpdateFeed{"1.2", std::nullopt}},
        {"an address that is no text", R"({"version":"1.2","url":["https://a.test/"]})",
         UpdateFeed{"1.2", std::nullopt}},
        {"escapes", R"({"version":"1\u002e2"})", UpdateFeed{"1.2", std::nullopt}},
        {"an empty version is a text", R"({"version":""})", UpdateFeed{"", std::nullopt}},
        {"a version that is a number", R"({"version":1.2})", std::nullopt},
        {"a version that is null", R"({"version":null})", std::nullopt},
        {"no version", R"({"Version":"1.2"})", std::nullopt},
        {"a list", R"(["version"])", std::nullopt},
        {"a text", R"("version")", std::nullopt},
        {"nothing", "", std::nullopt},
        {"a page", "<html><body>404</body></html>", std::nullopt},
        {"cut short", R"({"version":"1.2","url")", std::nullopt},
        {"something after the end", R"({"version":"1.2"}x)", std::nullopt},
        {"a comma too many", R"({"version":"1.2",})", std::nullopt},
        {"a line break in a text", "{\"version\":\"1\n2\"}", std::nullopt},
        {"an unknown escape", R"({"version":"1\q2"})", std::nullopt},
        {"a number without digits", R"({"version":"1.2","size":1.})", std::nullopt},
        {"bytes that are not UTF-8", "{\"version\":\"\xFF\"}", std::nullopt},
        {"nested without end", std::string(500000, '['), std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_TRUE(parseUpdateFeed(c.body) == c.feed);
    }
}

TEST(UpdateFeed, opensOnlyWellFormedWebAddresses)
{
    const std::string fallback = "https://fallback.test/";
    const struct {
        const char* name;
        std::optional<std::string> url;
        std::string opened;
    } cases[] = {
        {"https", "https://a.test/x?y=1#z", "https://a.test/x?y=1#z"},
        {"http", "http://a.test/", "http://a.test/"},
        {"scheme in capitals", "HTTPS://a.test/", "https://a.test/"},
        {"not ASCII: encoded", "https://a.test/\xC3\xBC", "https://a.test/%C3%BC"},
        {"missing", std::nullopt, fallback},
        {"empty", "", fallback},
        {"relative", "/download", fallback},
        {"without a scheme", "//a.test/x", fallback},
        {"a bare name", "a.test", fallback},
        {"without a host", "https:///x", fallback},
        {"only a scheme", "https://", fallback},
        {"no slashes", "https:a.test", fallback},
        {"a blank inside", "https://a.test/a b", fallback},
        {"a broken escape", "https://a.test/%zz", fallback},
        {"an impossible port", "https://a.test:99999/", fallback},
        {"a line break", "https://a.test/\n", fallback},
        {"a file", "file:///etc/passwd", fallback},
        {"a script", "javascript:alert(1)", fallback},
        {"another program's scheme", "ssh://a.test/", fallback},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(addressToOpen(c.url, fallback), c.opened);
    }
    for (const char* link : {AppLinks::website, AppLinks::download, AppLinks::appcast})
        EXPECT_EQ(addressToOpen(link, fallback), link);
}

} // namespace
} // namespace velmora
