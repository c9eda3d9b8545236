#pragma once

#include "report.h"
#include "values.h"

#include <qor/QOR.h>

#include <cstdint>
#include <vector>

/// The graph of the workload and the handles that its phases need.
struct Workload {
    explicit Workload(WorkloadSize const& ofSize);
    Workload(Workload const&) = delete;
    Workload& operator=(Workload const&) = delete;

    WorkloadSize const size;
    std::vector<QORString> attributeNames; ///< the keys of a class's attributes
    QORModel* model = nullptr;
    std::vector<QORDerivedType*> types;
    std::vector<QORClass*> classes;
    std::vector<QORAttribute*> victims;
};

// Each phase is one function that the compiler leaves in one piece under its own name, so that a tool can
// count what happens within it. Each gives the number that proves its work.
#define WORKLOAD_PHASE [[gnu::noinline, gnu::noclone]]

/// Makes the model: types, packages, classes and attributes, each put under its owner when it has its name.
WORKLOAD_PHASE std::uint64_t phaseBuild(Workload& workload);
/// Looks each attribute up by name.
WORKLOAD_PHASE std::uint64_t phaseFind(Workload& workload);
/// Walks the model and counts the objects by class.
WORKLOAD_PHASE std::uint64_t phaseWalk(Workload& workload);
/// Reads the attributes of each object as text by reflection.
WORKLOAD_PHASE std::uint64_t phaseReflectRead(Workload& workload);
/// Sets the comment of each object by reflection, looking the attribute up by name for each.
WORKLOAD_PHASE std::uint64_t phaseReflectWrite(Workload& workload);
/// Renames each class.
WORKLOAD_PHASE std::uint64_t phaseRename(Workload& workload);
/// Copies each attribute, compares it with its copy and deletes the copy.
WORKLOAD_PHASE std::uint64_t phaseCopy(Workload& workload);
/// Turns every text from ISO-8859-1 into UTF-8.
WORKLOAD_PHASE std::uint64_t phaseRecode(Workload& workload);
/// Deletes the victims one by one.
WORKLOAD_PHASE std::uint64_t phaseUnlinkDelete(Workload& workload);
/// Deletes the model with all that is left.
WORKLOAD_PHASE std::uint64_t phaseTeardown(Workload& workload);
