#ifndef QZSIM_MODEL_LOADER_H
#define QZSIM_MODEL_LOADER_H

#include "SimModel.h"

#include <string>

namespace qzsim {

// Builds a model from the JSON text of a cluster-model file. `source` names
// the text in messages. On failure *error reads
// "<source>:<line>:<column>: <problem>" for malformed JSON and
// "<source>: <JSON path>: <problem>" for a document that is not a valid model.
bool loadModel(const std::string& text, const std::string& source, ClusterModel* model,
               std::string* error);

bool readFileText(const std::string& path, std::string* text, std::string* error);

} // namespace qzsim

#endif
