// Single-command operations on the remote file system (RFC 959, section 4.1): change, query, make and remove
// directories, delete and rename. Their return rules differ from one to the next, and callers rely on that. Names may
// hold any character but CR, LF and NUL, which are refused. Listing is data/remote_listing.h.
#pragma once

#include "config/site.h"
#include "foundation/owned_text.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/worker/result_codes.h"

// "CWD %s". With `remember` a success becomes the site's current remote directory.
int DoCWD(Site* site, const char* path, ReplyBuffer reply, bool remember);
int DoPWD(Site* site, ReplyBuffer reply);
int DoNoop(Site* site);
int DoMKD(Site* site, const char* path, ReplyBuffer reply);
// "RMD %s", or "DELE %s" on IBM-MVS (and 550 then becomes 5); elsewhere 550 stays whole.
int DoRMD(Site* site, const char* path, ReplyBuffer reply);
// Classes 1..5 (550 becomes 5); 0 for anything else.
int DoDELE(Site* site, const char* name, ReplyBuffer reply);
// "RNFR %s" and, only after a 3xx, "RNTO %s"; the last result.
int DoRename(Site* site, ReplyBuffer reply, const char* oldName, const char* newName);
// True on success; else the server-error dialog was shown.
bool RenameRemoteItem(Site* site, const char* oldName, const char* newName);
bool MakeRemoteDirectory(Site* site, const char* name);

// The directory between the first two double quotes of the PWD reply's first line; null without them.
OwnedText GetRemoteDirectory(Site* site);
// Changes and remembers. With `showError` a failure opens the server-error dialog.
bool ChangeRemoteDirectory(Site* site, const char* path, ReplyBuffer reply, int* result, bool showError);
// Makes sure a directory exists, creating it when the server says that it does not. `parent` may be null. `unshown`
// receives the reply of a refusal to enter it, which is not shown here; it is emptied otherwise.
int ChkForRdir(Site* site, const char* name, bool hasParent, const char* parent, ReplyBuffer unshown = {});
