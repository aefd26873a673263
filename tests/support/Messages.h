// Messages of the library are part of its behaviour: a test names the lines that it expects, and fails on every
// other line that the library prints while it runs, and on every expected line that does not come.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tbtest
{
/// Takes the place of stdout for the library's messages and checks the lines of every test. Called once by main().
void watchMessages();

/// One line that holds `part` is to come, or has come, in this test. Each call stands for one line.
void expectMessage(std::string_view part, int times = 1);

/// Any line that holds `part` may come in this test, any number of times, also none.
void allowMessages(std::string_view part = {});

/// The lines that came since the test began or since the last call, without their ends. They count as expected.
std::vector<std::string> takeMessages();
} // namespace tbtest
