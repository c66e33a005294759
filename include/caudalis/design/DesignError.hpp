#pragma once

#include <stdexcept>
#include <string>

namespace caudalis::design {

/// A failure of the design services, with a message fit to show a user as it is: it names the
/// file, the field or the figure at fault ("spans[2].length_m must be > 0").
class DesignError : public std::runtime_error {
public:
    enum class Kind {
        /// The input (a file, a value in it, a nozzle selection) cannot be used.
        InvalidInput,
        /// The hydraulic computation went on past the allowed number of passes.
        NotSettled,
    };

    DesignError(Kind kind, const std::string& message) : std::runtime_error(message), kind_(kind) {}
    /// An `InvalidInput` failure.
    static DesignError invalid(const std::string& message) { return {Kind::InvalidInput, message}; }

    Kind kind() const noexcept { return kind_; }

private:
    Kind kind_;
};

}  // namespace caudalis::design
