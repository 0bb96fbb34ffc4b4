#include "SimState.h"

#include "DemoModel.h"
#include "FaultTable.h"
#include "ModelLoader.h"
#include "StateFile.h"

#include <qzantras/ts_log.h>

#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace qzsim {

long long fileStamp(const std::string& path) {
    struct stat info;
    if (stat(path.c_str(), &info) != 0) {
        return 0;
    }
    return static_cast<long long>(info.st_mtim.tv_sec) * 1000000000LL + info.st_mtim.tv_nsec +
           static_cast<long long>(info.st_size);
}

SimState& SimState::instance() {
    static SimState state;
    return state;
}

void SimState::install(ClusterModel model, const std::string& source, const std::string& file,
                       const std::string& text) {
    std::vector<InjectedFault> faults = model.faults;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        model_.reset(new ClusterModel(std::move(model)));
        source_ = source;
        file_ = file;
        text_ = text;
        fileStamp_ = file.empty() ? 0 : fileStamp(file);
    }
    for (const InjectedFault& f : faults) {
        FaultTable::instance().set(f.operation, f.code, f.times);
    }
}

void SimState::drop() {
    std::lock_guard<std::mutex> lock(mutex_);
    model_.reset();
    source_.clear();
    file_.clear();
    text_.clear();
    fileStamp_ = 0;
}

bool SimState::loaded() {
    std::lock_guard<std::mutex> lock(mutex_);
    return model_ != nullptr;
}

bool SimState::saveState(const std::string& path, const ClusterModel& model, std::string* error) {
    std::string text;
    try {
        text = stateText(text_, model);
    } catch (const std::exception& e) {
        *error = std::string("cannot write the model as a document: ") + e.what();
        return false;
    }
    return writeFileAtomically(path, text, error);
}

int SimState::loadState(const std::string& path) {
    std::string text, error;
    ClusterModel model;
    if (!readFileText(path, &text, &error) || !loadModel(text, path, &model, &error)) {
        ts_log(2, "PollingHandler::init", "cannot load cluster state: %s\n", error.c_str());
        return MGMT_E_MODEL_LOAD;
    }
    // A later change of the model file still replaces the cluster.
    const char* file = std::getenv("QZSIM_CLUSTER_MODEL");
    install(std::move(model), path, file != nullptr ? file : "", text);
    ts_log(0, "PollingHandler::init", "cluster state loaded from %s\n", path.c_str());
    return MGMT_OK;
}

int SimState::loadInitial() {
    // The state file holds the model as the last change left it; it wins
    // over any other source of the model.
    const std::string state = stateFilePath();
    if (!state.empty() && access(state.c_str(), F_OK) == 0) {
        return loadState(state);
    }
    if (loaded()) {
        return MGMT_OK;
    }
    const char* file = std::getenv("QZSIM_CLUSTER_MODEL");
    std::string text, error, source = "<demo cluster>";
    if (file != nullptr && *file != '\0') {
        source = file;
        if (!readFileText(file, &text, &error)) {
            ts_log(2, "PollingHandler::init", "cannot load cluster model: %s\n", error.c_str());
            return MGMT_E_MODEL_LOAD;
        }
    } else {
        text = demoModelJson();
    }
    ClusterModel model;
    if (!loadModel(text, source, &model, &error)) {
        ts_log(2, "PollingHandler::init", "cannot load cluster model: %s\n", error.c_str());
        return MGMT_E_MODEL_LOAD;
    }
    install(std::move(model), source, file != nullptr && *file != '\0' ? file : "", text);
    ts_log(0, "PollingHandler::init", "cluster model loaded from %s\n", source.c_str());
    return MGMT_OK;
}

int SimState::reloadIfChanged() {
    std::string file;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (file_.empty() || fileStamp(file_) == fileStamp_) {
            return MGMT_OK;
        }
        file = file_;
    }
    std::string text, error;
    ClusterModel model;
    if (!readFileText(file, &text, &error) || !loadModel(text, file, &model, &error)) {
        ts_log(2, "PollingHandler::refreshClusterRecipe",
               "cluster model not reloaded, keeping the previous one: %s\n", error.c_str());
        std::lock_guard<std::mutex> lock(mutex_);
        fileStamp_ = fileStamp(file_); // report a broken file once, not at every refresh
        return MGMT_E_MODEL_LOAD;
    }
    install(std::move(model), file, file, text);
    ts_log(1, "PollingHandler::refreshClusterRecipe", "cluster model reloaded from %s\n",
           file.c_str());
    // The cluster was replaced as a whole; a restart must show the new one.
    const std::string state = stateFilePath();
    if (!state.empty()) {
        std::lock_guard<std::mutex> lock(mutex_);
        if (!saveState(state, *model_, &error)) {
            ts_log(2, "PollingHandler::refreshClusterRecipe", "cluster state not saved: %s\n",
                   error.c_str());
        }
    }
    return MGMT_OK;
}

} // namespace qzsim
