// Engine timers on the Qt event loop.
#pragma once

#include "platform/Timer.h"

namespace zv {

class TQtTimerFactory : public ITimerFactory {
public:
    std::unique_ptr<ITimer> CreateTimer(std::function<void()> onTimeout) override;
};

} // namespace zv
