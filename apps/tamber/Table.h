#pragma once

#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

// Rows of text in aligned columns: the first to the left, the others to the right.
class Table
{
public:
    explicit Table(std::vector<std::string> heads) : rows{std::move(heads)} {}
    void addRow(std::vector<std::string> cells) { rows.push_back(std::move(cells)); }
    void print(std::ostream& out) const;

private:
    std::vector<std::vector<std::string>> rows;
};

/// With groups of three digits set apart by commas.
std::string formatCount(long long value);
std::string formatMilliseconds(double value);
