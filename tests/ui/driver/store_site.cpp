// Stores a site in the settings of the prefix it runs in, with the program's own code: for ./run, benches and tests.
//
//   store_site NAME HOST PORT USER [PASSWORD] [PACKETSIZE]
//
// The port is stored in the program's defaults, because a site's own port ends at 3000 and test servers use higher
// ones.
#include <cstdio>
#include <string>

#include "config/connection_defaults.h"
#include "config/defaults_store.h"
#include "config/settings.h"
#include "config/site_store.h"
#include "foundation/number_text.h"
#include "foundation/text_copy.h"

int main(int argc, char** argv) {
    if (argc < 5) {
        std::fputs("usage: store_site NAME HOST PORT USER [PASSWORD] [PACKETSIZE]\n", stderr);
        return 2;
    }
    LoadConfiguration();
    PortInfo port = gZarn.defaultPort;
    port.ftpPort = ParseUnsigned(argv[3]);
    if (argc > 6) port.packetSize = ParseUnsigned(argv[6]);
    SavePortInfo("", port);
    ModeInfo mode = gZarn.defaultMode;
    mode.mode = 'I';
    SaveModeInfo("", mode);

    SitePtr site(Zarn_CreateDefaultSite(argv[1]));
    site->pszHost = DupString(argv[2]);
    site->pszUID = DupString(argv[4]);
    if (argc > 5) {
        site->pszPWD = DupString(argv[5]);
        site->bSavePwd = 1;
    }
    SaveSiteInfo(site.get());
    SetLastSession(argv[1]);
    return Zarn_GetSiteInfo(argv[1]) != nullptr ? 0 : 1;
}
