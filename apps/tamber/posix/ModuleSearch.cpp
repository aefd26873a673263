#include "../ModuleSearch.h"

// The system looks there only when LD_LIBRARY_PATH says so.
void limitModuleSearch() {}
