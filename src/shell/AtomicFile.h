// The settings files write through the program's one atomic file writer.
#pragma once

#include "common/AtomicFile.h"
