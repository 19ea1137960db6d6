// The body of a benchmark program's main for benchmarks that need widgets: the application
// object lives for the whole run.
#pragma once

#include <QApplication>

#include <benchmark/benchmark.h>

namespace zv::bench {

// Runs the benchmarks that the command line selects inside a QApplication; returns 0.
inline int RunInApplication(int argc, char** argv) {
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

} // namespace zv::bench
