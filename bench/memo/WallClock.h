// Wall-clock helpers of the line-store and editing benchmarks: timing one call, and the
// median of the samples (a keystroke's typical cost, unmoved by the rare slow one).
#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

namespace zv::bench {

// Seconds `f` took on the steady clock.
template <typename F> double Seconds(F&& f) {
    const auto start = std::chrono::steady_clock::now();
    f();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The middle sample (the upper one of an even count); 0 for none.
inline double Median(std::vector<double> samples) {
    if (samples.empty())
        return 0.0;
    const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::nth_element(samples.begin(), middle, samples.end());
    return *middle;
}

} // namespace zv::bench
