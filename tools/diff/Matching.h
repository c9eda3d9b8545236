#pragma once

#include "diff/GraphDiff.h"
#include "kit/Hash.h"
#include "kit/Numbering.h"
#include "kit/ObjectPaths.h"

#include <deque>
#include <string>
#include <vector>

namespace diff {

/// One of the two graphs.
struct Side {
    explicit Side(QORObject& top)
        : root(top), numbering(top), paths(numbering), partners(numbering.objects().size()),
          pairs(numbering.objects().size()) {}

    /// The same object of the other graph; null if there is none.
    QORObject* partnerOf(QORObject const* object) const {
        return object ? partners[numbering.numberOf(*object)] : nullptr;
    }

    QORObject& root;
    kit::Numbering numbering;
    kit::ObjectPaths paths;
    std::vector<QORObject*> partners; ///< by the numbers of the objects; null for none
    std::vector<std::size_t> pairs;   ///< likewise the number of the pair, the same on both sides; 0 for none
};

/// Matches the objects of two graphs; `compare` describes the rules.
class Matching {
public:
    Matching(Side& first, Side& second) : before(first), after(second) {}

    /// Fills the partners of both sides. Throws kit::ToolError for a rename that names no two objects of the
    /// same class.
    void run(std::vector<Rename> const& renames);

private:
    using Objects = std::vector<QORObject*>;

    /// Objects of one class and name below owners that are the same, of which it isn't clear which are.
    struct Group {
        Objects ours;
        Objects theirs;
        bool independent; ///< whether they have nothing to do with each other but their package
    };
    using Signature = kit::Hash (Matching::*)(Side const& side, QORObject& object) const;

    void pair(QORObject& ours, QORObject& theirs);
    void pairRoots();
    void pairRenamed(Rename const& rename);
    void pairByName(Objects const& ours, Objects const& theirs, bool inPackage);
    void settle();
    bool pairById();
    bool settleGroups();
    void settleGroup(Group& group);
    void pairBySignature(Group& group, Signature signature, bool evenSeveral);
    void dropPaired(Group& group) const;

    kit::Hash wholeOf(Side const& side, QORObject& object) const;
    kit::Hash linksOf(Side const& side, QORObject& object) const;
    kit::Hash attributesOf(Side const& side, QORObject& object) const;
    kit::Hash signatureOf(Side const& side, QORObject& object, bool withAttributes, int depth) const;
    kit::Hash labelOf(Side const& side, QORObject const& object) const;

    Side& before;
    Side& after;
    Objects pending; ///< of the first graph: paired, but not yet what they own
    std::deque<Group> groups;
    std::size_t pairCount = 0;
};

} // namespace diff
