#include "foundation/trace_sinks.h"

#include "foundation/error_report.h"
#include "foundation/foundation_view.h"
#include "foundation/log_file.h"
#include "foundation/trace.h"

void ConnectTraceSinks() {
    gTraceSinks = {.writeLog = LogfilePrint, .printToConsole = PrintToConsole, .reportApiError = DbgPrintApiError};
}
