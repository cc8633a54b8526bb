// Device names that no local file may have.
#pragma once

// True when the name begins with con. aux. prn. nul. lpt1. or lpt2., whatever its case. Only these six are refused to
// the user; making a safe path (transfer/local_names.h) knows all device names of the system.
bool FileNameIsReserved(const char* name);
