#pragma once

#include <concepts>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

// Writes one JSON document as it goes, indented, keys in the order of the calls. Numbers that are not finite become
// null; bytes that are no UTF-8 become the replacement character, so that every output can be read.
class Json
{
public:
    explicit Json(std::ostream& stream) : out(stream) {}

    Json& beginObject() { return begin('{'); }
    Json& endObject() { return end('}'); }
    Json& beginArray() { return begin('['); }
    Json& endArray() { return end(']'); }
    /// The name of the value that follows.
    Json& key(std::string_view name);

    Json& value(std::string_view text);
    Json& value(const char* text) { return text ? value(std::string_view(text)) : null(); }
    Json& value(const std::string& text) { return value(std::string_view(text)); }
    Json& value(bool truth);
    Json& value(double number);
    Json& value(float number);
    template <std::integral Number>
    Json& value(Number number)
    {
        return raw(std::to_string(number));
    }
    Json& null() { return raw("null"); }
    /// key() and value() in one.
    template <class Value>
    Json& member(std::string_view name, const Value& content)
    {
        return key(name).value(content);
    }

private:
    Json& begin(char bracket);
    Json& end(char bracket);
    Json& raw(std::string_view text);
    void startValue();
    void startLine();
    void quote(std::string_view text);

    std::ostream& out;
    std::vector<bool> emptyLevels; // of the open objects and arrays: nothing in it yet
    bool keyed = false;            // the next value has its name already
};
