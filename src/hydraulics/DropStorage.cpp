#include "DropStorage.hpp"

#include "caudalis/hydraulics/Drops.hpp"

namespace caudalis {

void DropStorage::saveDrop(Connection& con, const Drop& aDrop, Integer carta_id) {
    Drops::shared()->saveDrop(con, aDrop, carta_id);
}

Drop DropStorage::loadDrop(Connection& con, Integer carta_id) {
    return Drops::shared()->loadDrop(con, carta_id);
}

void DropStorage::deleteDropsOf(Connection& con, Integer carta_id) {
    Drops::shared()->deleteDropsOf(con, carta_id);
}

}  // namespace caudalis
