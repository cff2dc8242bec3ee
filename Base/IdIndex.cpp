#include "Base/IdIndex.hpp"

#include <algorithm>

namespace Base {

// Moves back what stands behind the gap, so that a search need not know of slots that were in use once.
void IdIndex::close(std::size_t gap) {
    for (std::size_t slot = next(gap); slots_[slot].position != none; slot = next(slot)) {
        const std::size_t mask = slots_.size() - 1;
        const std::size_t wayFromHome = (slot - home(slots_[slot].hash)) & mask;
        const std::size_t wayFromGap = (slot - gap) & mask;
        if (wayFromHome >= wayFromGap) {
            slots_[gap] = slots_[slot];
            gap = slot;
        }
    }
    slots_[gap] = Slot();
}

void IdIndex::grow() {
    constexpr std::size_t least = 16;
    std::vector<Slot> before(std::max(least, 2 * slots_.size()));
    slots_.swap(before);
    for (const Slot& old : before) {
        if (old.position != none) {
            std::size_t slot = home(old.hash);
            while (slots_[slot].position != none) {
                slot = next(slot);
            }
            slots_[slot] = old;
        }
    }
}

}  // namespace Base
