#pragma once

/// Keeps the system from looking for libraries in the current directory and on PATH, where it would. Called before
/// anything is loaded.
void limitModuleSearch();
