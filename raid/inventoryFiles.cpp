// The declustered-RAID inventory files and the element lists built from
// them. Another component of the storage system writes one file per element
// kind, one record per element; the three parsers differ only in the table
// below.
#include "cimProvider.h"

#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/String.h>

#include <qzantras/ts_log.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "../instances/instanceBuilding.h"
#include "deploymentSettings.h"
#include "inventoryPlace.h"

PEGASUS_USING_PEGASUS;

namespace {

// Lines are read in pieces of this size; each piece is handled as a line.
const int LINE_PIECE_BYTES = 400;
// The record-start line names the element class in this token.
const int CLASS_TOKEN_INDEX = 4;
// A property line names the property in this token.
const int NAME_TOKEN_INDEX = 1;
// Every physical disk is published with this size, whatever its file says:
// clients read it as the model's fixed disk size, not as a measurement.
const Uint64 PHYSICAL_DISK_MAX_MEDIA_SIZE = 600000000;
// Most remembered values a kind has (the four keys of a disk).
const int MAX_KEYS = 4;

// Overrides the build setting; vexa-cimserver sets it to its sample files.
const char* const INVENTORY_DIR_VARIABLE = "VEXA_INVENTORY_DIR";

struct CorvaneElementKind {
    const char* parserFunction;
    const char* builderFunction;
    const char* fileName;
    const CIMName* className;
    Array<CIMInstance> VexaProvider::*list;
    int (VexaProvider::*parse)(FILE*);
    const char* startMessage;
    // Names read from the file, null-terminated.
    const char* const* propertyNames;
    // The remembered names, null-terminated, in key-binding order.
    const char* const* keyNames;
    const char* caption;
    const char* description;
    const char* elementNamePrefix;
    // The remembered name whose value ends "ElementName".
    const char* elementNameKey;
    bool hasMaxMediaSize;
    const char* countNoun;
};

const char* const DISK_KEYS[] = {"CreationClassName", "DeviceID", "SystemCreationClassName",
                                 "SystemName", 0};

const char* const PHYSICAL_DISK_PROPERTIES[] = {
    "CreationClassName",   "DeclusteredArrayID",      "DeviceID",   "DiskType", "ID", "Name",
    "RAIDRecoveryGroupID", "SystemCreationClassName", "SystemName", 0};

const char* const VIRTUAL_DISK_PROPERTIES[] = {
    "CreationClassName", "DeviceID", "ID", "Name", "SystemCreationClassName", "SystemName", 0};

const char* const DECLUSTERED_ARRAY_PROPERTIES[] = {"CreationClassName", "ID", "Name", 0};
const char* const DECLUSTERED_ARRAY_KEYS[] = {"CreationClassName", "Name", 0};

const CorvaneElementKind PHYSICAL_DISKS = {
    "VexaProvider::createCorvanePhysicalDiskInstanceFromFile",
    "VexaProvider::buildCorvanePhysicalDiskList",
    "dalen1_pd.txt",
    &CORVANE_PHYSICAL_DISK,
    &VexaProvider::raidPhysicalDisks,
    &VexaProvider::createCorvanePhysicalDiskInstanceFromFile,
    "physical disk start\n",
    PHYSICAL_DISK_PROPERTIES,
    DISK_KEYS,
    "KOR DALEN Physical Disk",
    "DALEN Physical Disk",
    "PhysicalDisk(SAS) : ",
    "DeviceID",
    true,
    "physical disks"};

const CorvaneElementKind VIRTUAL_DISKS = {"VexaProvider::createCorvaneVirtualDiskInstanceFromFile",
                                          "VexaProvider::buildCorvaneVirtualDiskList",
                                          "dalen1_vd.txt",
                                          &CORVANE_VIRTUAL_DISK,
                                          &VexaProvider::raidVirtualDisks,
                                          &VexaProvider::createCorvaneVirtualDiskInstanceFromFile,
                                          "virtual disk start\n",
                                          VIRTUAL_DISK_PROPERTIES,
                                          DISK_KEYS,
                                          "KOR DALEN Virtual Disk",
                                          "DALEN Virtual Disk",
                                          "Virtual Disk : ",
                                          "DeviceID",
                                          false,
                                          "virtual disks"};

const CorvaneElementKind DECLUSTERED_ARRAYS = {
    "VexaProvider::createCorvaneDeclusteredArrayInstanceFromFile",
    "VexaProvider::buildCorvaneDeclusteredArrayList", "dalen1_da.txt", &CORVANE_DECLUSTERED_ARRAY,
    &VexaProvider::raidDeclusteredArrays,
    &VexaProvider::createCorvaneDeclusteredArrayInstanceFromFile, "declustered array start\n",
    DECLUSTERED_ARRAY_PROPERTIES, DECLUSTERED_ARRAY_KEYS, "KOR DALEN Declustered Array",
    // Worded unlike the other two; clients match the published text.
    "CPU Declustered Array", "Declustered Array : ", "Name", false,
    // "decluster" is the published log text; log watchers match it.
    "decluster arrays"};

// Position of name in a null-terminated list, or -1.
int positionIn(const char* const* names, const char* name) {
    for (int i = 0; names[i] != 0; i++) {
        if (std::strcmp(names[i], name) == 0) {
            return i;
        }
    }
    return -1;
}

// One parse of one file: the open record, the record count and the
// remembered key values, which carry over from one record to the next.
class InventoryParse {
public:
    InventoryParse(VexaProvider& provider, const CorvaneElementKind& kind)
        : provider_(provider), kind_(kind), classText_(kind.className->getString().getCString()) {}
    // Messages after the parse, or after an exception out of it, name no line.
    ~InventoryParse() { raid::currentInventoryPlace().line = 0; }
    InventoryParse(const InventoryParse&) = delete;
    InventoryParse& operator=(const InventoryParse&) = delete;

    void readFile(FILE* file) {
        raid::InventoryPlace& place = raid::currentInventoryPlace();
        place.line = 1;
        char line[LINE_PIECE_BYTES];
        while (std::fgets(line, sizeof line, file) != 0) {
            // The piece's newline goes with its last token, so count it first.
            const bool endsLine = std::strchr(line, '\n') != 0;
            readLine(line);
            place.line += endsLine ? 1 : 0;
        }
        place.line = 0;
        if (count_ != 0) {
            completeRecord();
        }
        ts_log(0, kind_.parserFunction, "There are %d %s.\n", count_, kind_.countNoun);
    }

private:
    void readLine(char* line) {
        char* savePointer = 0;
        int index = 0;
        for (char* token = provider_.getNextToken(line, &savePointer); token != 0;
             token = provider_.getNextToken(line, &savePointer), index++) {
            if (index == CLASS_TOKEN_INDEX && std::strcmp(token, classText_) == 0) {
                startRecord();
            } else if (index == NAME_TOKEN_INDEX && positionIn(kind_.propertyNames, token) >= 0) {
                readProperty(&line, &savePointer, token);
            }
        }
    }

    void startRecord() {
        if (count_ != 0) {
            completeRecord();
        }
        ts_log(0, kind_.parserFunction, "%s", kind_.startMessage);
        record_ = CIMInstance(*kind_.className);
        count_++;
    }

    // The name token counts as one: the parser goes on with the tokens after
    // the value, counted from the name's index plus one.
    void readProperty(char** line, char** savePointer, char* name) {
        if (count_ == 0) {
            // No record to receive it; its "=" and value are passed over so
            // the line's later tokens count as they would inside a record.
            provider_.getNextToken(*line, savePointer);
            provider_.getNextToken(*line, savePointer);
            return;
        }
        const String value =
            provider_.setCorvaneInstanceProperty(line, savePointer, &record_, name);
        const int key = positionIn(kind_.keyNames, name);
        if (key >= 0) {
            remembered_[key] = value;
        }
    }

    void completeRecord() {
        const char* const fn = kind_.parserFunction;
        instances::addProperty(record_, "Caption", kind_.caption);
        instances::addProperty(record_, "Description", kind_.description);
        const String elementName = String(kind_.elementNamePrefix) +
                                   remembered_[positionIn(kind_.keyNames, kind_.elementNameKey)];
        ts_log(0, fn, "ElementName = %s\n", (const char*)elementName.getCString());
        instances::addProperty(record_, "ElementName", CIMValue(elementName));
        if (kind_.hasMaxMediaSize) {
            instances::addProperty(record_, "MaxMediaSize", CIMValue(PHYSICAL_DISK_MAX_MEDIA_SIZE));
        }
        instances::addOperationalStatus(record_, instances::STATUS_OK);

        Array<CIMKeyBinding> keys;
        String keyText;
        for (int i = 0; kind_.keyNames[i] != 0; i++) {
            instances::appendKey(keys, kind_.keyNames[i], remembered_[i]);
            keyText.append(i == 0 ? String() : String(" "));
            keyText.append(remembered_[i]);
        }
        ts_log(0, fn, "key bindings are %s\n", (const char*)keyText.getCString());
        instances::setInstancePath(record_, *kind_.className, keys);
        (provider_.*kind_.list).append(record_);
        ts_log(0, fn, "%d instance(s) was(were) added to list\n", count_);
    }

    VexaProvider& provider_;
    const CorvaneElementKind& kind_;
    const CString classText_;
    CIMInstance record_;
    int count_ = 0;
    String remembered_[MAX_KEYS];
};

std::string inventoryPath(const char* fileName) {
    const char* folder = std::getenv(INVENTORY_DIR_VARIABLE);
    if (folder == 0 || folder[0] == '\0') {
        folder = VEXA_INVENTORY_DIR;
    }
    return std::string(folder) + "/" + fileName;
}

// A file that cannot be opened or read leaves an empty list: the RAID layer
// is optional, and half a list would look like missing hardware.
int buildCorvaneList(VexaProvider& provider, const CorvaneElementKind& kind) {
    Array<CIMInstance>& list = provider.*kind.list;
    list.clear();
    const std::string path = inventoryPath(kind.fileName);
    FILE* file = std::fopen(path.c_str(), "r");
    if (file == 0) {
        ts_log(1, kind.builderFunction, "cannot open %s: %s\n", path.c_str(), std::strerror(errno));
        return 0;
    }
    {
        const raid::InventoryFileScope scope(path);
        (provider.*kind.parse)(file);
    }
    if (std::ferror(file)) {
        list.clear();
        ts_log(1, kind.builderFunction, "cannot read %s\n", path.c_str());
    }
    std::fclose(file);
    return 0;
}

} // namespace

int VexaProvider::createCorvanePhysicalDiskInstanceFromFile(FILE* file) {
    InventoryParse(*this, PHYSICAL_DISKS).readFile(file);
    return 0;
}

int VexaProvider::createCorvaneVirtualDiskInstanceFromFile(FILE* file) {
    InventoryParse(*this, VIRTUAL_DISKS).readFile(file);
    return 0;
}

int VexaProvider::createCorvaneDeclusteredArrayInstanceFromFile(FILE* file) {
    InventoryParse(*this, DECLUSTERED_ARRAYS).readFile(file);
    return 0;
}

int VexaProvider::buildCorvanePhysicalDiskList() { return buildCorvaneList(*this, PHYSICAL_DISKS); }

int VexaProvider::buildCorvaneVirtualDiskList() { return buildCorvaneList(*this, VIRTUAL_DISKS); }

int VexaProvider::buildCorvaneDeclusteredArrayList() {
    return buildCorvaneList(*this, DECLUSTERED_ARRAYS);
}
