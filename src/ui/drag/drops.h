// Transfers that begin with a drop, by the mouse from the list or from another program: what they are to move and where
// to. What may be dropped where is drag_rules.h, the drag itself drag_drop.h.
#pragma once

#include <windows.h>

#include <shellapi.h>

#include <string>
#include <vector>

#include "config/site.h"
#include "listing/tree_node.h"
#include "transfer/transfer_view.h"
#include "ui/drag/drag_rules.h"

// Receives the list's selection in a local folder. False when nothing started.
bool ReceiveInto(const std::string& localFolder);
// Sends local files and folders (full paths) into a folder of the site; an empty folder is the site's current one.
// Tells the user when the site is not connected. False when nothing started.
bool SendInto(Site* site, std::vector<std::string> files, const std::string& remoteFolder);
// Does what dropping means on a node of the tree.
bool DropOnNode(const TVobject* node, DropEffect effect, std::vector<std::string> localFiles);
// A node as a place to drop on; null is none.
DropPlace PlaceOf(const TVobject* node);
// WM_DROPFILES of any of the windows: onto a folder of the tree when the files fell on one, else into the folder shown.
void OnShellDrop(HDROP drop);
// Sends the files on the clipboard into the folder shown. False when nothing started.
bool PasteFiles();
bool ClipboardHoldsFiles();
void TellNotConnected();
// The drop's part of the transfers' view.
void FillDropView(TransferView& view);
