#pragma once

#include <memory>

#include "caudalis/core/LazyInstance.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis {

class Arrays;
class AspersoresStatic;
class Doubles;

/// The application object: makes records and objects and hands out the shared helpers.
/// Accessors of helpers return the library-wide instance; everything named `new...` is made
/// fresh on every call.
class Statics {
public:
    /// The process-wide application instance (hosts may still create their own).
    static std::shared_ptr<Statics> application();

    /// The sprinkler catalogue object of this `Statics`: made on the first call, then the same.
    std::shared_ptr<AspersoresStatic> Aspersores() const;

    indicadores newIndicadores(Double horas, Integer nsaidas) const;
    PivotSample newPivotSample(Double centerDistance, Double wetDiameter, const String& code) const;
    KostiakovParameters newKostiakovParameters(Double k, Double a) const;
    /// A pivot in which every field is zero: no spans, no overhang, no end gun.
    caudalis::pivot newPivot() const;
    std::shared_ptr<caudalis::Arrays> Arrays() const;
    std::shared_ptr<caudalis::Doubles> Doubles() const;

private:
    mutable LazyInstance<AspersoresStatic> aspersores_;
};

}  // namespace caudalis
