#include "Apps/Simulator/Conformance/PassCheck.hpp"

#include "Apps/Simulator/Conformance/Ids.hpp"

#include <string>

namespace Simulator::Conformance {

namespace {

/// Whether the pass may make this call next, as far as its steps tell.
bool isReadyFor(const Pass& pass, Operation step) {
    return pass.waitsFor == nullptr && !pass.hasFailed && (!pass.step || *pass.step < step);
}

/// Whether the call's contents may come from what the pass has read.
bool mayHold(const Pass& pass, const Entry& entry) {
    if (entry.call->operation != Operation::create || pass.read == nullptr) {
        return true;
    }
    const std::string_view first = *Ids(entry.field("ids")).begin();
    return Ids(pass.read->field("instances")).contain(first);
}

}  // namespace

void PassCheck::see(const Entry& entry) {
    switch (entry.kind) {
    case Kind::uploadStart:
        started(entry);
        break;
    case Kind::call:
        if (entry.call != nullptr && isStep(entry.call->operation)) {
            called(entry);
        }
        break;
    case Kind::answer:
        if (answersCall(entry)) {
            answered(entry);
        }
        break;
    case Kind::uploadEnd:
        ended(entry);
        break;
    case Kind::blockEnd:
        blockEnded(entry);
        break;
    default:
        break;
    }
}

void PassCheck::started(const Entry& entry) {
    const Synchroniser* const synchroniser = entry.synchroniser;
    if (synchroniser == nullptr) {
        report_.add("uploadBlock", entry, "an upload of a timeline that is in no session");
        return;
    }
    if (!synchroniser->block) {
        report_.add("uploadBlock", entry, "an upload begins outside all blocks");
    }
    const auto first = entry.number("first");
    const auto last = entry.number("last");
    if (first != synchroniser->lastModifyCount + 1) {
        report_.add("uploadRange", entry,
                    "the changes up to " + std::to_string(synchroniser->lastModifyCount) +
                        " are sent, the upload begins with " + std::to_string(first));
    }
    if (last < first) {
        report_.add("uploadRange", entry, "an upload of nothing");
    }
    const auto* const read = synchroniser->read;
    if (read == nullptr || numberIn(read->field("from")) != first ||
        numberIn(read->field("modifyCount")) != last || synchroniser->readIndex + 2 != entry.index) {
        report_.add("uploadRange", entry,
                    "the timeline was not asked for the changes " + std::to_string(first) + " to " +
                        std::to_string(last));
    }
}

void PassCheck::called(const Entry& entry) {
    Synchroniser* const synchroniser = entry.synchroniser;
    if (synchroniser == nullptr || synchroniser->passes.empty()) {
        report_.add("stepOrder", entry, "a call that belongs to no upload");
        return;
    }
    if (synchroniser->passes.size() == 1) {
        took(*synchroniser->passes.front(), entry);
        return;
    }
    Pass* only = nullptr;
    int fitting = 0;
    bool isAnyUnsure = false;
    for (Pass* pass : synchroniser->passes) {
        isAnyUnsure |= pass->isUnsure;
        if ((pass->isUnsure || isReadyFor(*pass, entry.call->operation)) && mayHold(*pass, entry)) {
            ++fitting;
            only = pass;
        }
    }
    if (fitting == 1) {
        took(*only, entry);
    } else if (fitting > 1) {
        for (Pass* pass : synchroniser->passes) {
            pass->isUnsure |= isReadyFor(*pass, entry.call->operation);
        }
    } else if (!isAnyUnsure) {
        report_.add("stepOrder", entry, "a call that none of the uploads under way can make now");
    }
}

void PassCheck::took(Pass& pass, const Entry& entry) {
    const Operation step = entry.call->operation;
    const bool isSure = !pass.isUnsure;
    const std::string upload = "upload " + std::to_string(pass.number);
    if (isSure && pass.waitsFor != nullptr) {
        report_.add("stepAwaited", entry, upload + " makes a call before the one before it is answered");
    } else if (isSure && pass.hasFailed) {
        report_.add("stepAfterFailure", entry, upload + " goes on after a step that has failed");
    } else if (isSure && pass.step && *pass.step >= step) {
        report_.add("stepOrder", entry, upload + " makes its calls in another order, or one twice");
    }
    pass.step = step;
    pass.waitsFor = entry.call;
    pass.isUnsure = false;
    entry.call->pass = &pass;
}

void PassCheck::answered(const Entry& entry) {
    Pass* const pass = entry.call->pass;
    if (pass != nullptr && pass->waitsFor == entry.call) {
        pass->waitsFor = nullptr;
        pass->hasFailed = !entry.field("error").empty();
    }
}

void PassCheck::ended(const Entry& entry) {
    const Synchroniser* const synchroniser = entry.synchroniser;
    const auto number = entry.number("number");
    const auto found = synchroniser == nullptr
                           ? std::vector<Pass*>::const_iterator()
                           : std::ranges::find(synchroniser->passes, number, &Pass::number);
    if (synchroniser == nullptr || found == synchroniser->passes.end()) {
        report_.add("uploadEnd", entry, "an upload ends that is not under way");
        return;
    }
    const Pass& pass = **found;
    if (pass.isUnsure) {
        return;
    }
    const std::string upload = "upload " + std::to_string(number);
    if (pass.waitsFor != nullptr) {
        report_.add("stepAwaited", entry, upload + " ends before its call is answered");
    }
    if (pass.isAlone && (entry.field("succeeded") == "true") == pass.hasFailed) {
        report_.add("uploadEnd", entry,
                    upload + (pass.hasFailed ? " counts as a success, though a step has failed"
                                             : " counts as a failure, though no step has failed"));
    }
}

void PassCheck::blockEnded(const Entry& entry) {
    const Synchroniser* const synchroniser = entry.synchroniser;
    if (synchroniser == nullptr || !synchroniser->block) {
        return;
    }
    const Block& block = *synchroniser->block;
    const bool waits = block.work == Block::Work::upload || block.work == Block::Work::reconnection;
    // What a pull starts, so as not to pass over edits, is not waited for.
    if (waits && std::ranges::any_of(synchroniser->passes, [&](const Pass* pass) {
            return pass->block == block.number && (block.fetch == 0 || pass->start < block.fetch);
        })) {
        report_.add("uploadAwaited", entry, "the block ends before its upload");
    }
}

}  // namespace Simulator::Conformance
