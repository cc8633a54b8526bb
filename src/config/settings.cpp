#include "config/settings.h"

ZarnSettings gZarn;
