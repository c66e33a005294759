#include "DropLossTable.hpp"

#include <bit>

namespace caudalis {

void DropLossTable::startPass(const DropLoss& drop) {
    next_ = 0;
    if (!dropLoss_ || !(*dropLoss_ == drop)) {
        dropLoss_ = drop;
        known_.clear();
    }
}

double DropLossTable::workOut(std::size_t outlet, double required) {
    const double loss = dropLoss_->at(required);
    if (outlet >= known_.size()) {
        known_.resize(outlet + 1);
    }
    known_[outlet] = {std::bit_cast<std::uint64_t>(required), loss};
    return loss;
}

}  // namespace caudalis
