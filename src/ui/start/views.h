// Connects the engine to the windows: fills in the views through which it shows, asks and reports.
// The listing's view is views_listing.h.
#pragma once

void InstallViews();
