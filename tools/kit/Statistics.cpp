#include "kit/Statistics.h"

#include "kit/Reflection.h"

#include <qor/QORTraversalOperation.h>

#include <iomanip>
#include <ostream>
#include <unordered_set>

namespace kit {
namespace {

class Counting : public QORTraversalOperation {
public:
    /// An object with two owners is met twice.
    bool pre_process(QORObject* object, void*&) override {
        if (!met.insert(object).second) {
            return false;
        }
        ++statistics.objectsByClass[std::string(view(object->getMetaClass()->getDisplayName()))];
        ++statistics.objects;
        return true;
    }

    Statistics statistics;

private:
    std::unordered_set<QORObject const*> met;
};

} // namespace

Statistics countObjects(QORObject& root) {
    Counting counting;
    root.depthTraversal(counting, nullptr);
    return counting.statistics;
}

void printStatistics(Statistics const& statistics, std::ostream& out) {
    int const width = static_cast<int>(std::to_string(statistics.objects).size());
    for (auto const& [className, count] : statistics.objectsByClass) {
        out << std::setw(width) << count << "  " << className << '\n';
    }
    out << std::setw(width) << statistics.objects << "  in all\n";
}

} // namespace kit
