// Settings files: the cost of a key lookup, of reading a whole file and of writing it.
#include "shell/ZvIniFiles.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

namespace {

// A settings file of the size users grow: 40 sections of 50 keys.
zv::TMemIniFileW MakeSettings() {
    zv::TMemIniFileW ini;
    for (int s = 0; s < 40; ++s)
        for (int k = 0; k < 50; ++k)
            ini.WriteInteger("Section" + std::to_string(s), "SomeOptionKey" + std::to_string(k),
                             -16777201 + k);
    return ini;
}

void BM_ReadIntegerUtf8Names(benchmark::State& state) {
    const zv::TMemIniFileW ini = MakeSettings();
    for (auto _ : state)
        benchmark::DoNotOptimize(ini.ReadInteger("section17", "someoptionkey33", 0));
}
BENCHMARK(BM_ReadIntegerUtf8Names);

void BM_ReadBoolUtf16Names(benchmark::State& state) {
    const zv::TMemIniFileW ini = MakeSettings();
    for (auto _ : state)
        benchmark::DoNotOptimize(ini.ReadBool(u"Section17", u"SomeOptionKey33", false));
}
BENCHMARK(BM_ReadBoolUtf16Names);

void BM_ReadIntegerUtf16Names(benchmark::State& state) {
    const zv::TMemIniFileW ini = MakeSettings();
    for (auto _ : state)
        benchmark::DoNotOptimize(ini.ReadInteger(u"section17", u"someoptionkey33", 0));
}
BENCHMARK(BM_ReadIntegerUtf16Names);

void BM_ReadMissingKey(benchmark::State& state) {
    const zv::TMemIniFileW ini = MakeSettings();
    for (auto _ : state)
        benchmark::DoNotOptimize(ini.ReadInteger("Section17", "NotThere", 7));
}
BENCHMARK(BM_ReadMissingKey);

void BM_LoadFromBytes(benchmark::State& state) {
    const std::string bytes = MakeSettings().SaveToBytes();
    for (auto _ : state) {
        zv::TMemIniFileW ini;
        ini.LoadFromBytes(bytes);
        benchmark::DoNotOptimize(ini.SectionExists("Section0"));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
}
BENCHMARK(BM_LoadFromBytes);

void BM_SaveToBytes(benchmark::State& state) {
    const zv::TMemIniFileW ini = MakeSettings();
    for (auto _ : state)
        benchmark::DoNotOptimize(ini.SaveToBytes());
}
BENCHMARK(BM_SaveToBytes);

// Includes the fsync of the file and its folder: what a shutdown pays.
void BM_UpdateFileAtomically(benchmark::State& state) {
    const auto file = std::filesystem::temp_directory_path() / "zv-ini-bench.ini";
    zv::TMemIniFileW ini(file);
    for (int s = 0; s < 40; ++s)
        ini.WriteInteger("Section" + std::to_string(s), "Key", s);
    for (auto _ : state)
        benchmark::DoNotOptimize(ini.UpdateFile());
    std::filesystem::remove(file);
}
BENCHMARK(BM_UpdateFileAtomically)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
