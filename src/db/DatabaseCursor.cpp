#include "caudalis/db/DatabaseCursor.hpp"

#include "caudalis/db/DatabaseErrors.hpp"

namespace caudalis {

Variant DatabaseCursor::field(const std::string&) const {
    raiseDatabaseError(DatabaseError::ItemNotFound);
}

}  // namespace caudalis
