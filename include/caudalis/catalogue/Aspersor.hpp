#pragma once

#include <cmath>
#include <optional>

#include "caudalis/core/Basic.hpp"
#include "caudalis/core/Checked.hpp"
#include "caudalis/core/Object.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis {

class AspersoresStatic;
class AspersorLoader;
class NozzleLawTable;

/// One nozzle of the sprinkler catalogue: a designation, its model and brand, the flow law
/// flow = a * pressure^b and the nominal pressure and flow ranges.
///
/// An `Aspersor` is immutable once initialised and is shared by reference between catalogue
/// collections, charts, mounted sprinklers and outlets. A default-constructed one is the
/// uninitialised placeholder (all numbers 0, empty `nome` and `modelo`). Only library code can
/// initialise it: `initAspersor` and `setId` are private, reachable from `AspersoresStatic` and
/// from the library-internal `AspersorLoader` (src/catalogue/AspersorLoader.hpp), which the
/// catalogue and chart readers use to build sprinklers from stored rows.
class Aspersor : public Object {
public:
    Aspersor() = default;
    Aspersor(const Aspersor&) = default;
    /// A shared sprinkler never changes, not even by assignment.
    Aspersor& operator=(const Aspersor&) = delete;

    /// Key of the nozzle row in the catalogue; 0 for a nozzle not loaded from it.
    Long id() const noexcept { return id_; }
    String nome() const { return nome_; }
    caudalis::modelo modelo() const { return modelo_; }
    caudalis::marca marca() const { return modelo_.marca; }
    /// The coefficient as text in the current locale's form.
    String a() const;
    /// The exponent as text in the current locale's form.
    String b() const;
    double pmin() const noexcept { return pmin_; }
    double pmax() const noexcept { return pmax_; }
    double qmin() const noexcept { return qmin_; }
    double qmax() const noexcept { return qmax_; }

    /// Flow at `pressao`: a * pressao^b with the coefficients as their 15-significant-digit
    /// text gives them back. Floating-point faults raise.
    double calculate(double pressao) const {
        const double exponent = readableCoefficient(flowB_);
        const double coefficient = readableCoefficient(flowA_);
        return lawFlow(coefficient, exponent, pressao);
    }
    /// The flow law every sprinkler follows: a * pressao^b, power first, with checked
    /// arithmetic. The finiteness is tested once, on the flow: only a flow that is not finite
    /// can come from a step that fails, and that flow is worked out again step by step so that
    /// the same error is raised.
    static double lawFlow(double a, double b, double pressao) {
        if (checked::isInvalidPower(pressao, b)) [[unlikely]] {
            checked::raiseInvalidCall();
        }
        const double flow = a * std::pow(pressao, b);
        if (!std::isfinite(flow)) [[unlikely]] {
            return checked::mul(a, checked::pow(pressao, b));
        }
        return flow;
    }
    /// True when the flow at `pressao` lies between (1 - variacao) * caudal and
    /// (1 + variacao) * caudal, both bounds included; false for a NaN flow.
    bool flowWithin(double pressao, double caudal, double variacao) const;
    /// |flow at `pressao` / caudal - 1|: the relative deviation from the wanted flow.
    double variacaoCaudal(double pressao, double caudal) const;
    /// True only when `presion` equals `pmax` (neither low nor high pressure).
    bool isOnPressureRange(double presion) const noexcept;
    /// True when `presion` < `pmax` (`pmin` takes part in no test).
    bool isLowPressure(double presion) const noexcept { return presion < pmax_; }
    /// True when `presion` > `pmax`.
    bool isHighPressure(double presion) const noexcept { return presion > pmax_; }

private:
    friend class AspersoresStatic;
    friend class AspersorLoader;
    friend class NozzleLawTable;

    /// Validates and stores every field but `id`. Raises
    /// `AspersorException::MissingAsperorDataException` when the designation is blank or any
    /// number is not strictly positive; nothing is stored then.
    void initAspersor(const String& boquilla, double a, double b, double pmin, double pmax, double qmin,
                      double qmax, const caudalis::modelo& aModelo);
    void setId(Long id) noexcept { id_ = id; }
    /// A coefficient read back from its text; a text that did not read back as a number fails
    /// as the conversion does (13).
    static double readableCoefficient(const std::optional<double>& coefficient) {
        if (!coefficient) [[unlikely]] {
            raiseUnreadableCoefficient();
        }
        return *coefficient;
    }
    [[noreturn]] static void raiseUnreadableCoefficient();

    /// The coefficients as read back from their text form, fixed at initialisation; empty
    /// when the text does not read back as a number. First, so that the flow law of a sprinkler
    /// shares the cache line that holds the start of the object.
    std::optional<double> flowA_ = 0.0;
    std::optional<double> flowB_ = 0.0;
    Long id_ = 0;
    String nome_;
    caudalis::modelo modelo_;
    double a_ = 0;
    double b_ = 0;
    double pmin_ = 0;
    double pmax_ = 0;
    double qmin_ = 0;
    double qmax_ = 0;
};

}  // namespace caudalis
