#include "caudalis/design/ReportLabels.hpp"

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/core/NumberText.hpp"

namespace caudalis::design {

std::string outletLabel(const OutletResult& outlet) {
    if (outlet.place == OutletPlace::EndGun) {
        return "gun";
    }
    return std::to_string(outlet.span) + "-" + std::to_string(outlet.number);
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

double coefficientValue(const std::string& text) {
    return parseLocaleNumber(text).value_or(0.0);
}

}  // namespace caudalis::design
