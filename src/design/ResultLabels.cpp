#include "caudalis/design/ResultLabels.hpp"

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/core/NumberText.hpp"
#include "caudalis/machine/CoordenadasSaidas.hpp"

namespace caudalis::design {

std::string outletLabel(const OutletResult& outlet) {
    if (outlet.place == OutletPlace::EndGun) {
        return "gun";
    }
    return std::to_string(outlet.span) + "-" + std::to_string(outlet.number);
}

std::string outletLabel(const CoordenadasSaida& place) {
    const auto addresses = CoordenadasSaidas::shared();
    return addresses->isAtEndGun(place) ? "gun" : addresses->ToString(place);
}

const RegulatorDescription* regulatorOf(const DesignResult& result, const OutletResult& outlet) {
    if (!outlet.regulated) {
        return nullptr;
    }
    const RegulatorDescription* found = nullptr;
    for (const auto& regulator : result.design.regulators) {
        found = regulator.span == outlet.span && regulator.installed ? &regulator : found;
    }
    return found;
}

std::string placeName(OutletPlace place) {
    switch (place) {
        case OutletPlace::Overhang:
            return "overhang";
        case OutletPlace::EndGun:
            return "end_gun";
        case OutletPlace::Span:
            break;
    }
    return "span";
}

std::string nozzleLabel(const saida& outlet) {
    if (!outlet.obj_aspersor) {
        return "-";
    }
    const auto& nozzle = *outlet.obj_aspersor;
    return nozzle.marca().nome + " " + nozzle.modelo().nome + " " + nozzle.nome();
}

std::string reasonText(ChoiceReason reason) {
    switch (reason) {
        case ChoiceReason::WithinTolerance:
            return "closest flow within the tolerance";
        case ChoiceReason::NearestSize:
            return "nearest size, outside the tolerance";
        case ChoiceReason::NoneWithinTolerance:
            return "no rated nozzle within the tolerance";
        case ChoiceReason::BelowSmallestNozzle:
            return "plugged: needs less than the smallest rated nozzle";
        case ChoiceReason::NoneRatedForPressure:
            return "no nozzle of the package is rated for this pressure";
        case ChoiceReason::Stored:
            return "left empty in the stored chart";
        case ChoiceReason::NoPackage:
            break;
    }
    return "the package has no nozzles here";
}

std::string reasonCode(ChoiceReason reason) {
    switch (reason) {
        case ChoiceReason::WithinTolerance:
            return "within_tolerance";
        case ChoiceReason::NearestSize:
            return "nearest_size";
        case ChoiceReason::NoneWithinTolerance:
            return "none_within_tolerance";
        case ChoiceReason::BelowSmallestNozzle:
            return "below_smallest_nozzle";
        case ChoiceReason::NoneRatedForPressure:
            return "none_rated_for_pressure";
        case ChoiceReason::Stored:
            return "stored";
        case ChoiceReason::NoPackage:
            break;
    }
    return "no_package";
}

double coefficientValue(const std::string& text) {
    return parseLocaleNumber(text).value_or(0.0);
}

}  // namespace caudalis::design
