// What the shell has registered for an extension, read only: its class, the class's description, icon location and
// print command. Where there is no shell, nothing is registered.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/file_type.h"

// Every extension that the shell registers, as it spells them.
std::vector<std::string> ShellExtensions();
// Name of an extension's class; nothing when it has none.
std::optional<std::string> ShellClassOf(std::string_view extension);
// Description of a class.
std::optional<std::string> ShellDescription(const std::string& className);
// "DefaultIcon" of a class, of the extension's class when `className` is empty; empty when there is none. A class name
// too long for a path is shown.
std::string GetRootIconInfo(std::string_view extension, std::string className = {});
// The command registered for a type, null when there is none; names of environment variables stay as they are.
OwnedText Zarn_GetActionCommand(const FTobject* type, bool print);
