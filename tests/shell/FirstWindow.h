// Waiting for the first window of the instance block, as a second start does.
#pragma once

#include "shell/RunOnce.h"

#include <QElapsedTimer>
#include <QTest>

#include <cstdint>

namespace zvtest {

// The first window named in the block, waited for at most timeoutMs while events run (a
// window names itself once its events run); 0 if none came.
inline uint64_t WaitForFirstWindow(const zv::TRunOnce& block, int timeoutMs) {
    QElapsedTimer clock;
    clock.start();
    while (block.GetWinHandle() == 0 && clock.elapsed() < timeoutMs)
        QTest::qWait(20);
    return block.GetWinHandle();
}

} // namespace zvtest
