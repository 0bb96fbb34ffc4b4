// The namespace and the CIM class names the provider serves.
//
// Process-wide constants, built when the library is loaded in the order they
// are defined (the namespace first). Class names from requests are compared
// with them by CIMName equality, which ignores case.
#ifndef VEXA_PROVIDER_CLASSNAMES_H
#define VEXA_PROVIDER_CLASSNAMES_H

#include <Pegasus/Common/CIMName.h>

extern const Pegasus::CIMNamespaceName NAMESPACE;
extern const Pegasus::CIMName REGISTERED_PROFILE;
extern const Pegasus::CIMName OBJECT_MANAGER;
extern const Pegasus::CIMName ELEMENT_CONFORMS_TO_PROFILE;
extern const Pegasus::CIMName COMPUTER_SYSTEM;
extern const Pegasus::CIMName INDICATION_FILTER;
extern const Pegasus::CIMName VEXA_CLUSTER;
extern const Pegasus::CIMName VEXA_NODE;
extern const Pegasus::CIMName VEXA_FILESYSTEM;
extern const Pegasus::CIMName VEXA_STORAGE_POOL;
extern const Pegasus::CIMName VEXA_DISK;
extern const Pegasus::CIMName VEXA_POLICY;
extern const Pegasus::CIMName VEXA_USER_QUOTA;
extern const Pegasus::CIMName VEXA_GROUP_QUOTA;
extern const Pegasus::CIMName VEXA_FILESET_QUOTA;
extern const Pegasus::CIMName VEXA_FILESET;
extern const Pegasus::CIMName VEXA_USER;
extern const Pegasus::CIMName VEXA_GROUP;
extern const Pegasus::CIMName VEXA_JUNCTION;
extern const Pegasus::CIMName VEXA_FILESET_ACL;
extern const Pegasus::CIMName VEXA_CONCRETE_JOB;
extern const Pegasus::CIMName VEXA_INST_MODIFICATION;
extern const Pegasus::CIMName VEXA_COMPONENTCS;
extern const Pegasus::CIMName VEXA_HOSTED_FILESYSTEM;
extern const Pegasus::CIMName VEXA_ASSOC_STORAGE;
extern const Pegasus::CIMName VEXA_ASSOC_STORAGE_COMP;
extern const Pegasus::CIMName VEXA_NODE_SERVING_NSD;
extern const Pegasus::CIMName VEXA_NODE_ACCESSES_NSD;
extern const Pegasus::CIMName VEXA_FREE_NSD;
extern const Pegasus::CIMName VEXA_MOUNTED;
extern const Pegasus::CIMName VEXA_CONFIG_MGR;
extern const Pegasus::CIMName VEXA_FILESYSTEM_MGR;
extern const Pegasus::CIMName VEXA_FILESYSTEM_POLICY;
extern const Pegasus::CIMName VEXA_ASSOC_USER_QUOTA;
extern const Pegasus::CIMName VEXA_ASSOC_GROUP_QUOTA;
extern const Pegasus::CIMName VEXA_ASSOC_FILESET_QUOTA;
extern const Pegasus::CIMName VEXA_ASSOC_USER;
extern const Pegasus::CIMName VEXA_ASSOC_GROUP;
extern const Pegasus::CIMName VEXA_ASSOC_FILESET;
extern const Pegasus::CIMName VEXA_ASSOC_FILESET_JUNCTION;
extern const Pegasus::CIMName VEXA_ASSOC_FILESYSTEM_JUNCTION;
extern const Pegasus::CIMName VEXA_ASSOC_FILESET_ACL;
extern const Pegasus::CIMName VEXA_ASSOC_FILESYSTEM_FILESETQUOTAS;
extern const Pegasus::CIMName VEXA_ASSOC_FILESYSTEM_USERQUOTAS;
extern const Pegasus::CIMName VEXA_ASSOC_FILESYSTEM_GROUPQUOTAS;
extern const Pegasus::CIMName VEXA_IND_MOUNT;
extern const Pegasus::CIMName VEXA_IND_UNMOUNT;
extern const Pegasus::CIMName VEXA_IND_ADDDISK;
extern const Pegasus::CIMName VEXA_IND_DELDISK;
extern const Pegasus::CIMName VEXA_IND_CHDISK;
extern const Pegasus::CIMName VEXA_IND_MGR_TAKEOVER;
extern const Pegasus::CIMName VEXA_IND_NODE_FAILURE;
extern const Pegasus::CIMName VEXA_IND_NODE_RECOVERY;
extern const Pegasus::CIMName VEXA_IND_CRFS;
extern const Pegasus::CIMName VEXA_IND_DELFS;
extern const Pegasus::CIMName VEXA_IND_CHFS;
extern const Pegasus::CIMName VEXA_IND_NEW_CONN;
extern const Pegasus::CIMName VEXA_IND_EVT_OVERFLOW;
extern const Pegasus::CIMName VEXA_IND_HUNGTHREAD;
extern const Pegasus::CIMName VEXA_IND_STGPOOL_UTIL;
extern const Pegasus::CIMName VEXA_IND_QZADDDISK;
extern const Pegasus::CIMName VEXA_IND_QZDELDISK;
extern const Pegasus::CIMName VEXA_PERF_DISK;
extern const Pegasus::CIMName VEXA_PERF_FILESYSTEM;
extern const Pegasus::CIMName VEXA_PERF_FS_PER_NODE;
extern const Pegasus::CIMName CORVANE_PHYSICAL_DISK;
extern const Pegasus::CIMName CORVANE_VIRTUAL_DISK;
extern const Pegasus::CIMName CORVANE_DECLUSTERED_ARRAY;
extern const Pegasus::CIMName CORVANE_IND_PD;
extern const Pegasus::CIMName CORVANE_IND_VD;
extern const Pegasus::CIMName CORVANE_IND_DA;

#endif
