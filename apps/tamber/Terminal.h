#pragma once

/// True when stderr shows on a terminal rather than going to a file or a pipe.
bool isErrorOnTerminal();
