#include "Table.h"

#include <algorithm>
#include <cstdio>
#include <iomanip>
#include <ostream>

void Table::print(std::ostream& out) const
{
    std::vector<std::size_t> widths;
    for (const auto& row : rows)
    {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    }
    for (const auto& row : rows)
    {
        for (std::size_t i = 0; i < row.size(); ++i)
        {
            const auto width = int(widths[i]);
            if (i == 0)
                out << std::left << std::setw(width) << row[i];
            else
                out << "  " << std::right << std::setw(width) << row[i];
        }
        out << '\n';
    }
}

std::string formatCount(long long value)
{
    const std::string digits = std::to_string(value);
    std::string text;
    for (std::size_t i = 0; i < digits.size(); ++i)
    {
        if (i > 0 && (digits.size() - i) % 3 == 0 && digits[i - 1] != '-')
            text += ',';
        text += digits[i];
    }
    return text;
}

std::string formatMilliseconds(double value)
{
    char text[32];
    std::snprintf(text, sizeof(text), "%.4f", value);
    return text;
}
