// Small cluster models for the read-model tests: few enough instances that a
// test can name every one of them.
#ifndef VEXA_TESTS_SMALLCLUSTERMODELS_H
#define VEXA_TESTS_SMALLCLUSTERMODELS_H

// Two nodes, one file system with one pool of two disks, one free disk.
inline const char* const SMALL_CLUSTER = R"({
  "cluster": { "clusterName": "small", "primaryServer": "n1" },
  "nodes": [
    { "name": "n1", "ipAddr": "10.1.0.1", "status": "up",
      "diskAccess": [ { "diskName": "b1", "localAccess": true, "localDeviceName": "/dev/sdb" } ] },
    { "name": "n2", "ipAddr": "10.1.0.2", "status": "Up",
      "diskAccess": [ { "diskName": "b1", "localAccess": false, "serverName": "n1" } ] }
  ],
  "filesystems": [
    { "name": "data0", "status": "recovered", "mountPoint": "/small/data0",
      "managerNode": "n2", "mountedNodes": ["n1"],
      "pools": [ { "name": "system", "disks": [
          { "name": "b1", "availability": "OK", "totalSpace": 100, "fullBlockFreeSpace": 50,
            "servers": ["n1"], "backupServers": ["n2"] },
          { "name": "b2", "availability": "OK", "totalSpace": 100, "fullBlockFreeSpace": 50,
            "servers": ["n2"] } ] } ],
      "filesets": [ { "name": "home", "id": 1, "comment": "homes" } ] }
  ],
  "freeDisks": [ { "name": "spare", "poolName": "system", "servers": ["n2"] } ]
})";

// A cluster without file systems.
inline const char* const NO_FILESYSTEM_CLUSTER = R"({
  "cluster": { "clusterName": "bare" },
  "nodes": [ { "name": "n1", "ipAddr": "10.2.0.1" } ]
})";

#endif
