#pragma once

#include <optional>
#include <string>
#include <vector>

#include "caudalis/fieldtests/FieldEvaluationStore.hpp"

namespace caudalis::fieldtests {

/// The figures kept beside a stored evaluation as `evaluate show` prints them: each under the
/// heading of its scope, by its label with its unit, the value with the label's decimals.
class StoredFigureText {
public:
    /// "Both lines together", "Lines' mean", "Line A", "End-gun zone", "Settings", "Struck out
    /// by the crew"; an unknown scope as it is stored.
    static std::string scopeLabel(const std::string& scope);
    /// One figure as "label: value unit"-style text in two parts: the label (with its unit)
    /// and the value.
    static std::pair<std::string, std::string> labelled(const design::StoredFigure& figure);
    /// The crew's names of the lines kept in the settings ("line 1 name", "line 2 name"), in
    /// order; empty when none are kept.
    static std::vector<std::string> lineNames(const std::vector<design::StoredFigure>& figures);

private:
    static std::optional<std::pair<std::string, int>> knownLabel(const std::string& figure);
};

}  // namespace caudalis::fieldtests
