// What the title of the main window reads. Showing it is titles.h.
#pragma once

#include <string>

#include "listing/tree_node.h"

// The title for the selected node (null: none): the site and, once connected, the directory where its session is.
std::string MainWindowTitle(const TVobject* node, const std::string& shortName, const std::string& longName,
                            const std::string& computer);
