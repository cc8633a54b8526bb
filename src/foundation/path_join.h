// Joins a folder's path and a name with one separator. Names are taken as they are: making a remote name safe for the
// local disk belongs to transfer/local_names.h.
#pragma once

#include <string>
#include <string_view>

// No separator is added to an empty folder or to one that ends with `separator`: "/" and "x" give "/x".
std::string JoinRemotePath(std::string_view folder, std::string_view name, char separator);
// The same with the local system's separator; a folder that ends with either slash gets no other.
std::string JoinLocalPath(std::string_view folder, std::string_view name);
