// Settings text uses the program's one set of UTF-8/UTF-16 helpers.
#pragma once

#include "common/Utf.h"
