#pragma once

#include <memory>
#include <string>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/core/Collection.hpp"

namespace caudalis::testing {

/// A model of a brand, both stored.
inline modelo sampleModelo() {
    modelo model;
    model.id = 7;
    model.nome = "R3000";
    model.marca = marca{3, "Nelson"};
    model.marca_id = 3;
    return model;
}

/// A nozzle with the flow law flow = a * pressure^b, pressure range 1 to 3 and flow range 1 to 10.
inline std::shared_ptr<Aspersor> nozzle(double a, double b, const std::string& name = "Azul 24") {
    return AspersoresStatic().newAspersor(name, a, b, 1, 3, 1, 10, sampleModelo());
}

/// A collection holding the given values, in order, without keys.
inline CollectionRef collectionOf(std::initializer_list<Variant> items) {
    auto collection = Collection::create();
    for (const Variant& item : items) {
        collection->Add(item);
    }
    return collection;
}

}  // namespace caudalis::testing
