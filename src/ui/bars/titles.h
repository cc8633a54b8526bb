// The title of the main window for the selected tree node.
#pragma once

#include <string>

#include "listing/tree_node.h"

// Pure: what the title reads for a node (null: none selected).
std::string MainWindowTitle(const TVobject* node, const std::string& shortName, const std::string& longName,
                            const std::string& computer);
void Zarn_SetMainWindowText();
