// A tiny host program built against the installed Caudalis package.
#include <iostream>

#include <caudalis/caudalis.hpp>

int main() {
    const auto statics = caudalis::Statics::application();
    caudalis::pivot machine = statics->newPivot();
    machine.presion = 250;
    machine.caudal = 50;
    machine.rugosidad = 140;
    std::cout << "spans: " << statics->Arrays()->Length(machine.Tramos) << '\n';
    return 0;
}
