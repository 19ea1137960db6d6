// The shell's root folder (GetRootFolder and the rule behind it) is the engine's rule, shared
// with zvtool so that both find the same data.
#pragma once

#include "common/RootFolder.h"
