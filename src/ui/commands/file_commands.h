// Commands that several menus share: transfer, new folder, rename. They check that the session is ready and start the
// work; doing it is transfer/ and browse/.
#pragma once

// Receives the selection of the focused pane.
void Zarn_IdmTransferSelFiles();
// Starts naming a new folder below the selected node; `name` is the name it begins with and must not be empty.
void Zarn_IdmNewFolder(const char* name);
// Starts editing a label in the focused pane: the selected node's or the first selected entry's.
void Zarn_IdmRename();
