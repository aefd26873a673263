#pragma once

#include <stdexcept>

// Why a model cannot be imported. It never leaves the loader.
class tbiImportError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};
