#pragma once

#include <cstdlib>
#include <list>
#include <string>

namespace tbtest
{
/// Sets a variable of this process and of those that it starts.
inline void setVariable(const std::string& name, const std::string& value)
{
    static std::list<std::string> kept; // the environment points at them
    putenv(kept.emplace_back(name + '=' + value).data());
}
} // namespace tbtest
