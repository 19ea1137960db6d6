// The zvtool command table.
#include "zvtool/CommandRegistry.h"

#include <algorithm>

namespace zv::tool {

std::vector<Command>& Commands() {
    static std::vector<Command> commands;
    return commands;
}

const Command* FindCommand(const std::string& name) {
    const auto& all = Commands();
    const auto it =
        std::find_if(all.begin(), all.end(), [&](const Command& c) { return c.name == name; });
    return it == all.end() ? nullptr : &*it;
}

Registration::Registration(Command command) {
    auto& all = Commands();
    all.push_back(std::move(command));
    std::sort(all.begin(), all.end(),
              [](const Command& a, const Command& b) { return a.name < b.name; });
}

} // namespace zv::tool
