#include "Samples.h"

#include <algorithm>
#include <cmath>

double Samples::percentile(double fraction) const
{
    if (values.empty())
        return 0.0;
    std::vector<double> sorted = values;
    const auto count = double(sorted.size());
    const double rank = std::clamp(std::ceil(fraction * count), 1.0, count);
    const auto place = sorted.begin() + std::ptrdiff_t(rank) - 1;
    std::nth_element(sorted.begin(), place, sorted.end());
    return *place;
}

bool Samples::isConstant() const
{
    return std::adjacent_find(values.begin(), values.end(), std::not_equal_to<>()) == values.end();
}
