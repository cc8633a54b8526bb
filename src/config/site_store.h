// Sites in the store: one key per site, named by its session name. A name that can be no site's key (empty, "Defaults",
// or with a backslash in it) is refused by every operation, so that none can reach another part of the store.
#pragma once

#include <string>
#include <vector>

#include "config/site.h"

// Writes a site's values. A failed write is traced and the others go on.
void SaveSiteInfo(Site* site);
// Loads one site, creating its key when it is missing; null for a null name or when the key cannot be opened.
SitePtr Zarn_GetSiteInfo(const char* sessionName);
// Every site of the store in its order ("Defaults" and empty names left out). An enumeration error is shown (7067) and
// ends the list.
std::vector<SitePtr> LoadSites();
// Deletes a site's key and all below it; an empty name does nothing.
void RegDeleteSiteInfo(const char* sessionName);
// Moves a site's key. `nameTaken` (may be null) returns whether the tree already shows a site of exactly that name.
// False when nothing was moved.
bool RenameSiteInfo(const char* oldName, const char* newName, bool makeLastSession,
                    bool (*nameTaken)(const char* name));
