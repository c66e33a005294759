#include <gtest/gtest.h>

#include <optional>
#include <set>

#include "MarchRecorder.hpp"
#include "ReferenceFile.hpp"

namespace caudalis::testing {
namespace {

constexpr long machineCount = 1000;
/// The machines whose every value is stored, so that a difference can be traced: plain ones and
/// two with a deliberate fault.
const std::set<long> machinesKeptWhole = {0, 7, 57};

/// Runs `record(index, out)` for every machine and compares each digest with the stored one
/// (or writes the references when asked to).
template <class Record>
void compareSeries(const std::string& file, const std::string& series, Record record) {
    const std::string folder = ReferenceFile::writeFolder();
    const ReferenceFile stored(file);
    std::optional<ReferenceWriter> writer;
    if (!folder.empty()) {
        writer.emplace(folder, file);
    }
    long differing = 0;
    for (long index = 0; index < machineCount; ++index) {
        const bool keep = machinesKeptWhole.contains(index);
        OutputRecord out(keep);
        record(index, out);
        if (writer) {
            writer->add(series, index, out, keep);
            continue;
        }
        ASSERT_NE(stored.digest(series, index), 0u) << "no stored reference for " << series << " " << index;
        const std::string difference = compareWithReference(stored, series, index, out);
        if (!difference.empty() && ++differing <= 10) {
            ADD_FAILURE() << difference;
        }
    }
    EXPECT_EQ(differing, 0) << "machines whose outputs changed";
}

TEST(MarchReference, ThousandRandomDesignRunsGiveTheStoredOutputsToTheLastBit) {
    compareSeries("design-runs.txt", "design", [](long index, OutputRecord& out) {
        recordDesignRun(referenceMachine(static_cast<std::uint64_t>(index)), out);
    });
}

TEST(MarchReference, NozzleLawsAndBestMatchesGiveTheStoredOutputsToTheLastBit) {
    compareSeries("matching.txt", "matching", [](long index, OutputRecord& out) {
        const auto seed = static_cast<std::uint64_t>(index) * 7919 + 17;
        recordMatching(referenceMachine(static_cast<std::uint64_t>(index)), seed, out);
    });
}

}  // namespace
}  // namespace caudalis::testing
