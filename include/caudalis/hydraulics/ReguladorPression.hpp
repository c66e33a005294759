#pragma once

#include <memory>

#include "caudalis/hydraulics/PivotApplier.hpp"

namespace caudalis {

class PivotWrapper;

/// A pressure regulator on the outlets of one span. Applied to a pivot it makes the span's
/// sprinklers act at the regulated pressure.
class ReguladorPression : public PivotApplier {
public:
    bool installed() const noexcept { return installed_; }
    Double pression() const noexcept { return pression_; }
    Double minimum_caudal() const noexcept { return minimum_caudal_; }
    Double maximum_caudal() const noexcept { return maximum_caudal_; }
    Integer tramo() const noexcept { return tramo_; }

    /// Applies this regulator to the pivot held by the wrapper.
    void apply_to(PivotWrapper& pivot_wrapper);
    /// Fits the regulator to span `tramo` (the overhang when the number is the pivot's last span
    /// and the pivot has one). An uninstalled regulator changes nothing.
    void apply(pivot& apivot) override;

    /// Library-internal: sets the five values once, right after creation.
    void initRegulador(Integer tramo, Double pression, Double caudal_max, Double caudal_min, bool installed);
    /// Library-internal: used by chart editing and loading.
    void markInstalled() noexcept { installed_ = true; }
    void markUninstalled() noexcept { installed_ = false; }

private:
    bool targetsOverhang(pivot& apivot) const;
    void applyToTramo(caudalis::tramo& aTramo) const;
    caudalis::regulador asRegulador() const;

    Integer tramo_ = 0;
    Double pression_ = 0;
    Double minimum_caudal_ = 0;
    Double maximum_caudal_ = 0;
    bool installed_ = false;
};

/// A new regulator initialised with the five values.
std::shared_ptr<ReguladorPression> makeReguladorPression(Integer tramo, Double pression, Double caudal_max,
                                                         Double caudal_min, bool installed);

}  // namespace caudalis
