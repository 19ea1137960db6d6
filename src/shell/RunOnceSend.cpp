// The sending side of a hand-over: a second instance passes its command line to the first.
#include "shell/CommandLine.h"
#include "shell/HandOver.h"
#include "shell/RunOnce.h"

#include <QString>

namespace zv {

bool TRunOnce::SendToInstance(const std::vector<std::string>& args, const std::string& cwd) const {
    const uint64_t window = GetWinHandle();
    if (window == 0)
        return false;
    return SendHandOver(window, kHandOverParams,
                        QString::fromStdString(BuildParamString(args, cwd)));
}

} // namespace zv
