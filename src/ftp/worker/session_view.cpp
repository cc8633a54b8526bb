#include "ftp/worker/session_view.h"

SessionView gSessionView;
