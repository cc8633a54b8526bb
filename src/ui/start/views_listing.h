// Fills in the view through which listings reach the panes, and the panes' part of the session's view.
#pragma once

void InstallListingView();
