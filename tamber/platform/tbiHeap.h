#pragma once

#include <cstddef>

/// Bytes that the runtime's heap holds for a block, at least what was asked for. The block is not null.
std::size_t tbiBlockSize(void* block) noexcept;
