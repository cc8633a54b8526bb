// Fills in the views through which the engine reaches the windows.
#pragma once

void InstallViews();
