#pragma once

/// True when stderr shows on a terminal rather than going to a file or a pipe.
bool isErrorOnTerminal();

/// Has stdout and stderr take lines as they are, so that what is printed is the same on every system.
void printPlainLines();
