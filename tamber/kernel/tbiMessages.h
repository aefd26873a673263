#pragma once

// Messages of the time when the library loads: nobody can have installed a receiver yet, so they are kept until
// the application starts the kernel.

void tbiKeepMessages();
void tbiStopKeepingMessages();
/// Hands on what was kept, once.
void tbiSendKeptMessages();
void tbiDropKeptMessages();
