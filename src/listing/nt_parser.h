// NT and DOS listing lines ("01-15-98  09:05PM       <DIR>          Program Files").
#pragma once

#include <cstdint>
#include <string_view>

#include "listing/directory_entry.h"

// Fills `entry`; host type 7005 gives the kinds of the local computer. False when the line does not begin with a digit.
bool BuildItemFromNTStr(std::string_view line, LVobject* entry, std::uint32_t hostType);
// Gives an entry the placeholder texts for an owner and a group that a listing does not name.
void SetUnknownOwner(LVobject& entry);
// Converts the 19 characters of date and time into time and dateText; an impossible date becomes the present time.
bool DosDateStringToFileTime(std::string_view date, LVobject* entry);
