// The main window as the program builds it at start, for the window benchmarks: helper,
// window and main object, shown and past the argument pass.
#pragma once

#include "platform/Prompt.h"
#include "shell/MainForm.h"
#include "shell/MainFormHelper.h"
#include "ui/MainWindow.h"

#include <string>
#include <vector>

namespace zv::bench {

struct TStartedWindow {
    explicit TStartedWindow(const std::vector<std::string>& argv)
        : window(helper), form(helper, &window) {
        window.AttachForm(form);
        window.show();
        form.FormShow(argv);
    }
    ~TStartedWindow() { helper.FApplicationClosing = true; }

    zv::THeadlessPrompt prompt{false};
    zv::TMainFormHelper helper{prompt};
    zv::TMainWindow window;
    zv::TMainForm form;
};

} // namespace zv::bench
