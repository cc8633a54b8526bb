// Connecting from a chosen local address, which the program itself never needs: a stranger's data connection.
#pragma once

#include <string>

#include "platform/sockets.h"

// A connected socket whose local end has the dotted `address`; kNoSocket on failure.
platform::Socket ConnectFrom(const std::string& address, platform::Endpoint peer);
