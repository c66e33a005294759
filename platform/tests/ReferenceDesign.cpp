// Designs the small machine with the native library and prints every outlet's acting pressure,
// fitted flow and required flow, and the total discharge, as the bits of each double: the
// reference that the Windows server's client must reproduce exactly.
//   caudalis_reference_design CATALOGUE.db > reference.txt

#include <caudalis/caudalis.hpp>
#include <cinttypes>
#include <cstdio>
#include <cstring>

#include "SmallMachine.hpp"

namespace {

class BestMatch final : public caudalis::CalculosStrategy {
public:
    void setAvaillableAspersores(const caudalis::CollectionRef& all) override { all_ = all; }
    std::shared_ptr<caudalis::Aspersor> aspersorFor(const caudalis::saida& s) override {
        const double pressure = small_machine::matchingPressure(s.pressao_actuante, s.pressao_ideal);
        return catalogue_.getBestMatch(all_, pressure, s.caudal, small_machine::tolerance);
    }
    std::shared_ptr<caudalis::CartaAspersores> carta() override { return chart_; }

private:
    caudalis::CollectionRef all_;
    caudalis::AspersoresStatic catalogue_;
    std::shared_ptr<caudalis::CartaAspersores> chart_ = caudalis::makeCartaAspersores();
};

void printBits(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    std::printf("%016" PRIx64 "\n", bits);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s CATALOGUE.db\n", argv[0]);
        return 2;
    }
    try {
        caudalis::Statics statics;
        caudalis::pivot machine = statics.newPivot();
        machine.presion = small_machine::inletPressure;
        machine.caudal = small_machine::flow;
        machine.rugosidad = small_machine::roughness;
        caudalis::BoundedArray<caudalis::tramo> spans(1, small_machine::spanCount);
        caudalis::BoundedArray<double> heights(1, small_machine::spanCount);
        for (int i = 0; i < small_machine::spanCount; ++i) {
            const auto& s = small_machine::spans[i];
            spans(i + 1) = statics.Tramos()->newTramo(s.id, s.name, s.length, s.diameter, s.spacing_cm);
            heights(i + 1) = s.endHeight;
        }
        statics.Pivots()->setFixedSpans(machine, spans, heights);
        statics.Pivots()->setEndGun(machine, statics.Gun()->newGun(small_machine::gunRing));

        auto strategy = std::make_shared<BestMatch>();
        auto wrapper = statics.newPivotWrapper(machine, strategy);
        wrapper->setAvaillableAspersores(
            statics.Aspersores()->find(std::string("Provider=SQLite;Data Source=") + argv[1]));
        wrapper->calculate();
        const auto outlets = wrapper->numeroTotalDeSaidas();
        for (caudalis::Long i = 1; i <= outlets; ++i) {
            const caudalis::saida s = wrapper->saidaAt(i);
            printBits(s.pressao_actuante);
            printBits(s.caudal_do_aspersor);
            printBits(s.caudal);
        }
        printBits(wrapper->totalComputedDischarge());
    } catch (const caudalis::Error& e) {
        std::fprintf(stderr, "caudalis_reference_design: error %d: %s\n", e.number(),
                     e.description().c_str());
        return 1;
    }
    return 0;
}
