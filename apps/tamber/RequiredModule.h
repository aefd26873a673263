#pragma once

/// Loads a module that a command cannot do without. Throws CommandError when it is not there or not let in, with every
/// place where it was looked for.
void requireModule(const char* moduleName);
