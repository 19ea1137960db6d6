// zvtool entry: dispatches to the registered commands.
#include "zvtool/CommandRegistry.h"

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

namespace {

void PrintHelp(FILE* out) {
    std::fprintf(out, "Usage: zvtool COMMAND [ARGS...]\n\n"
                      "The Zevrit text engine on the command line.\n\nCommands:\n");
    for (const auto& c : zv::tool::Commands())
        std::fprintf(out, "  %-44s %s\n", c.usage.c_str(), c.summary.c_str());
    std::fprintf(out, "\n  zvtool --help        this text\n  zvtool --version     the version\n");
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    if (args.empty()) {
        PrintHelp(stderr);
        return 2;
    }
    if (args[0] == "--help" || args[0] == "-h" || args[0] == "help") {
        PrintHelp(stdout);
        return 0;
    }
    if (args[0] == "--version") {
        std::printf("zvtool 0.1.0\n");
        return 0;
    }
    const auto* command = zv::tool::FindCommand(args[0]);
    if (!command) {
        std::fprintf(stderr, "zvtool: unknown command \"%s\" (see zvtool --help)\n",
                     args[0].c_str());
        return 2;
    }
    try {
        return command->run({args.begin() + 1, args.end()});
    } catch (const std::exception& e) {
        std::fprintf(stderr, "zvtool %s: %s\n", args[0].c_str(), e.what());
        return 1;
    }
}
