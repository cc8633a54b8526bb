// Remembered initial directories: up to five per site, each with the time of its last use, in the site's record and in
// the store below the site's key. A second list of the same form serves the tree pane. Failures are traced only.
#pragma once

#include "config/site.h"

// The list of the tree pane, filled by GetInitDirectories. Used by the window's thread only.
extern InitDir gInitDirs[kInitDirCount];

// Marks an entry free.
void ResetSiteDirItem(InitDir* item);
// Marks every entry of gInitDirs free.
void ResetSiteDirList();
// Index of the entry with exactly this path among the five of `list`, or -1.
int FindInitDirInList(const InitDir* list, const char* path);
// Index of the first free entry of the first `count`, else of the one used longest ago; -1 when none was used before
// now.
int FindOldestInitDir(const InitDir* list, int count);
// Orders the five by time, newest first, free entries last; returns how many were sorted. Quirk: of two with equal
// times the later one comes first, kept.
int SortInitDirectories(InitDir* list);

// Writes the time stamp of the site's directory alone. Quirk: in universal time, unlike SaveInitDirectories, kept.
void SaveInitDirectory(const Site* site);
// Records that the site's directory was used now (local time) and rewrites the site's whole list in the store.
void SaveInitDirectories(Site* site);
// Fills the site's list from the store; of more than five directories the newest stay and the others are removed from
// the store. Returns how many the store contained.
int LoadInitDirectories(Site* site);
// Fills gInitDirs from the store of that site; returns how many are in the list. Quirk: of more than five directories
// the first five stay, whatever their times, and the others are removed from the store, kept.
int GetInitDirectories(const char* callerName, const char* sessionName);
