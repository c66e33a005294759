#pragma once

#include <optional>
#include <string>
#include <vector>

#include "caudalis/design/UnitText.hpp"
#include "caudalis/fieldtests/FieldEvaluationResult.hpp"
#include "caudalis/fieldtests/FieldReadings.hpp"
#include "caudalis/fieldtests/MeasuredDesignedComparison.hpp"
#include "caudalis/report/ReportDocument.hpp"

namespace caudalis::design {

/// The machine as designed that a field test is laid over, with what the comparison found.
struct DesignedBeside {
    /// Where the design came from (a design file, a stored chart).
    std::string source;
    /// The drive's timer setting during the test, %; the designed depths are for 100 %.
    double timerPercent = 100;
    /// Where the wetted diameter of `comparison` came from.
    std::string wettedDiameterFrom;
    DesignedMachine machine;
    DesignComparison comparison;
};

/// Everything a field evaluation report shows.
struct EvaluationPrintoutInput {
    std::string name;
    FieldReadings readings;
    FieldEvaluationResult result;
    std::optional<DesignedBeside> designed;
    /// The units every distance and depth is printed in.
    Units units;
};

/// A catch-can figure as reports print it: its name (`CatchCanStatistics::named`), its label
/// and the decimals it is printed with; a depth is printed in the units asked for, with the unit
/// after its label.
struct CatchCanFigureLabel {
    const char* name;
    const char* label;
    int decimals;
    bool depth = false;

    /// "Mean depth (mm)", "Mean depth (in)", "CU Heermann-Hein (%)".
    std::string heading(const UnitText& text) const;
    /// The value as printed: a depth in the units of `text`; "n/a" when it is not defined.
    std::string valueText(const std::optional<double>& value, const UnitText& text) const;
    /// The key a program reads it under: a depth's ends in its unit ("mean_depth_in").
    std::string key(const Units& units) const;
    /// The value in the units of the key.
    std::optional<double> value(const std::optional<double>& value, const Units& units) const;
};

/// The report of a field evaluation as a report document (rendered by `HtmlReport`), every
/// distance and depth in the input's units: the plot
/// of depth against radius (each line's collectors, those left out, the designed profile when a
/// design is given, the mean and the band from the low-quarter mean up to the mean), the
/// figures of each line, of the lines' mean, of both together and of the end-gun zone, the
/// applied depth against the expected one, what was left out, the outliers, the measured
/// depths beside the designed ones, and every collector.
class EvaluationPrintout {
public:
    /// Points of the designed profile drawn along the radius.
    static constexpr int profilePoints = 400;

    static ReportDocument document(const EvaluationPrintoutInput& input);

    static ReportSection depthPlot(const EvaluationPrintoutInput& input);
    static ReportSection figures(const FieldEvaluationResult& result, const UnitText& text);
    /// The figures, a row a figure, a column for each line, the lines' mean and both together
    /// (with two lines) and the end-gun zone (when it has collectors).
    static ReportTable figuresTable(const FieldEvaluationResult& result, const UnitText& text);
    static ReportSection leftOut(const FieldEvaluationResult& result, const UnitText& text);
    static ReportSection outliers(const FieldEvaluationResult& result, const UnitText& text);
    static ReportSection comparison(const DesignedBeside& designed, const UnitText& text);
    static ReportSection collectors(const EvaluationPrintoutInput& input);

    /// Why a reading was left out, as reports say it.
    static std::string reasonText(const ExcludedReading& excluded);
    /// The figures in the order reports list them.
    static const std::vector<CatchCanFigureLabel>& figureLabels();
    /// The value with the label's decimals, "n/a" when the figure is not defined.
    static std::string figureText(const std::optional<double>& value, int decimals);
    /// The designed depth per pass along the radius at the test's timer setting, mm, from
    /// `fromM` to `toM`.
    static std::vector<std::pair<double, double>> designedProfile(const DesignedBeside& designed,
                                                                  double fromM, double toM);
};

}  // namespace caudalis::design
