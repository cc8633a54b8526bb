// The full path of an item in a folder of the tree, local or remote. Paths of the nodes themselves are tree_node.h and
// listing/local_listing.h.
#pragma once

#include <string>
#include <string_view>

#include "listing/tree_node.h"

// In the local form below a local node, else in the server's.
std::string ItemPath(const TVobject* folder, std::string_view name);
