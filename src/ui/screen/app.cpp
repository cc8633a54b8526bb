#include "ui/screen/app.h"

App gApp;

int Scaled(int pixelsAt96) {
    return MulDiv(pixelsAt96, static_cast<int>(gApp.dpi), 96);
}
