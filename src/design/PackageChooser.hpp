#pragma once

#include <vector>

#include "caudalis/core/Records.hpp"
#include "caudalis/design/DesignDescription.hpp"
#include "caudalis/design/NozzlePackage.hpp"
#include "caudalis/design/NozzleSource.hpp"

namespace caudalis::design {

/// Where one outlet is expected to work: its required flow at its acting pressure, estimated
/// from the ideal march (the regulator's rating on a regulated span).
struct OperatingPoint {
    double distanceM = 0;
    double pressureKpa = 0;
    double flowLps = 0;
};

/// Puts a design's nozzle package together from the catalogue: the models the file names, and
/// for the sections it leaves open the model that suits the machine. For the spans: of the
/// allowed models, the one with a rated nozzle within the tolerance at most outlets. For the
/// end gun: an end-gun model, that is one whose biggest nozzle gives at least half the flow of
/// the catalogue's biggest (`endGunClass`); of those, the largest rated for the gun's pressure
/// with a nozzle within the tolerance, else the largest rated for it, else the largest.
class PackageChooser {
public:
    static constexpr double endGunClass = 0.5;

    PackageChooser(const NozzleSelection& selection, NozzleSource& source);

    /// `spanOutlets` are the fixed spans' and overhang's outlets; `endGun` is empty without one.
    NozzlePackage choose(const std::vector<OperatingPoint>& spanOutlets,
                         const std::optional<OperatingPoint>& endGun) const;

    /// The model of `candidates` that fits most `points`; ties go to the one with most points
    /// it is rated for, then to the first.
    static NozzleSet mostFitting(const std::vector<NozzleSet>& candidates,
                                 const std::vector<OperatingPoint>& points, double tolerance);
    /// The end-gun model for `gun` among `candidates`.
    static NozzleSet endGunModel(const std::vector<NozzleSet>& candidates, const OperatingPoint& gun,
                                 double tolerance);

private:
    NozzleSet spanSet(const std::vector<OperatingPoint>& outer) const;
    NozzleSet named(const ModelName& name) const;

    const NozzleSelection& selection_;
    NozzleSource& source_;
};

}  // namespace caudalis::design
