// The question after the server refused to enter a directory. Showing its reply in full is error_texts.h.
#pragma once

#include "foundation/foundation_view.h"

// Abort, Retry or Ignore; None without anybody to ask.
BoxAnswer Show550CwdError();
