#include "caudalis/core/Error.hpp"

#include <utility>

namespace caudalis {

Error::Error(std::int32_t number, std::string description, std::string source)
    : number_(number), source_(std::move(source)), description_(std::move(description)) {
    what_ = source_ + " error " + std::to_string(number_) + ": " + description_;
}

std::string standardErrorText(std::int32_t number) {
    switch (number) {
        case RuntimeError::InvalidProcedureCall:
            return "Invalid procedure call or argument";
        case RuntimeError::Overflow:
            return "Overflow";
        case RuntimeError::SubscriptOutOfRange:
            return "Subscript out of range";
        case RuntimeError::DivisionByZero:
            return "Division by zero";
        case RuntimeError::TypeMismatch:
            return "Type mismatch";
        case RuntimeError::ObjectNotSet:
        return "Object variable or With block variable not set";
    case RuntimeError::InvalidUseOfNull:
            return "Invalid use of Null";
        case RuntimeError::KeyAlreadyAssociated:
            return "This key is already associated with an element of this collection";
        case RuntimeError::DataAccess:
            return "Either BOF or EOF is True, or the current record has been deleted";
        default:
            return "Application-defined or object-defined error";
    }
}

void raiseError(std::int32_t number) {
    throw Error(number, standardErrorText(number));
}

void raiseError(std::int32_t number, const std::string& description) {
    throw Error(number, description);
}

}  // namespace caudalis
