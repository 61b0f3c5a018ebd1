#include "update/update_feed.h"

#include "model/document.h"
#include "model/json_reader.h"

#include <QString>
#include <QUrl>

namespace velmora
{
namespace
{

/// The next value when it is a text, else nothing; either way it is consumed.
std::optional<std::string> readText(JsonReader& json)
{
    if (json.peek() == JsonReader::Type::string)
        return json.readString();
    json.skip();
    return std::nullopt;
}

} // namespace

std::optional<UpdateFeed> parseUpdateFeed(std::string_view body)
{
    std::optional<std::string> version;
    std::optional<std::string> url;
    try {
        JsonReader json(body);
        if (json.peek() != JsonReader::Type::object)
            return std::nullopt;
        json.readObject([&](const std::string& key) {
            if (key == "version")
                version = readText(json);
            else if (key == "url")
                url = readText(json);
            else
                json.skip();
        });
        json.finish();
    } catch (const DocumentError&) {
        return std::nullopt; // what exactly is wrong with the feed helps nobody who looks for an update
    }
    if (!version)
        return std::nullopt;
    return UpdateFeed{*version, url};
}

std::string addressToOpen(const std::optional<std::string>& url, const std::string& fallback)
{
    // Nothing but a web page may be opened at the feed's word: no file, no script, no other program's scheme.
    const QUrl address(QString::fromStdString(url.value_or("")), QUrl::StrictMode);
    const bool web = address.scheme() == QLatin1String("https") || address.scheme() == QLatin1String("http");
    if (!address.isValid() || !web || address.host().isEmpty())
        return fallback;
    return address.toEncoded().toStdString();
}

} // namespace velmora
