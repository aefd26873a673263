#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

// Writes one JSON value after the other into a text; commas come by themselves.
class tbiJson
{
public:
    tbiJson& beginObject() { return open('{'); }
    tbiJson& endObject() { return close('}'); }
    tbiJson& beginArray() { return open('['); }
    tbiJson& endArray() { return close(']'); }
    tbiJson& key(std::string_view name)
    {
        string(name);
        text += ':';
        isFirst = true;
        return *this;
    }

    /// Bytes that are no UTF-8 count as Latin-1.
    tbiJson& string(std::string_view value);
    tbiJson& integer(long long value) { return raw(std::to_string(value)); }
    tbiJson& boolean(bool value) { return raw(value ? "true" : "false"); }
    /// With as many digits as reading it back exactly takes; 0 for what is not finite.
    tbiJson& number(float value);
    tbiJson& numbers(const float* values, int count);
    /// A text that is JSON already.
    tbiJson& value(std::string_view json) { return raw(json); }
    tbiJson& integers(const std::vector<int>& values);

    const std::string& getText() const { return text; }

private:
    tbiJson& raw(std::string_view value)
    {
        separate();
        text += value;
        return *this;
    }
    tbiJson& open(char bracket)
    {
        separate();
        text += bracket;
        isFirst = true;
        return *this;
    }
    tbiJson& close(char bracket)
    {
        text += bracket;
        isFirst = false;
        return *this;
    }
    void separate()
    {
        if (!isFirst)
            text += ',';
        isFirst = false;
    }

    std::string text;
    bool isFirst = true;
};

/// True when `text` is UTF-8 as it should be.
bool tbiIsUtf8(std::string_view text);
