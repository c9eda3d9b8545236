#include "database/StructureGraph.h"

#include "database/ModelBuilder.h"

#include <qor/QORModel.h>

namespace database {

kit::Graph graphOf(Structure const& structure, kit::Loading const& loading) {
    kit::Graph graph;
    graph.adoptTree(buildModel(structure).release());
    for (Remark const& remark : structure.remarks) {
        loading.remark(structure.origin.source + ": " + remark.object + ": " + remark.text);
    }
    return graph;
}

} // namespace database
