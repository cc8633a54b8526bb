// Connects listings to the panes: fills in the listing's view and the part of the session's view that shows folders.
#pragma once

void InstallListingView();
