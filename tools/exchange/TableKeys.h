#pragma once

#include <utility>
#include <vector>

class QORAttribute;
class QORClass;
class QORForeignKey;
class QORKey;

namespace kit {
class GraphOrder;
}

namespace exchange {

/// The columns of a key: in the order of its index, if it has one, or else by their positions.
std::vector<QORAttribute*> columnsOf(QORKey& key, kit::GraphOrder& order);

/// The contents of a foreign key.
struct Reference {
    QORClass* table = nullptr; ///< null if the graph lacks the referenced table
    /// By the positions of the former; the latter can be null.
    std::vector<std::pair<QORAttribute*, QORAttribute*>> columns{};
};

Reference referenceOf(QORForeignKey& key, kit::GraphOrder& order);

} // namespace exchange
