// The focused pane, its selection and the session's state, read from the windows for the rules of command_state.h.
#pragma once

#include "config/site.h"
#include "ui/browse/command_state.h"

CommandContext CurrentCommandContext();
// The site that commands act on: the selected tree node's, or null.
Site* SelectedSite();
// True while a remote operation runs or the program exits: menus, clicks and drags are refused then.
bool CommandsRefused();
