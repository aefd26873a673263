#pragma once

#include <memory>
#include <string>
#include <vector>

namespace tbtest
{
/// A program that runs beside this one until it is killed.
class Child
{
public:
    explicit Child(const std::vector<std::string>& command);
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    /// Kills it at once and waits until it is gone.
    ~Child();

    /// False when it could not be started or has ended.
    bool isRunning() const;

private:
    struct Process;
    std::unique_ptr<Process> process;
};
} // namespace tbtest
