// Connects the tracer, which knows none of them, with the log file, the console and the reports of system errors.
#pragma once

// Once at start-up, before anything is traced; calling it again changes nothing.
void ConnectTraceSinks();
