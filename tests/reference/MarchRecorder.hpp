#pragma once

#include <functional>

#include "OutputRecord.hpp"
#include "ReferenceMachines.hpp"

namespace caudalis::testing {

/// Runs a reference machine through a design (the ideal mode, accessories, `calculate` and the
/// queries on the result) and records every output.
void recordDesignRun(const ReferenceMachine& reference, OutputRecord& out);

/// Records the nozzle law and matching outputs of a reference machine's catalogue at
/// pressures and flows drawn from `seed`.
void recordMatching(const ReferenceMachine& reference, std::uint64_t seed, OutputRecord& out);

/// Runs `step`, recording 0, the error number it raised, or -1 for any other exception; returns
/// whether it completed.
bool attempt(OutputRecord& out, const char* name, const std::function<void()>& step);

}  // namespace caudalis::testing
