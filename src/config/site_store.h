// Sites in the store: one key per site, named by its session name.
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
// Moves a site's key. `nameTaken` tells whether the tree already shows a site of a name. False when nothing moved.
bool RenameSiteInfo(const char* oldName, const char* newName, bool makeLastSession, bool (*nameTaken)(const char* name));
