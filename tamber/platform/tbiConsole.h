#pragma once

/// Gives the process a console window for its stdout, unbuffered; nothing where stdout exists already.
void tbiOpenConsole();
