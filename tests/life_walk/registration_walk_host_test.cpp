#include <algorithm>
#include <set>

#include "foundation/process/folders.h"
#include "shellext/registration.h"
#include "tests/life_walk/walk.h"

namespace nmshell {
namespace {

using namespace test;
using Kind = Failure::Kind;

// What the machine's registry may be afterwards, in bits.
enum State : std::uint32_t {
    kOld = 1,         // as before
    kRegistered = 2,  // all of the new registration and nothing of the old one
    kRemoved = 4,     // nothing of either
    kMixed = 8,       // parts of them, and nothing else
};

using Lines = std::set<std::string>;

Lines machine() {
    return registryLines("[HKEY_LOCAL_MACHINE");
}

Lines user() {
    return registryLines("[HKEY_CURRENT_USER");
}

class RegistrationWalk : public LifeWalkTest {
  protected:
    RegistrationWalk() { std::filesystem::create_directory("old"); }

    void runRegister(bool overOlder) {
        prepare(overOlder);
        begin();
        const RegistrationResult result = call("RegisterExtension", [] { return tryRegisterExtension(); });
        end();
        if (failure().kind == Kind::Nothing)
            new_ = machine();
        const bool done = result == RegistrationResult::Registered;
        EXPECT_TRUE(done || failed());
        EXPECT_NE(state() & mayBecome(result), 0u) << testing::PrintToString(machine());
        const Lines settings = user();
        if (done || settings != usersOther_) {
            EXPECT_EQ(settings, usersWhole_);
        }
        EXPECT_EQ(host::openKeyCount(), 0u);
    }

    void runUnregister() {
        prepare(true);
        begin();
        call("UnregisterExtension", [] {
            UnregisterExtension();
            return true;
        });
        end();
        std::size_t left = 0;
        for (const std::string& line : machine()) {
            EXPECT_TRUE(old_.contains(line)) << line;
            left += !removed_.contains(line);
        }
        // One failing call leaves the approvals, or a key with what must go after it: a server has two values
        // and keeps its class. An allocation that fails stands for such a call.
        if (failure().kind == Kind::Nothing || failure().kind == Kind::Call ||
            failure().kind == Kind::Allocation) {
            EXPECT_LE(left, failed() ? 4u : 0u);
        }
        UnregisterExtension();
        EXPECT_EQ(machine(), removed_);
        EXPECT_EQ(user(), usersOther_);
        EXPECT_EQ(host::openKeyCount(), 0u);
    }

  private:
    // A machine with other extensions and a user with settings. With `older` an older version, in another
    // folder, is registered.
    void prepare(bool older) {
        host::resetRegistry();
        putOtherExtensions();
        const bool isFirst = failure().kind == Kind::Nothing;  // every run begins with the same
        if (isFirst) {
            removed_ = machine();
            usersOther_ = user();
        }
        owlkit::recordApplicationFolder(folder() + u"old");
        if (older) {
            EXPECT_TRUE(RegisterExtension());
        }
        owlkit::recordApplicationFolder(folder());
        set(u"Language", u"de");
        if (isFirst) {
            old_ = machine();
            usersWhole_ = user();
        }
    }

    // What is said of the machine is so, unless calls or memory that go on failing keep it from being
    // finished.
    std::uint32_t mayBecome(RegistrationResult result) const {
        if (result == RegistrationResult::Registered)
            return kRegistered;
        if (failure().kind == Kind::EveryCall || failure().kind == Kind::EveryAllocation)
            return kOld | kRemoved | kMixed;
        return result == RegistrationResult::NothingChanged ? kOld
               : result == RegistrationResult::Removed      ? kRemoved
                                                            : 0u;
    }

    std::uint32_t state() const {
        const Lines now = machine();
        const auto isKnown = [this](const std::string& line) {
            return old_.contains(line) || new_.contains(line);
        };
        std::uint32_t bits = std::ranges::all_of(now, isKnown) ? kMixed : 0u;
        bits |= now == old_ ? kOld : 0u;
        bits |= now == new_ ? kRegistered : 0u;
        bits |= now == removed_ ? kRemoved : 0u;
        return bits;
    }

    Lines removed_, old_, new_;
    Lines usersOther_, usersWhole_;
};

TEST_F(RegistrationWalk, RegisterOverNothing) {
    walk("register over nothing", [this] { runRegister(false); });
}

TEST_F(RegistrationWalk, RegisterOverARegistration) {
    walk("register over a registration", [this] { runRegister(true); });
}

TEST_F(RegistrationWalk, Unregister) {
    walk("unregister", [this] { runUnregister(); });
}

}  // namespace
}  // namespace nmshell
