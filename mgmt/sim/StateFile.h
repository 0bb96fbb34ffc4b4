#ifndef QZSIM_STATE_FILE_H
#define QZSIM_STATE_FILE_H

// The state file: a complete cluster-model document that follows every
// change a library operation makes, so that a restarted library shows
// exactly the changes made before. It is the model document the cluster
// came from with the changeable parts (filesets, quotas, node settings, the
// failure detection time) written from the model in memory.

#include "SimModel.h"

#include <string>

namespace qzsim {

// QZSIM_STATE_FILE, or empty when no state is kept.
std::string stateFilePath();

// `base` (a valid model document) with the changeable parts of `model`.
std::string stateText(const std::string& base, const ClusterModel& model);

// Replaces the file at `path` by `text` so that a crash at any moment leaves
// either the old or the new content: written to a temporary file beside it,
// flushed to disk, renamed over it, and the directory flushed. On failure
// the file is as it was and *error says why.
bool writeFileAtomically(const std::string& path, const std::string& text, std::string* error);

} // namespace qzsim

#endif
