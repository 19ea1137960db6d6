// zv_syxcheck FOLDER...: checks the definition files of each folder; prints every problem
// and exits 1 when there is one, so the build fails on a broken shipped file.
#include "syntax/SyntaxSetCheck.h"

#include <cstdio>

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: zv_syxcheck FOLDER...\n");
        return 2;
    }
    int problems = 0;
    for (int i = 1; i < argc; ++i) {
        const zv::TSyntaxSetReport report = zv::CheckSyntaxFolder(argv[i]);
        for (const std::string& p : report.Problems)
            std::fprintf(stderr, "%s: %s\n", argv[i], p.c_str());
        if (report.Files == 0)
            std::fprintf(stderr, "%s: no .syx files\n", argv[i]);
        problems += static_cast<int>(report.Problems.size()) + (report.Files == 0);
    }
    return problems == 0 ? 0 : 1;
}
