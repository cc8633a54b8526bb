// The about box.
#pragma once

#include <windows.h>

void ShowAboutDialog(HWND owner);
