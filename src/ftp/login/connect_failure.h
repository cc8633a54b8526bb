// Why the last attempt to connect failed, in the words that the box of the connect command shows below its own.
#pragma once

#include <string>
#include <string_view>

void NoteConnectFailure(std::string_view reason);
std::string ConnectFailure();
