#include "caudalis/design/StoredChartDesign.hpp"

#include <algorithm>

#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/charts/CartaAspersoresStatic.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/Recordset.hpp"
#include "caudalis/design/ChartFigures.hpp"
#include "caudalis/design/DesignError.hpp"
#include "caudalis/design/DesignFile.hpp"
#include "caudalis/design/DesignRunner.hpp"
#include "caudalis/design/Limits.hpp"
#include "caudalis/design/MachineBuilder.hpp"
#include "caudalis/design/MountedNozzleStrategy.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"

namespace caudalis::design {

namespace {

long countOf(Connection& project, const std::string& table, Long chartId) {
    const auto rows = project.Execute("SELECT count(*) AS n FROM " + table +
                                      " WHERE id_carta = " + std::to_string(chartId));
    return static_cast<long>(rows->Fields("n").toDouble());
}

/// The design file kept with the chart; raises when there is no chart or no design.
std::string storedDesign(Connection& project, Long chartId) {
    const auto chart = "chart " + std::to_string(chartId);
    if (countOf(project, "tb_cartas", chartId) == 0) {
        throw DesignError::invalid("the project database holds no " + chart);
    }
    if (chartId > limits::largestChartId) {
        throw DesignError::invalid(chart + " is beyond " + std::to_string(limits::largestChartId) +
                                   ", the largest chart id the chart tables can read");
    }
    const auto figures = ChartFigures::load(project, chartId);
    if (!figures || figures->design.empty()) {
        throw DesignError::invalid(
            chart +
            " was stored without its design file, so its machine is unknown: store the "
            "design again with caudalis design FILE --save NAME");
    }
    return figures->design;
}

Finding storedChartNote(Long chartId) {
    return {Severity::Note, "stored-chart",
            "chart " + std::to_string(chartId) +
                " computed again from the design file kept with it and its nozzles as stored; the chart does "
                "not keep the nozzle package nor why each outlet got its nozzle"};
}

Finding missingNozzlesFinding(long missing) {
    return {Severity::Warning, "stored-nozzles-not-in-catalogue",
            std::to_string(missing) +
                " of the stored chart's nozzles are not in the catalogue; their outlets are computed without "
                "a nozzle"};
}

}  // namespace

RebuiltChart StoredChartDesign::rebuild(const std::string& projectConnection, const std::string& catalogue,
                                        Long chartId, const std::map<Long, double>& wettedDiameters) {
    Connection project(projectConnection);
    project.Open();
    const auto text = storedDesign(project, chartId);
    const long storedNozzles = countOf(project, "tb_aspersores", chartId);
    project.Close();
    auto design = DesignFile::parse(text, "the design stored with chart " + std::to_string(chartId));

    const auto statics = Statics::application();
    const auto chart =
        statics->CartaAspersor()->find(projectConnection, catalogue, static_cast<Integer>(chartId));
    const auto strategy = std::make_shared<MountedNozzleStrategy>(chart);
    const auto wrapper = statics->newPivotWrapper(MachineBuilder().build(design), strategy);
    DesignRunner::prepare(*wrapper, design);
    chart->mountAsperoresOn(*wrapper);
    wrapper->calculate();

    RebuiltChart rebuilt;
    const std::vector<ChoiceReason> asStored(static_cast<std::size_t>(strategy->outletsPerPass()),
                                             ChoiceReason::Stored);
    rebuilt.result =
        DesignRunner().gather(*wrapper, design, strategy->passes(), asStored, chart, wettedDiameters);
    rebuilt.result.findings.push_back(storedChartNote(chartId));
    rebuilt.depths = wrapper->WaterDepthsSamples(false);
    rebuilt.missingNozzles = storedNozzles - static_cast<long>(chart->mountedAspersores()->Count());
    if (rebuilt.missingNozzles > 0) {
        auto& findings = rebuilt.result.findings;
        const auto afterErrors = std::find_if(findings.begin(), findings.end(),
                                              [](const Finding& f) { return f.severity != Severity::Error; });
        findings.insert(afterErrors, missingNozzlesFinding(rebuilt.missingNozzles));
    }
    return rebuilt;
}

}  // namespace caudalis::design
