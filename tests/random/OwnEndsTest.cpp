#include "Deaths.h"

#include <qor/QORAttribute.h>
#include <qor/QORClass.h>
#include <qor/QORNameLinkTree.h>
#include <qor/QORPtrLinkVector.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <random>
#include <vector>

// Operations at random on objects of a caller's class that has link ends of its own beside those of its
// library class, made with the protected primitives. Reading a name sometimes throws, and so does comparing.

namespace {

struct Thrown {};

class Own : public QORClass {
public:
    ~Own() override {
        calm = true;
        while (peers.size)
            unlinkPeer(*static_cast<Own*>(peers[0]));
        while (followers.size)
            unlinkFollower(*static_cast<Own*>(followers[0]));
        if (leader)
            static_cast<Own*>(leader)->unlinkFollower(*this);
        unlinkPartner();
    }

    QORString const& getName() const override {
        if (!calm && random() % 8 == 0)
            throw Thrown();
        return QORClass::getName();
    }
    bool isReferenced() const override {
        return peers.size || followers.size || leader || partner || QORClass::isReferenced();
    }

    bool linkPeer(Own& other) { return _addnn(&peers, &other.peers, &other); }
    bool unlinkPeer(Own& other) { return _removen(&peers, &other) && other._removen(&other.peers, this); }
    bool linkFollower(Own& other) { return &other != this && _addnu(&followers, &other.leader, &other); }
    bool unlinkFollower(Own& other) {
        if (!_removen(&followers, &other))
            return false;
        other.leader = nullptr;
        return true;
    }
    bool linkPartner(Own& other) { return _adduu(&partner, &other.partner, &other); }
    bool unlinkPartner() {
        if (!partner)
            return false;
        static_cast<Own*>(partner)->partner = nullptr;
        partner = nullptr;
        return true;
    }
    Own* findPeer(QORString const& wanted, int* cursor) const {
        return static_cast<Own*>(_getn(&peers, wanted, cursor));
    }
    Own* takePeer(QORString const& wanted, int* cursor) {
        auto* const taken = static_cast<Own*>(_removen(&peers, wanted, cursor));
        EXPECT_TRUE(!taken || taken->_removen(&taken->peers, this));
        return taken;
    }

    QORNameLinkTree peers;
    QORPtrLinkVector followers;
    QORObject* leader = nullptr;
    QORObject* partner = nullptr;

    inline static bool calm = true;
    inline static std::mt19937 random{1};
};

std::vector<QORObject*> contents(QORArrayInterface const& end) {
    std::vector<QORObject*> held;
    for (int i = 0; i < end.size; ++i)
        held.push_back(static_cast<QORObject*>(end[i]));
    return held;
}

long countOf(QORArrayInterface const& end, QORObject const* object) {
    std::vector<QORObject*> const held = contents(end);
    return std::count(held.begin(), held.end(), object);
}

class Circle {
public:
    explicit Circle(unsigned seed) { Own::random.seed(seed); }
    Circle(Circle const&) = delete;
    Circle& operator=(Circle const&) = delete;
    ~Circle() {
        Own::calm = true;
        members.clear();
    }

    void step() {
        if (members.size() < 4 || (members.size() < 12 && oneIn(10)))
            members.push_back(std::make_unique<Own>());
        Own& one = any();
        Own& other = any();
        Own::calm = false;
        try {
            act(one, other);
        } catch (Thrown const&) {
            ++thrown;
        }
        Own::calm = true;
        check();
    }

    long thrown = 0;
    long linked = 0;

private:
    bool oneIn(unsigned chances) { return Own::random() % chances == 0; }
    Own& any() { return *members[Own::random() % members.size()]; }

    void act(Own& one, Own& other) {
        constexpr std::array<char const*, 5> names{"", "a", "b", "c", "d"};
        QORString const name(names[Own::random() % names.size()]);
        int cursor = static_cast<int>(Own::random() % 3);
        switch (Own::random() % 12) {
        case 0:
        case 1:
            linked += one.linkPeer(other);
            return;
        case 2:
            linked += one.linkFollower(other);
            return;
        case 3:
            linked += one.linkPartner(other);
            return;
        case 4:
            one.unlinkPeer(other);
            return;
        case 5:
            one.unlinkFollower(other);
            return;
        case 6:
            one.findPeer(name, &cursor);
            one.takePeer(name, &cursor);
            return;
        case 7:
            if (!one.peers.size) // setName moves elements in the library's ends alone
                one.setName(name);
            return;
        case 8:
            grow(one, name);
            return;
        case 9:
            one.removeFeatures();
            return;
        case 10:
            one.isolate(true);
            return;
        default:
            if (oneIn(4))
                members.erase(members.begin() + static_cast<std::ptrdiff_t>(Own::random() % members.size()));
        }
    }

    static void grow(Own& owner, QORString const& name) {
        auto attribute = std::make_unique<QORAttribute>();
        attribute->setName(name);
        if (owner.addFeature(attribute.get()))
            attribute.release();
    }

    void check() const {
        for (auto const& member : members) {
            for (QORObject* const peer : contents(member->peers))
                EXPECT_EQ(1, countOf(static_cast<Own*>(peer)->peers, member.get()));
            for (QORObject* const follower : contents(member->followers))
                EXPECT_EQ(member.get(), static_cast<Own*>(follower)->leader);
            if (member->leader) {
                EXPECT_EQ(1, countOf(static_cast<Own*>(member->leader)->followers, member.get()));
            }
            if (member->partner) {
                EXPECT_EQ(member.get(), static_cast<Own*>(member->partner)->partner);
            }
            EXPECT_EQ(0, countOf(member->peers, member.get()) + countOf(member->followers, member.get()));
            for (int i = 0; i < member->getFeatureCount(); ++i)
                EXPECT_EQ(member.get(), member->getFeature(i)->getClassifier());
        }
    }

    std::vector<std::unique_ptr<Own>> members;
};

} // namespace

TEST(OwnEnds, StayInStepWithTheirFarEndsWhateverIsThrown) {
    deaths::watchAll(true); // so that each block is one of its own
    long thrown = 0;
    long linked = 0;
    for (unsigned seed = 1; seed <= 1000 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        Circle circle(seed);
        for (int i = 0; i < 300; ++i)
            circle.step();
        thrown += circle.thrown;
        linked += circle.linked;
    }
    EXPECT_LT(1000, thrown);
    EXPECT_LT(1000, linked);
    deaths::watchAll(false);
}
