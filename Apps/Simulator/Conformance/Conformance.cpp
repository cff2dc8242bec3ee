#include "Apps/Simulator/Conformance/Conformance.hpp"

#include "Apps/Simulator/Conformance/ApplyCheck.hpp"
#include "Apps/Simulator/Conformance/BlockCheck.hpp"
#include "Apps/Simulator/Conformance/CallCheck.hpp"
#include "Apps/Simulator/Conformance/CloudCheck.hpp"
#include "Apps/Simulator/Conformance/ContentsCheck.hpp"
#include "Apps/Simulator/Conformance/CountCheck.hpp"
#include "Apps/Simulator/Conformance/EventCheck.hpp"
#include "Apps/Simulator/Conformance/IdleCheck.hpp"
#include "Apps/Simulator/Conformance/LogCheck.hpp"
#include "Apps/Simulator/Conformance/PassCheck.hpp"
#include "Apps/Simulator/Conformance/PullCheck.hpp"
#include "Apps/Simulator/Conformance/Reader.hpp"
#include "Apps/Simulator/Conformance/ReconnectionCheck.hpp"
#include "Apps/Simulator/Conformance/Report.hpp"
#include "Apps/Simulator/Conformance/SubscriptionCheck.hpp"
#include "Apps/Simulator/Conformance/ThrottleCheck.hpp"

namespace Simulator {

using namespace Conformance;

namespace {

/// All checks on one way through the trace.
class Checks {
public:
    explicit Checks(const Record& record) : record_(record), reader_(record) {}

    Findings run() {
        for (std::size_t index = 0; index < record_.trace.size(); ++index) {
            Entry entry = reader_.read(index);
            if (entry.kind == Kind::stage && entry.field("name") == "settled" &&
                record_.neverSettled.empty()) {
                settled(entry);
            }
            see(entry);
            reader_.didSee(entry);
            if (entry.kind == Kind::stage && entry.field("name") == "left" && record_.leftovers.empty()) {
                throttle_.left(entry, reader_.synchronisers());
            }
        }
        checkCloud(record_, report_);
        return report_.take();
    }

private:
    void see(const Entry& entry) {
        calls_.see(entry);
        log_.see(entry);
        idle_.see(entry);
        throttle_.see(entry);
        // What two synchronisers do to one timeline at the same time cannot be told apart.
        if (entry.synchroniser != nullptr && entry.synchroniser->sharesTimeline) {
            return;
        }
        passes_.see(entry);  // first: it finds the uploads of the calls
        blocks_.see(entry);
        events_.see(entry);
        applied_.see(entry);
        counts_.see(entry);
        contents_.see(entry);
        pulls_.see(entry);
        reconnections_.see(entry);
        subscriptions_.see(entry);
    }

    void settled(const Entry& entry) {
        for (const Synchroniser& synchroniser : reader_.synchronisers()) {
            if (synchroniser.block && !synchroniser.sharesTimeline) {
                report_.add("blockUnfinished", entry,
                            synchroniser.stay.analyst + "'s block " +
                                std::to_string(synchroniser.block->number) + " has not ended");
            }
        }
        events_.settled(entry, reader_.synchronisers());
        subscriptions_.settled(entry, reader_.synchronisers());
        throttle_.settled(entry, reader_.synchronisers());
        calls_.settled(entry, reader_.hosts());
        log_.settled(entry);
    }

    const Record& record_;
    Reader reader_;
    Report report_;
    PassCheck passes_{report_};
    BlockCheck blocks_{report_};
    EventCheck events_{report_, record_};
    ApplyCheck applied_{report_};
    CountCheck counts_{report_, record_};
    ContentsCheck contents_{report_, record_};
    PullCheck pulls_{report_};
    ReconnectionCheck reconnections_{report_};
    SubscriptionCheck subscriptions_{report_, record_};
    ThrottleCheck throttle_{report_};
    CallCheck calls_{report_};
    LogCheck log_{report_};
    IdleCheck idle_{report_, record_};
};

}  // namespace

Findings checkConformance(const Record& record) { return Checks(record).run(); }

}  // namespace Simulator
