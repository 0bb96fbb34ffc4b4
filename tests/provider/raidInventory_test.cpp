// The declustered-RAID inventory files: the sample files, crafted lines the
// parser must read as designed, and files it must survive.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/stat.h>

#include "cimProvider.h"
#include "instanceInspection.h"
#include "providerTestSupport.h"

PEGASUS_USING_PEGASUS;

namespace {

class RaidInventoryTest : public ProviderTest {
protected:
    void TearDown() override {
        unsetenv("VEXA_INVENTORY_DIR");
        ProviderTest::TearDown();
    }

    // Parses `content` as the file of the physical disks or, with
    // arrays set, of the declustered arrays.
    void parse(std::string content, bool arrays = false) {
        FILE* file = fmemopen(&content[0], content.size(), "r");
        ASSERT_NE(file, nullptr);
        arrays ? provider.createCorvaneDeclusteredArrayInstanceFromFile(file)
               : provider.createCorvanePhysicalDiskInstanceFromFile(file);
        fclose(file);
    }

    VexaProvider provider;
};

TEST_F(RaidInventoryTest, SampleFilesGiveOneElementPerRecordWithCompletionAndKeys) {
    setenv("VEXA_INVENTORY_DIR", VEXA_SAMPLE_INVENTORY_DIR, 1);
    provider.buildCorvanePhysicalDiskList();
    provider.buildCorvaneVirtualDiskList();
    provider.buildCorvaneDeclusteredArrayList();
    ASSERT_EQ(provider.raidPhysicalDisks.size(), 6u);
    ASSERT_EQ(provider.raidVirtualDisks.size(), 3u);
    ASSERT_EQ(provider.raidDeclusteredArrays.size(), 2u);

    const CIMInstance& disk = provider.raidPhysicalDisks[1];
    EXPECT_EQ(signature(disk),
              (std::vector<std::string>{
                  "CreationClassName:string", "DeviceID:string", "Name:string", "ID:string",
                  "DiskType:string", "DeclusteredArrayID:string", "RAIDRecoveryGroupID:string",
                  "SystemCreationClassName:string", "SystemName:string", "Caption:string",
                  "Description:string", "ElementName:string", "MaxMediaSize:uint64",
                  "OperationalStatus:uint16[]"}));
    EXPECT_EQ(textOf(disk, "ElementName"), "PhysicalDisk(SAS) : e1s02");
    EXPECT_EQ(textOf(disk, "MaxMediaSize"), "600000000");
    EXPECT_EQ(statusOf(disk), 2);
    EXPECT_EQ(pathOf(disk), "root/cimv2:DALEN_PhysicalDisk.CreationClassName=\"DALEN_"
                            "PhysicalDisk\",DeviceID=\"e1s02\",SystemCreationClassName=\"KOR_"
                            "VEXA_Node\",SystemName=\"node1\"");
    const CIMInstance& array = provider.raidDeclusteredArrays[1];
    EXPECT_EQ(textOf(array, "Description"), "CPU Declustered Array");
    EXPECT_EQ(textOf(array, "ElementName"), "Declustered Array : DA2");
    EXPECT_EQ(pathOf(array), "root/cimv2:DALEN_DeclusteredArray.CreationClassName=\"DALEN_"
                             "DeclusteredArray\",Name=\"DA2\"");

    EXPECT_EQ(provider.getCorvaneInstIdx(VexaProvider::CORVANE_INST_PHYSICAL_DISK, "e1s06"), 5);
    // Virtual disks are found by their name, not by the DeviceID of their path.
    EXPECT_EQ(provider.getCorvaneInstIdx(VexaProvider::CORVANE_INST_VIRTUAL_DISK, "rgL_data2"), 2);
    EXPECT_EQ(provider.getCorvaneInstIdx(VexaProvider::CORVANE_INST_VIRTUAL_DISK, "vd3"), -1);
    EXPECT_EQ(provider.getCorvaneInstIdx(VexaProvider::CORVANE_INST_DECLUSTERED_ARRAY, "da1"), -1);
    EXPECT_EQ(provider.getCorvaneInstIdx(static_cast<VexaProvider::CorvaneInstanceType>(3), "DA1"),
              -1);
}

TEST_F(RaidInventoryTest, CraftedLinesAreSplitCutAndRememberedAsDesigned) {
    parse("s CreationClassName = \"orphan\";\n"  // before any record: ignored
          "# 1 instance of DALEN_PhysicalDisk\n" // the class token ends in the newline
          "# 1 instance of DALEN_PhysicalDisk {\n"
          "s  DeviceID   =   \"d1\";\n"
          "s\tName = \"tabbed\";\n"
          "s SystemName = \"sysA\";\n"
          "s Description = \"not read\";\n"
          "s Colour = \"red\";\n"
          "s DiskType = Q\n"
          "s Name =\n"
          "s ID = \"7\";x a b DALEN_PhysicalDisk {\n" // a start as the seventh token
          "s DeviceID = \"old\";\n"
          "s DeviceID = \"d2\";\n");
    ASSERT_EQ(provider.raidPhysicalDisks.size(), 2u);
    const CIMInstance& first = provider.raidPhysicalDisks[0];
    EXPECT_EQ(first.findProperty("Name"), PEG_NOT_FOUND);
    EXPECT_EQ(textOf(first, "DiskType"), "\n");
    EXPECT_EQ(textOf(first, "ID"), "7");
    EXPECT_EQ(textOf(first, "Description"), "DALEN Physical Disk");
    EXPECT_EQ(pathOf(first), "root/cimv2:DALEN_PhysicalDisk.CreationClassName=\"\",DeviceID="
                             "\"d1\",SystemCreationClassName=\"\",SystemName=\"sysA\"");
    // The second record has no SystemName line and keeps the first one's.
    EXPECT_EQ(pathOf(provider.raidPhysicalDisks[1]),
              "root/cimv2:DALEN_PhysicalDisk.CreationClassName=\"\",DeviceID=\"d2\","
              "SystemCreationClassName=\"\",SystemName=\"sysA\"");

    parse("a b c d DALEN_DeclusteredArray x\ns DeviceID = \"d\";\ns Name = \"A\";\n", true);
    ASSERT_EQ(provider.raidDeclusteredArrays.size(), 1u);
    EXPECT_EQ(provider.raidDeclusteredArrays[0].findProperty("DeviceID"), PEG_NOT_FOUND);
}

TEST_F(RaidInventoryTest, LongLinesAndBrokenValuesStayInBounds) {
    // 600 bytes of two-byte characters: the line piece ends inside one.
    std::string accented;
    for (int i = 0; i < 300; i++)
        accented += "\xc3\xa9";
    parse("a b c d DALEN_PhysicalDisk x\n"
          "s DeviceID = \"" +
          std::string(600, 'a') + "\";\n" + std::string(1000, ' ') + "DALEN_PhysicalDisk x\n" +
          "s Name = \"" + accented + "\";\n" + "s SystemName = \"\xff\";\n" +
          std::string(401, 'z'));
    ASSERT_EQ(provider.raidPhysicalDisks.size(), 1u);
    // The first 399-byte piece ends inside the value; its cut keeps 382 bytes.
    EXPECT_EQ(textOf(provider.raidPhysicalDisks[0], "DeviceID"), std::string(382, 'a'));
    EXPECT_EQ(provider.raidPhysicalDisks[0].findProperty("Name"), PEG_NOT_FOUND);
    EXPECT_EQ(provider.raidPhysicalDisks[0].findProperty("SystemName"), PEG_NOT_FOUND);
}

TEST_F(RaidInventoryTest, MissingEmptyAndUnreadableFilesGiveEmptyListsAndOneLine) {
    char folder[] = "/tmp/raidInventoryXXXXXX";
    ASSERT_NE(mkdtemp(folder), nullptr);
    setenv("VEXA_INVENTORY_DIR", folder, 1);
    fclose(fopen((std::string(folder) + "/dalen1_pd.txt").c_str(), "w"));
    mkdir((std::string(folder) + "/dalen1_da.txt").c_str(), 0700);
    provider.raidVirtualDisks.append(CIMInstance(CORVANE_VIRTUAL_DISK));
    provider.buildCorvanePhysicalDiskList();
    provider.buildCorvaneVirtualDiskList();
    provider.buildCorvaneDeclusteredArrayList();
    EXPECT_EQ(provider.raidPhysicalDisks.size() + provider.raidVirtualDisks.size() +
                  provider.raidDeclusteredArrays.size(),
              0u);
    const std::vector<std::string> lines = logLines();
    EXPECT_NE(findLine(lines, "L1 VexaProvider::buildCorvaneVirtualDiskList: cannot open " +
                                  std::string(folder) +
                                  "/dalen1_vd.txt: No such file or directory"),
              -1);
    EXPECT_NE(findLine(lines, "L1 VexaProvider::buildCorvaneDeclusteredArrayList: cannot read " +
                                  std::string(folder) + "/dalen1_da.txt"),
              -1);
    EXPECT_EQ(countLines(lines, "L0 VexaProvider::createCorvanePhysicalDiskInstanceFromFile: "
                                "There are 0 physical disks."),
              1);
    rmdir((std::string(folder) + "/dalen1_da.txt").c_str());
    remove((std::string(folder) + "/dalen1_pd.txt").c_str());
    rmdir(folder);
}

} // namespace
