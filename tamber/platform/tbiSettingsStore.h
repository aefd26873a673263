#pragma once

#include <cstddef>

// Where the settings of the machine are kept: raw bytes by name, as a number or as text.

/// Copies the value's bytes, numbers as four bytes and texts with their zero, and returns how many; -1 when there
/// is no such value or when it is longer than `size`.
int tbiReadSetting(const char* name, void* bytes, std::size_t size);
bool tbiWriteSettingNumber(const char* name, unsigned int value);
bool tbiWriteSettingText(const char* name, const char* text);
