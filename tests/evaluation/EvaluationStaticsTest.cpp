#include <gtest/gtest.h>

#include "caudalis/core/Statics.hpp"
#include "caudalis/evaluation/FieldSamples.hpp"
#include "caudalis/evaluation/PivotEvaluations.hpp"
#include "caudalis/evaluation/Pluviometros.hpp"

using namespace caudalis;

namespace {

/// The accessor gives the library-wide instance of `Helper`, whichever `Statics` is asked.
template <class Helper>
void expectTheSharedInstance(std::shared_ptr<Helper> (Statics::*accessor)() const) {
    const Statics& application = *Statics::application();
    const std::shared_ptr<Helper> first = (application.*accessor)();
    EXPECT_NE(first, nullptr);
    EXPECT_EQ((application.*accessor)(), first);
    EXPECT_EQ(Helper::shared(), first);
    EXPECT_EQ((Statics{}.*accessor)(), first);
}

}  // namespace

TEST(EvaluationStaticsTest, FieldSamplesIsTheSharedInstance) {
    expectTheSharedInstance(&Statics::FieldSamples);
}

TEST(EvaluationStaticsTest, PluviometrosIsTheSharedInstance) {
    expectTheSharedInstance(&Statics::Pluviometros);
}

TEST(EvaluationStaticsTest, PivotEvaluationsIsTheSharedInstance) {
    expectTheSharedInstance(&Statics::PivotEvaluations);
}
