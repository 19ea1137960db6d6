// The table of zvtool commands; each command file adds itself with a static Registration.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zv::tool {

// A command gets its arguments after the command name and returns the process exit code.
using CommandFn = std::function<int(const std::vector<std::string>& args)>;

struct Command {
    std::string name;
    std::string usage;   // one line: "info FILE"
    std::string summary; // one line of what it does
    CommandFn run;
};

std::vector<Command>& Commands();
const Command* FindCommand(const std::string& name);

struct Registration {
    explicit Registration(Command command);
};

} // namespace zv::tool
