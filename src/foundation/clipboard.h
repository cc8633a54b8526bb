// The clipboard as the engine sees it. Pasting has a test of its own, in the windows.
#pragma once

// Quirk: always false, kept.
bool ClipHasFiles();
