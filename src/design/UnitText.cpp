#include "caudalis/design/UnitText.hpp"

#include <cstdio>

namespace caudalis::design {

std::string UnitText::fixed(double value, int decimals) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals < 0 ? 0 : decimals, value);
    return buffer;
}

int UnitText::decimals(Quantity quantity) const {
    const bool si = units_.system() == UnitSystem::SI;
    switch (quantity) {
        case Quantity::Pressure:
        case Quantity::Rate:
            return si ? 1 : 2;
        case Quantity::Flow:
            return si ? 3 : 2;
        case Quantity::Length:
            return si ? 2 : 1;
        case Quantity::Diameter:
        case Quantity::Spacing:
            return si ? 1 : 2;
        case Quantity::Depth:
            return si ? 2 : 3;
        case Quantity::Area:
            break;
    }
    return 2;
}

std::string UnitText::number(Quantity quantity, double si) const {
    return number(quantity, si, 0);
}

std::string UnitText::number(Quantity quantity, double si, int extraDecimals) const {
    return fixed(units_.fromSI(quantity, si), decimals(quantity) + extraDecimals);
}

std::string UnitText::text(Quantity quantity, double si) const {
    return text(quantity, si, 0);
}

std::string UnitText::text(Quantity quantity, double si, int extraDecimals) const {
    return number(quantity, si, extraDecimals) + " " + units_.symbol(quantity);
}

std::string UnitText::general(Quantity quantity, double si) const {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%g", units_.fromSI(quantity, si));
    std::string text = buffer;
    text += ' ';
    text += units_.symbol(quantity);
    return text;
}

std::string UnitText::heading(const std::string& label, Quantity quantity) const {
    return label + " " + units_.symbol(quantity);
}

std::string UnitText::area(double squareMetres) const {
    if (units_.system() == UnitSystem::SI) {
        return fixed(squareMetres / 10000, 2) + " ha";
    }
    return fixed(units_.fromSI(Quantity::Area, squareMetres), 2) + " " + units_.symbol(Quantity::Area);
}

std::string UnitText::depth(double millimetres) const {
    return text(Quantity::Depth, millimetres);
}

std::string UnitText::speed(double metresPerHour) const {
    return fixed(units_.fromSI(Quantity::Length, metresPerHour), 1) + " " + units_.symbol(Quantity::Length) +
           "/h";
}

}  // namespace caudalis::design
