// The declustered-RAID inventory files: the samples, crafted lines the parser
// must read as designed, and files it must survive.
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>

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
    void parsePhysicalDisks(std::string content) {
        FILE* file = fmemopen(&content[0], content.size(), "r");
        provider.createCorvanePhysicalDiskInstanceFromFile(file);
        fclose(file);
    }
    void buildAll() {
        provider.buildCorvanePhysicalDiskList();
        provider.buildCorvaneVirtualDiskList();
        provider.buildCorvaneDeclusteredArrayList();
    }
    VexaProvider provider;
};

TEST_F(RaidInventoryTest, SampleFilesGiveOneElementPerRecordWithCompletionAndKeys) {
    setenv("VEXA_INVENTORY_DIR", VEXA_SAMPLE_INVENTORY_DIR, 1);
    buildAll();
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
    EXPECT_EQ(textOf(disk, "ElementName") + textOf(disk, "MaxMediaSize"),
              "PhysicalDisk(SAS) : e1s02600000000");
    EXPECT_EQ(pathOf(disk), "root/cimv2:DALEN_PhysicalDisk.CreationClassName=\"DALEN_"
                            "PhysicalDisk\",DeviceID=\"e1s02\",SystemCreationClassName=\"KOR_"
                            "VEXA_Node\",SystemName=\"node1\"");
    EXPECT_EQ(textOf(provider.raidDeclusteredArrays[1], "Description"), "CPU Declustered Array");
    // Virtual disks are found by their name, not by the DeviceID of their path.
    EXPECT_EQ(provider.getCorvaneInstIdx(VexaProvider::CORVANE_INST_VIRTUAL_DISK, "rgL_data2"), 2);
    EXPECT_EQ(provider.getCorvaneInstIdx(VexaProvider::CORVANE_INST_VIRTUAL_DISK, "vd3"), -1);
    EXPECT_EQ(provider.getCorvaneInstIdx(static_cast<VexaProvider::CorvaneInstanceType>(3), "DA1"),
              -1);
}

TEST_F(RaidInventoryTest, CraftedLinesAreSplitCutAndRememberedAsDesigned) {
    parsePhysicalDisks("s CreationClassName = \"orphan\";\n"  // before any record: ignored
                       "# 1 instance of DALEN_PhysicalDisk\n" // the newline stays on the token
                       "# 1 instance of DALEN_PhysicalDisk {\n"
                       "s  DeviceID   =   \"d1\";\n"
                       "s\tName = \"tabbed\";\n"
                       "s SystemName = \"sysA\";\n"
                       "s Description = \"not read\";\n"
                       "s DiskType = Q\n"
                       "s Name =\n"
                       "s ID = \"7\";x a b DALEN_PhysicalDisk {\n" // a start as seventh token
                       "s DeviceID = \"old\";\n"
                       "s DeviceID = \"d2\";\n");
    ASSERT_EQ(provider.raidPhysicalDisks.size(), 2u);
    const CIMInstance& first = provider.raidPhysicalDisks[0];
    EXPECT_EQ(first.findProperty("Name"), PEG_NOT_FOUND);
    EXPECT_EQ(textOf(first, "DiskType") + textOf(first, "ID"), "\n7");
    EXPECT_EQ(textOf(first, "Description"), "DALEN Physical Disk");
    EXPECT_EQ(pathOf(first), "root/cimv2:DALEN_PhysicalDisk.CreationClassName=\"\",DeviceID="
                             "\"d1\",SystemCreationClassName=\"\",SystemName=\"sysA\"");
    // No SystemName line: the second record keeps the first one's.
    EXPECT_EQ(pathOf(provider.raidPhysicalDisks[1]),
              "root/cimv2:DALEN_PhysicalDisk.CreationClassName=\"\",DeviceID=\"d2\","
              "SystemCreationClassName=\"\",SystemName=\"sysA\"");
}

TEST_F(RaidInventoryTest, LongLinesAndBrokenValuesStayInBounds) {
    std::string accented; // 600 bytes: a 399-byte line piece ends inside a character
    for (int i = 0; i < 300; i++)
        accented += "\xc3\xa9";
    parsePhysicalDisks("a b c d DALEN_PhysicalDisk x\ns DeviceID = \"" + std::string(600, 'a') +
                       "\";\n" + std::string(1000, ' ') + "DALEN_PhysicalDisk x\ns Name = \"" +
                       accented + "\";\ns SystemName = \"\xff\";\n" + std::string(401, 'z'));
    ASSERT_EQ(provider.raidPhysicalDisks.size(), 1u);
    EXPECT_EQ(textOf(provider.raidPhysicalDisks[0], "DeviceID"), std::string(382, 'a'));
    EXPECT_EQ(provider.raidPhysicalDisks[0].findProperty("Name"), PEG_NOT_FOUND);
    EXPECT_EQ(provider.raidPhysicalDisks[0].findProperty("SystemName"), PEG_NOT_FOUND);
    // Each refusal names its line; pieces of one long line share its number.
    const std::vector<std::string> lines = logLines();
    EXPECT_NE(findLine(lines, "L1 VexaProvider::setCorvaneInstanceProperty: line 4: value of Name "
                              "is not UTF-8 text; property left out"),
              -1);
    EXPECT_NE(findLine(lines, "L1 VexaProvider::setCorvaneInstanceProperty: line 5: value of "
                              "SystemName is not UTF-8 text; property left out"),
              -1);
}

TEST_F(RaidInventoryTest, MissingAndUnreadableFilesGiveEmptyListsAndBadLinesNameTheirPlace) {
    char folder[] = "/tmp/raidInventoryXXXXXX";
    ASSERT_NE(mkdtemp(folder), nullptr);
    const std::string base = folder;
    setenv("VEXA_INVENTORY_DIR", folder, 1);
    FILE* virtualDisks = fopen((base + "/dalen1_vd.txt").c_str(), "w");
    fputs("a b c d DALEN_VirtualDisk x\ns DeviceID = \"v1\";\ns Name =\n", virtualDisks);
    fclose(virtualDisks);
    mkdir((base + "/dalen1_da.txt").c_str(), 0700);
    provider.raidVirtualDisks.append(CIMInstance(CORVANE_VIRTUAL_DISK));
    buildAll();
    EXPECT_EQ(provider.raidPhysicalDisks.size() + provider.raidDeclusteredArrays.size(), 0u);
    EXPECT_EQ(provider.raidVirtualDisks.size(), 1u);
    EXPECT_EQ(countLines(logLines(), "L1 VexaProvider::buildCorvanePhysicalDiskList: cannot open " +
                                         base + "/dalen1_pd.txt: No such file or directory"),
              1);
    EXPECT_EQ(countLines(logLines(), "L1 VexaProvider::buildCorvaneDeclusteredArrayList: cannot "
                                     "read " +
                                         base + "/dalen1_da.txt"),
              1);
    EXPECT_EQ(countLines(logLines(), "L1 VexaProvider::setCorvaneInstanceProperty: " + base +
                                         "/dalen1_vd.txt:3: Name has no value; property left out"),
              1);
    remove((base + "/dalen1_vd.txt").c_str());
    rmdir((base + "/dalen1_da.txt").c_str());
    rmdir(folder);
}

} // namespace
