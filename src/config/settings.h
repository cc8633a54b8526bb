// The one record of the program's settings, as they are while it runs. Loading and saving: defaults_store.h.
#pragma once

#include <cstdint>
#include <string>

inline constexpr std::uint32_t kColumnsWindows = 4;           // details view: four columns
inline constexpr std::uint32_t kColumnsUnix = 8;              // details view: eight columns
inline constexpr std::int32_t kDefaultPlacement = INT32_MIN;  // 0x80000000: the system chooses
inline constexpr int kMostColumns = 8;

// View styles of the list pane.
enum class UiStyle : std::uint32_t { LargeIcons = 0, Details = 1, SmallIcons = 2, List = 3 };

struct PortInfo {
    std::uint32_t timeout = 65;  // seconds a blocking call may wait; 0 means for ever
    std::uint32_t retries = 0;
    std::uint32_t ftpPort = 21;
    std::uint32_t packetSize = 2048;  // bytes of a transfer buffer
    bool operator==(const PortInfo&) const = default;
};

struct ModeInfo {
    std::int32_t caseConversion = 0;  // 0 none, 1 to upper, 2 to lower
    char mode = 'A';                  // 'A' ASCII, 'I' binary, 'L' local byte size 8
    std::int32_t useModeMapping = 0;
    bool operator==(const ModeInfo&) const = default;
};

struct ZarnSettings {
    std::uint32_t AUTOSTART = 0;
    std::uint32_t SAVEONEXIT = 1;
    std::uint32_t AUTOSIZE = 0;
    std::uint32_t BELL = 0;
    std::uint32_t RESOLVELINKS = 0;
    std::uint32_t SENDUNIQUE = 1;
    std::uint32_t RECVUNIQUE = 0;
    std::uint32_t VERBOSE = 0;
    std::uint32_t PROMPT = 0;
    std::int32_t xPos = kDefaultPlacement;
    std::int32_t yPos = kDefaultPlacement;
    std::int32_t nWidth = kDefaultPlacement;
    std::int32_t nHeight = kDefaultPlacement;
    std::int32_t nSplit = 180;  // pixels at 96 dpi
    std::uint32_t bMaximized = 0;
    std::uint32_t bMinimized = 0;
    std::uint32_t COLUMNS = kColumnsWindows;
    std::uint32_t ICONS = 0;
    std::string MAILADDR;
    std::string LOGFILE;
    std::uint32_t LOGGING = 0;
    std::string SESSION;  // name of the last session used

    PortInfo port;  // in force: the connected site's own, else the defaults
    ModeInfo mode;
    PortInfo defaultPort;  // as stored in "Defaults"
    ModeInfo defaultMode;
    UiStyle uiStyle = UiStyle::Details;
    std::int32_t iColumnLengths[kMostColumns] = {};  // pixels; 0 for a column never measured
};
inline ZarnSettings gZarn;
