#pragma once

class tbPlugIn;

/// Sets up the classes that the kernel itself needs at once.
void tbiInitClasses(tbPlugIn* kernel);
/// Registers every other class for set-up on first use.
void tbiRegisterClasses(tbPlugIn* kernel);
