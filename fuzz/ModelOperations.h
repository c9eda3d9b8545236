#pragma once

#include "GraphOperations.h"

class QORModel;

/// Operations on a model as those that databases become: most of what they make is what tables, keys, types
/// and the like are made of, each object below an owner, with texts that mean something there or don't. Each
/// operation takes the same number of bytes, so that one can be left out and the others stay as they are.
class ModelOperations : public GraphOperations {
public:
    static constexpr std::size_t bytesOfOne = 8;

    enum class Kind {
        ANY,   ///< everything, texts that are no SQL too
        PLAIN, ///< nothing with expressions, queries or statements in it
        TAKING ///< only what takes something away
    };

    explicit ModelOperations(Kind kind = Kind::ANY);

    /// Goes on with this model, all of whose objects must have been made while this lives.
    void adopt(QORModel& root);
    /// Runs an operation for each such number of bytes.
    void run(Bytes& bytes);
    /// The model, a new one if it has gone.
    QORModel& model();

protected:
    void step(Bytes& bytes) override;

private:
    void createOwned(Bytes& bytes);
    bool own(QORObject& object, Bytes& bytes);
    void refer(Bytes& bytes);
    void setText(Bytes& bytes);
    void addExtra(Bytes& bytes);
    void remove(QORObject* object, bool all);

    Kind const kind;
    QORObject* root;
};
