#include "caudalis/catalogue/Aspersor.hpp"

#include "FlowTolerance.hpp"
#include "caudalis/core/Checked.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/core/Errors.hpp"
#include "caudalis/core/NumberText.hpp"

namespace caudalis {
namespace {

bool isStrictlyPositive(double value) {
    return value > 0.0;
}

bool isComplete(const String& boquilla, std::initializer_list<double> numbers) {
    if (trimBlanks(boquilla).empty()) {
        return false;
    }
    for (const double number : numbers) {
        if (!isStrictlyPositive(number)) {
            return false;
        }
    }
    return true;
}

}  // namespace

void Aspersor::raiseUnreadableCoefficient() {
    raiseError(RuntimeError::TypeMismatch);
}

void Aspersor::initAspersor(const String& boquilla, double a, double b, double pmin, double pmax, double qmin,
                            double qmax, const caudalis::modelo& aModelo) {
    if (!isComplete(boquilla, {a, b, pmin, pmax, qmin, qmax})) {
        raiseCode(AspersorException::MissingAsperorDataException);
    }
    nome_ = boquilla;
    modelo_ = aModelo;
    a_ = a;
    b_ = b;
    pmin_ = pmin;
    pmax_ = pmax;
    qmin_ = qmin;
    qmax_ = qmax;
    flowA_ = throughFifteenDigits(a);
    flowB_ = throughFifteenDigits(b);
}

String Aspersor::a() const {
    return formatNumber(a_);
}

String Aspersor::b() const {
    return formatNumber(b_);
}

bool Aspersor::flowWithin(double pressao, double caudal, double variacao) const {
    const double flow = calculate(pressao);
    return isWithin(flow, flowRange(caudal, variacao));
}

double Aspersor::variacaoCaudal(double pressao, double caudal) const {
    return flowDeviation(calculate(pressao), caudal);
}

bool Aspersor::isOnPressureRange(double presion) const noexcept {
    return !isLowPressure(presion) && !isHighPressure(presion);
}

}  // namespace caudalis
