// The commands on files that several menus share: they look whether the session can take them and hand the work on.
#pragma once

// Receives the selection of the focused pane.
void Zarn_IdmTransferSelFiles();
// Starts the naming of a new folder below the selected node; `name` is the name that it begins with.
void Zarn_IdmNewFolder(const char* name);
// Starts the editing of the focused pane's label: the selected node's or the first selected entry's.
void Zarn_IdmRename();
