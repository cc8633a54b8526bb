// Shows the title of the main window. What it reads is window_title.h.
#pragma once

// UI thread.
void Zarn_SetMainWindowText();
