// Runs a libFuzzer entry point without libFuzzer: every file of a seed folder, then seeded
// random inputs (random bytes and mutations of the seeds), a bounded number of times.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int argc, char** argv) {
    long runs = 10000;
    std::vector<std::vector<uint8_t>> seeds;
    for (int i = 1; i < argc; ++i) {
        if (std::strncmp(argv[i], "--runs=", 7) == 0) {
            runs = std::strtol(argv[i] + 7, nullptr, 10);
            continue;
        }
        std::error_code ec;
        for (const auto& entry : std::filesystem::directory_iterator(argv[i], ec)) {
            std::ifstream in(entry.path(), std::ios::binary);
            seeds.emplace_back(std::istreambuf_iterator<char>(in),
                               std::istreambuf_iterator<char>());
        }
    }
    for (const auto& seed : seeds)
        LLVMFuzzerTestOneInput(seed.data(), seed.size());
    std::mt19937 rng(12345);
    std::vector<uint8_t> input;
    for (long run = 0; run < runs; ++run) {
        if (!seeds.empty() && run % 2 == 0) {
            input = seeds[rng() % seeds.size()];
            const int edits = 1 + rng() % 8;
            for (int e = 0; e < edits && !input.empty(); ++e)
                input[rng() % input.size()] = static_cast<uint8_t>(rng());
            if (rng() % 4 == 0 && !input.empty())
                input.resize(rng() % input.size());
        } else {
            input.resize(rng() % 512);
            for (auto& b : input)
                b = static_cast<uint8_t>(
                    rng() % 4 == 0 ? rng() : " \n\r\t=[];#\"'azAZ09/*{}<>"[rng() % 24]);
        }
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    std::printf("%ld runs over %zu seeds: no crash\n", runs, seeds.size());
    return 0;
}
