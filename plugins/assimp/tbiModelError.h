#pragma once

#include <stdexcept>

// Why a model cannot be imported or exported. It never leaves the loader.
class tbiModelError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};
