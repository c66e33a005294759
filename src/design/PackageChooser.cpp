#include "PackageChooser.hpp"

#include <algorithm>

namespace caudalis::design {

namespace {

/// At most this many outlets are tried when a model is chosen: evenly spread along the machine.
constexpr std::size_t sampledOutlets = 200;

std::vector<OperatingPoint> spreadSample(const std::vector<OperatingPoint>& points) {
    if (points.size() <= sampledOutlets) {
        return points;
    }
    std::vector<OperatingPoint> sample;
    const double step = static_cast<double>(points.size()) / sampledOutlets;
    for (std::size_t i = 0; i < sampledOutlets; ++i) {
        sample.push_back(points[static_cast<std::size_t>(static_cast<double>(i) * step)]);
    }
    return sample;
}

struct Score {
    long fits = 0;
    long rated = 0;
    bool operator>(const Score& other) const {
        return fits != other.fits ? fits > other.fits : rated > other.rated;
    }
};

Score scoreOf(const NozzleSet& set, const std::vector<OperatingPoint>& points, double tolerance) {
    Score score;
    for (const auto& point : points) {
        if (set.hasRatedFor(point.pressureKpa)) {
            ++score.rated;
            if (set.choose(point.pressureKpa, point.flowLps, tolerance, NoFitPolicy::LeaveEmpty).nozzle) {
                ++score.fits;
            }
        }
    }
    return score;
}

NozzleSelection selectionOf(const std::optional<std::string>& brand,
                            const std::optional<std::string>& model) {
    NozzleSelection selection;
    selection.brand = brand;
    selection.model = model;
    return selection;
}

std::string labelOf(const std::optional<std::string>& brand, const std::string& model) {
    return brand ? *brand + " " + model : model;
}

}  // namespace

PackageChooser::PackageChooser(const NozzleSelection& selection, NozzleSource& source)
    : selection_(selection), source_(source) {}

NozzleSet PackageChooser::mostFitting(const std::vector<NozzleSet>& candidates,
                                      const std::vector<OperatingPoint>& points, double tolerance) {
    const auto sample = spreadSample(points);
    const NozzleSet* best = nullptr;
    Score bestScore;
    for (const auto& candidate : candidates) {
        const auto score = scoreOf(candidate, sample, tolerance);
        if (best == nullptr || score > bestScore) {
            best = &candidate;
            bestScore = score;
        }
    }
    return best != nullptr ? *best : NozzleSet();
}

NozzleSet PackageChooser::endGunModel(const std::vector<NozzleSet>& candidates, const OperatingPoint& gun,
                                      double tolerance) {
    double biggest = 0;
    for (const auto& candidate : candidates) {
        biggest = std::max(biggest, candidate.largestFlow());
    }
    std::vector<const NozzleSet*> guns;
    for (const auto& candidate : candidates) {
        if (candidate.largestFlow() >= endGunClass * biggest) {
            guns.push_back(&candidate);
        }
    }
    std::stable_sort(guns.begin(), guns.end(), [](const NozzleSet* a, const NozzleSet* b) {
        return a->largestFlow() > b->largestFlow();
    });
    const NozzleSet* rated = nullptr;
    for (const auto* candidate : guns) {
        if (!candidate->hasRatedFor(gun.pressureKpa)) {
            continue;
        }
        if (candidate->choose(gun.pressureKpa, gun.flowLps, tolerance, NoFitPolicy::LeaveEmpty).nozzle) {
            return *candidate;
        }
        rated = rated != nullptr ? rated : candidate;
    }
    if (rated != nullptr) {
        return *rated;
    }
    return guns.empty() ? NozzleSet() : *guns.front();
}

NozzleSet PackageChooser::named(const ModelName& name) const {
    const auto nozzles = source_.nozzles(selectionOf(name.brand, name.model));
    auto models = NozzleSet::byModel(nozzles);
    return models.size() == 1 ? models.front() : NozzleSet::of(nozzles, labelOf(name.brand, name.model));
}

NozzleSet PackageChooser::spanSet(const std::vector<OperatingPoint>& outer) const {
    if (selection_.model) {
        return named(ModelName{selection_.brand, *selection_.model});
    }
    const auto candidates = NozzleSet::byModel(source_.nozzles(selectionOf(selection_.brand, std::nullopt)));
    return mostFitting(candidates, outer, selection_.tolerance);
}

NozzlePackage PackageChooser::choose(const std::vector<OperatingPoint>& spanOutlets,
                                     const std::optional<OperatingPoint>& endGun) const {
    NozzlePackage package;
    package.tolerance = selection_.tolerance;
    package.whenNoneFits = selection_.whenNoneFits;
    std::vector<OperatingPoint> outer;
    if (selection_.inner) {
        package.inner = named(selection_.inner->name);
        package.innerToDistanceM = selection_.inner->toDistanceM;
        std::copy_if(spanOutlets.begin(), spanOutlets.end(), std::back_inserter(outer),
                     [&](const OperatingPoint& p) { return p.distanceM > package.innerToDistanceM; });
    } else {
        outer = spanOutlets;
    }
    package.spans = spanSet(outer);
    if (endGun) {
        package.endGun = selection_.endGun
                             ? named(*selection_.endGun)
                             : endGunModel(NozzleSet::byModel(source_.nozzles(NozzleSelection{})), *endGun,
                                           selection_.tolerance);
    }
    return package;
}

}  // namespace caudalis::design
