// Texts between the program and the wide window calls, under the name by which this floor knows them.
#pragma once

#include "foundation/wide_text_window.h"
