#include "model/document.h"

#include "model/document_fields.h"
#include "model/json_reader.h"
#include "model/json_writer.h"

#include <bitset>
#include <charconv>
#include <cmath>
#include <locale>
#include <sstream>

namespace velmora
{
namespace
{

/// Where in the document a value lies; put into words only when something is wrong there.
struct Place {
    const Place* outer = nullptr;
    std::string_view key{};
    std::optional<std::size_t> index{};

    [[nodiscard]] std::string text() const
    {
        if (outer == nullptr)
            return {};
        std::string whole = outer->text();
        if (index)
            return whole + "[" + std::to_string(*index) + "]";
        return (whole.empty() ? whole : whole + ".") + std::string(key);
    }

    [[noreturn]] void fail(const std::string& what) const
    {
        const std::string where = text();
        throw DocumentError((where.empty() ? "the document" : where) + ": " + what);
    }
};

template <typename T>
constexpr bool isOptional = false;
template <typename T>
constexpr bool isOptional<std::optional<T>> = true;

std::string tooLarge()
{
    return "the document is larger than " + std::to_string(Document::maximumSize / (1024 * 1024)) + " MiB";
}

class Encoder
{
public:
    std::string encode(const DMGProject& project)
    {
        write({}, project);
        return m_json.take();
    }

private:
    void write(const Place& place, double value)
    {
        if (!std::isfinite(value))
            place.fail("the number is not finite");
        m_json.number(value);
    }
    void write(const Place&, std::int64_t value) { m_json.number(value); }
    void write(const Place&, bool value) { m_json.boolean(value); }
    void write(const Place& place, const std::string& value)
    {
        if (!m_json.string(value))
            place.fail("the text is not UTF-8");
    }
    void write(const Place& place, const Uuid& value) { write(place, value.toString()); }
    template <typename E>
    requires std::is_enum_v<E>
    void write(const Place& place, E value) { write(place, std::string(rawValue(value))); }

    template <typename T>
    void write(const Place& place, const std::vector<T>& list)
    {
        m_json.beginArray();
        for (std::size_t i = 0; i < list.size(); ++i)
            write(Place{&place, {}, i}, list[i]);
        m_json.endArray();
    }

    template <typename Record>
    requires std::is_class_v<Record>
    void write(const Place& place, const Record& record)
    {
        m_json.beginObject();
        visitFields(record, [&](std::string_view key, const auto& field) {
            writeField(Place{&place, key, {}}, field);
        });
        m_json.endObject();
    }

    template <typename T>
    void writeField(const Place& place, const T& field)
    {
        if constexpr (isOptional<T>) {
            if (field)
                writeField(place, *field);
        } else {
            m_json.key(place.key);
            write(place, field);
        }
    }

    JsonWriter m_json{};
};

class Decoder
{
public:
    explicit Decoder(std::string_view bytes) : m_json(bytes) { m_number.imbue(std::locale::classic()); }

    DMGProject decode()
    {
        DMGProject project;
        read({}, project);
        m_json.finish();
        return project;
    }

private:
    void expect(const Place& place, JsonReader::Type type, const char* what)
    {
        if (m_json.peek() != type)
            place.fail(std::string("expected ") + what);
    }

    void read(const Place& place, double& value)
    {
        expect(place, JsonReader::Type::number, "a number");
        value = readDouble(place, m_json.readNumber());
    }

    double readDouble(const Place& place, std::string_view text)
    {
        // Slow, but independent of the locale, and from_chars for doubles is missing from some standard libraries.
        m_number.clear();
        m_number.str(std::string(text));
        double value = 0;
        m_number >> value;
        // What is too small to tell from zero may count as a failure too; the value is right then.
        if (m_number.fail() && std::abs(value) >= 1)
            place.fail("the number is too large");
        return value;
    }

    void read(const Place& place, std::int64_t& value)
    {
        expect(place, JsonReader::Type::number, "a whole number");
        const std::string_view text = m_json.readNumber();
        const auto parsed = std::from_chars(text.data(), text.data() + text.size(), value);
        if (parsed.ec == std::errc{} && parsed.ptr == text.data() + text.size())
            return;
        // 5.0 and 5e0 are whole numbers as well.
        const double number = readDouble(place, text);
        if (std::trunc(number) != number)
            place.fail("expected a whole number");
        if (std::abs(number) > 0x1p53) // beyond, the conversion could have rounded a whole number
            place.fail("the number is too large");
        value = static_cast<std::int64_t>(number);
    }

    void read(const Place& place, bool& value)
    {
        expect(place, JsonReader::Type::boolean, "true or false");
        value = m_json.readBool();
    }

    void read(const Place& place, std::string& value)
    {
        expect(place, JsonReader::Type::string, "a text");
        value = m_json.readString();
    }

    void read(const Place& place, Uuid& value)
    {
        std::string text;
        read(place, text);
        const auto uuid = Uuid::parse(text);
        if (!uuid)
            place.fail("expected a UUID such as \"" + Uuid{}.toString() + "\"");
        value = *uuid;
    }

    template <typename E>
    requires std::is_enum_v<E>
    void read(const Place& place, E& value)
    {
        std::string text;
        read(place, text);
        const auto known = fromRawValue<E>(text);
        if (!known)
            place.fail("expected one of " + choices<E>());
        value = *known;
    }

    template <typename E>
    static std::string choices()
    {
        std::string list;
        for (const E value : allCases<E>())
            list += (list.empty() ? "\"" : ", \"") + std::string(rawValue(value)) + "\"";
        return list;
    }

    void read(const Place& place, std::optional<std::string>& value)
    {
        if (m_json.peek() == JsonReader::Type::null)
            m_json.readNull();
        else
            read(place, value.emplace());
    }

    template <typename T>
    void read(const Place& place, std::vector<T>& list)
    {
        expect(place, JsonReader::Type::array, "a list");
        m_json.readArray([&](std::size_t index) { read(Place{&place, {}, index}, list.emplace_back()); });
    }

    template <typename Record>
    requires std::is_class_v<Record>
    void read(const Place& place, Record& record)
    {
        expect(place, JsonReader::Type::object, "an object");
        std::bitset<64> seen;
        m_json.readObject([&](const std::string& key) {
            bool known = false;
            std::size_t number = 0;
            visitFields(record, [&](std::string_view name, auto& field) {
                const std::size_t own = number++;
                if (known || name != key)
                    return;
                known = true;
                const Place inner{&place, name, {}};
                if (seen.test(own))
                    inner.fail("the key is given twice");
                seen.set(own);
                read(inner, field);
            });
            if (!known)
                m_json.skip();
        });
        std::size_t number = 0;
        visitFields(record, [&](std::string_view name, auto& field) {
            if (!seen.test(number++) && !isOptional<std::remove_reference_t<decltype(field)>>)
                Place{&place, name, {}}.fail("the key is missing");
        });
    }

    JsonReader m_json;
    std::istringstream m_number{};
};

} // namespace

namespace Document
{

std::string encode(const DMGProject& project)
{
    std::string text = Encoder().encode(project);
    // It could not be read again.
    if (text.size() > maximumSize)
        throw DocumentError(tooLarge());
    return text;
}

DMGProject decode(std::string_view bytes)
{
    if (bytes.size() > maximumSize)
        throw DocumentError(tooLarge());
    DMGProject project = Decoder(bytes).decode();
    project.migrateLegacyIconCoordinatesIfNeeded();
    for (std::size_t i = 0; i < project.items.size(); ++i) { // with sizes near the largest number it can leave these
        if (!std::isfinite(project.items[i].x) || !std::isfinite(project.items[i].y))
            throw DocumentError("items[" + std::to_string(i) + "]: the position is too large");
    }
    return project;
}

} // namespace Document
} // namespace velmora
