// Outlet address text ("span-outlet"): parsing any text gives an address or a numbered error,
// and an address of a span's outlet prints to a text that parses to the same address.
#include "FuzzInput.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/machine/CoordenadasSaidas.hpp"

using namespace caudalis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto addresses = CoordenadasSaidas::shared();
    try {
        const CoordenadasSaida address = addresses->Parse(fuzz::textOf(data, size));
        if (address.numeroTramo > 0 && address.saida > 0) {
            const CoordenadasSaida again = addresses->Parse(addresses->ToString(address));
            fuzz::require(again.numeroTramo == address.numeroTramo && again.saida == address.saida);
        }
    } catch (const Error&) {
        // Text that is not an address raises a numbered error, as it should.
    }
    return 0;
}
