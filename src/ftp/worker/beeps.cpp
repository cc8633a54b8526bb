#include "ftp/worker/beeps.h"

#include "config/settings.h"
#include "platform/system.h"

namespace {

// A flag of its own: a change of the user's setting could be saved meanwhile.
thread_local bool gQuiet = false;

void Beep(platform::Beep kind) {
    if (gZarn.BELL != 0 && !gQuiet) platform::PlayBeep(kind);
}

}  // namespace

void BeepOnFailure() {
    Beep(platform::Beep::Exclamation);
}
void BeepAtEnd() {
    Beep(platform::Beep::Asterisk);
}

QuietBeeps::QuietBeeps() : before_(gQuiet) {
    gQuiet = true;
}
QuietBeeps::~QuietBeeps() {
    gQuiet = before_;
}
