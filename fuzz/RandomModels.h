#pragma once

#include "ModelOperations.h"

#include <functional>
#include <string>
#include <vector>

/// Random operations on models, each run on a model of its own.
struct RandomModels {
    ModelOperations::Kind kind = ModelOperations::Kind::ANY;
    std::function<void(ModelOperations&)> begin{}; ///< makes what the operations begin with, if it is given
    std::function<std::vector<std::string>(QORModel&)> faultsOf;
    unsigned runs = 100;
    std::size_t mostOperations = 300;
};

/// Runs them until one model has faults, and looks for fewer operations that still lead to some. Returns the
/// faults with the model, empty if there are none. QOR_RANDOM_SEED and QOR_RANDOM_STEPS choose another
/// beginning and so many times more runs.
std::string smallestFailure(RandomModels const& models);
