#pragma once

#include <tamber/kernel/tbTypes.h>

// Settings of the machine by name, case ignored: on Windows values under the local machine's key
// "SOFTWARE\QRM\Tamber", elsewhere lines of the file that TAMBER_SETTINGS names, or of tamber/settings.ini in the
// user's configuration directory. Reading never creates anything. False on failure, `value` untouched then.

TB_API bool tbReadRegistry(const char* name, int& value);
/// The only reader that reports a failure with a message.
TB_API bool tbReadRegistry(const char* name, float& value);
/// `text` holds 256 bytes.
TB_API bool tbReadRegistry(const char* name, char* text);

TB_API bool tbWriteRegistry(const char* name, int value);
/// Stores the float's four bytes as an integer.
TB_API bool tbWriteRegistry(const char* name, float value);
TB_API bool tbWriteRegistry(const char* name, const char* text);
