// A QTimer behind the engine's timer interface.
#include "ui/QtTimer.h"

#include <QTimer>

namespace zv {
namespace {

class TQtTimer : public ITimer {
public:
    explicit TQtTimer(std::function<void()> onTimeout) {
        QObject::connect(&FTimer, &QTimer::timeout, [f = std::move(onTimeout)] {
            if (f)
                f();
        });
    }
    void Start(int intervalMs) override { FTimer.start(intervalMs); }
    void Stop() override { FTimer.stop(); }
    bool IsActive() const override { return FTimer.isActive(); }

private:
    QTimer FTimer; // stops and disconnects with the object
};

} // namespace

std::unique_ptr<ITimer> TQtTimerFactory::CreateTimer(std::function<void()> onTimeout) {
    return std::make_unique<TQtTimer>(std::move(onTimeout));
}

} // namespace zv
