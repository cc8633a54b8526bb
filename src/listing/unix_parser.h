// Unix long-format listing lines ("-rw-r--r-- 1 ftp ftp 1024 Dec 31 1999 old.txt").
#pragma once

#include <string_view>

#include "listing/directory_entry.h"

// Fills `entry` from one line; false when the line is rejected (no month where one belongs).
bool BuildItemFromUnixStr(std::string_view line, LVobject* entry);
