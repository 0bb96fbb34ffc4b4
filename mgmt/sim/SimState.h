#ifndef QZSIM_SIM_STATE_H
#define QZSIM_SIM_STATE_H

// The process-wide simulated cluster: the model behind its own mutex (held
// only inside one library operation) and where the model came from.

#include "SimModel.h"

#include <memory>
#include <mutex>
#include <string>

namespace qzsim {

class SimState {
public:
    static SimState& instance();

    std::mutex& mutex() { return mutex_; }
    // With mutex() held. Null while no model is loaded.
    ClusterModel* model() { return model_.get(); }

    // Installs a model (and its faults) read from the document `text`.
    // Callers hold no lock.
    void install(ClusterModel model, const std::string& source, const std::string& file,
                 const std::string& text);
    void drop();
    bool loaded();

    // Loads the state file when QZSIM_STATE_FILE names one that exists;
    // otherwise QZSIM_CLUSTER_MODEL or the demo cluster, unless a model is
    // installed already. Returns 0 or MGMT_E_MODEL_LOAD (after logging why).
    int loadInitial();
    // Reloads the model file when it changed since it was read.
    int reloadIfChanged();

    // With mutex() held: writes `model` through to the state file at `path`.
    bool saveState(const std::string& path, const ClusterModel& model, std::string* error);

private:
    int loadState(const std::string& path);

    std::mutex mutex_;
    std::unique_ptr<ClusterModel> model_;
    std::string source_;
    std::string file_; // empty unless the model came from a file
    std::string text_; // the document the model was read from
    long long fileStamp_ = 0;
};

long long fileStamp(const std::string& path);

} // namespace qzsim

#endif
