#include "config/host_types.h"

#include <gtest/gtest.h>

TEST(HostTypes, ExactlyFiveAreOfferedInOrder) {
    const std::vector<OfferedHostType> offered = OfferedHostTypes();
    ASSERT_EQ(offered.size(), 5U);
    const char* const names[] = {"Auto Detect", "UNIX (Default)", "Microsoft Windows NT", "Sun Solaris - UNIX",
                                 "CLIX Ambrel FTP server"};
    for (std::uint32_t index = 0; index < offered.size(); ++index) {
        EXPECT_EQ(offered[index].id, 7000 + index);
        EXPECT_EQ(offered[index].name, names[index]);
    }
}

TEST(HostTypes, VmsMultinetIsKnownButNeverOffered) {
    EXPECT_EQ(HostTypeName(HOST_TYPE_VMS_MULTINET), "VMS-Multinet");
    for (const OfferedHostType& type : OfferedHostTypes()) EXPECT_NE(type.name, "VMS-Multinet");
    EXPECT_EQ(HostTypeIndex(OfferedHostTypes(), HOST_TYPE_VMS_MULTINET), -1);
}

TEST(HostTypes, SelectionIsTheIdLess7000) {
    EXPECT_EQ(HostTypeIndex(OfferedHostTypes(), 7000), 0);
    EXPECT_EQ(HostTypeIndex(OfferedHostTypes(), 7004), 4);
}

TEST(HostTypes, LocalComputerAndStrangersHaveNoName) {
    EXPECT_EQ(HostTypeName(HOST_TYPE_LOCAL), "");
    EXPECT_EQ(HostTypeName(7022), "");
    EXPECT_EQ(HostTypeName(6999), "");
}

TEST(HostTypes, EveryOtherKnownTypeHasItsName) {
    const char* const names[] = {"NetManage Chameleon TCP/IP",
                                 "FTP Software PC-TCP",
                                 "IBM-PC TCP/IP",
                                 "IBM-VM/MVS",
                                 "KA9Q/NOS",
                                 "NCSA/CUTCP",
                                 "SI FTPD for Microsoft Windows NT",
                                 "SuperTCP FTPD",
                                 "Unisys 5000 (EXOS)",
                                 "VMS-Multinet",
                                 "VMS-UCX",
                                 "Software Innovations TCP/IP",
                                 "OS2 PC Type L8",
                                 "IBM-MVS",
                                 "FTP Software PC/TCP 3.X  OnNet 1.X",
                                 "Ambrel VMS FTP"};
    std::uint32_t id = 7006;
    for (const char* name : names) EXPECT_EQ(HostTypeName(id++), name);
}
