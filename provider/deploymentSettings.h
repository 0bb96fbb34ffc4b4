// Deployment values fixed at build time (see docs/provider.md). The
// provider has no configuration of its own; these are the few values that
// differ between installations.
#ifndef VEXA_PROVIDER_DEPLOYMENTSETTINGS_H
#define VEXA_PROVIDER_DEPLOYMENTSETTINGS_H

// IPv4 address of the management node: the object manager's Name and
// SystemName and the indication filters' SystemName key.
#ifndef VEXA_MANAGEMENT_NODE_IP
#define VEXA_MANAGEMENT_NODE_IP "127.0.0.1"
#endif

// Folder of the declustered-RAID inventory files (dalen1_pd.txt,
// dalen1_da.txt, dalen1_vd.txt).
#ifndef VEXA_INVENTORY_DIR
#define VEXA_INVENTORY_DIR "/usr/lpp/qzfs/data"
#endif

#endif
