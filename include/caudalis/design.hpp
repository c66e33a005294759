#pragma once

// The design services every host shares: design files, nozzle packages, the design run, its
// findings, uniformity figures and the printed, JSON and CSV forms of a result.
#include "caudalis/design/CsvReport.hpp"
#include "caudalis/design/DesignChecks.hpp"
#include "caudalis/design/DesignDescription.hpp"
#include "caudalis/design/DesignError.hpp"
#include "caudalis/design/DesignFile.hpp"
#include "caudalis/design/DesignOptions.hpp"
#include "caudalis/design/DesignResult.hpp"
#include "caudalis/design/DesignRunner.hpp"
#include "caudalis/design/Finding.hpp"
#include "caudalis/design/InMemoryNozzleSource.hpp"
#include "caudalis/design/JsonReport.hpp"
#include "caudalis/design/MachineBuilder.hpp"
#include "caudalis/design/NozzlePackageStrategy.hpp"
#include "caudalis/design/NozzleSource.hpp"
#include "caudalis/design/ReportLabels.hpp"
#include "caudalis/design/TextFile.hpp"
#include "caudalis/design/TextReport.hpp"
#include "caudalis/design/Uniformity.hpp"
