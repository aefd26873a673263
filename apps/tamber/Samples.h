#pragma once

#include <vector>

// The values that one quantity took, one for each frame.
class Samples
{
public:
    void add(double value) { values.push_back(value); }
    /// The smallest value that at least `fraction` (0 to 1) of all values do not exceed; 0 when there are none.
    double percentile(double fraction) const;
    double min() const { return percentile(0.0); }
    double median() const { return percentile(0.5); }
    bool isConstant() const;

private:
    std::vector<double> values;
};
