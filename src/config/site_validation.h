// Checks what a user typed into a site before it is saved or used. The record itself: site.h.
#pragma once

#include <string>
#include <string_view>

#include "config/site.h"

enum class NameField { SiteName = 0, Host = 1, User = 2, Directory = 4 };
bool IsValidNameChar(char character, NameField field);
// The first failure is shown. An empty site name takes the host's.
bool IsSiteValid(Site* site);
// Replaces every character that no directory may contain by "~".
std::string MakeSafeLocalName(std::string_view name);
