// A connected site with its nodes and a list that records, for tests that list through the scripted server.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ftp/worker/session_state.h"
#include "listing/listing_driver.h"
#include "platform/files.h"
#include "support/recording_listing_view.h"
#include "support/session_harness.h"

struct ListedSite {
    ListedSite() {
        siteNode.reset(AllocateTVobject("Test site", kKindSite));
        siteNode->pSite = site;
        root = AddChildNode(siteNode.get(), "/", kKindSiteRoot);
        pub = AddChildNode(root, "pub", kKindFolder);
    }
    ~ListedSite() { siteNode->pSite = nullptr; }  // the harness owns it
    ListedSite(const ListedSite&) = delete;
    ListedSite& operator=(const ListedSite&) = delete;

    // The next LIST sends these bytes, whatever it asks for.
    void NextListing(std::string bytes) {
        server.Once("LIST", {Say("150 here it comes\r\n"), OpenData(), DataBytes(std::move(bytes)), CloseData(),
                             Say("226 done\r\n")});
    }
    int CountCommand(const std::string& whole) const {
        int count = 0;
        for (const std::string& line : server.Commands()) count += line == whole ? 1 : 0;
        return count;
    }
    // Names of the temporary files whose names begin so, as far as this system begins them with the prefix.
    static std::vector<std::string> TemporaryFiles(const std::string& prefix) {
        std::vector<platform::FileInfo> files;
        platform::ListFolder(platform::TemporaryFolder().c_str(), files);
        std::vector<std::string> names;
        for (const platform::FileInfo& file : files)
            if (file.name.compare(0, prefix.size(), prefix) == 0) names.push_back(file.name);
        return names;
    }

    SessionHarness harness;
    ScriptedServer& server = harness.server;
    RecordingListingView list;
    Site* site = harness.ConnectedSite();
    std::unique_ptr<TVobject, void (*)(TVobject*)> siteNode{nullptr, Zarn_FreeTVobject};
    TVobject* root;
    TVobject* pub;
};
