#pragma once

#include "caudalis/core/Records.hpp"

namespace caudalis::python {

template <class... Types>
struct TypeList {};

/// Every record of the library: a Variant may hold any of them.
using AllRecords =
    TypeList<pivot, tramo, saida, Gun, Placement, ParPressaoCaudal, CoordenadasSaida, Drop, PipeMaterial,
             regulador, indicadores, PluviometryCheck, PivotSample, KostiakovParameters, WaterDepthSample,
             FieldSample, Pluviometro, PivotEvaluation, marca, modelo, CartaInfo, Projecto, TramoMarca,
             ReferenceTramo, FrequencialData, velocidadeDotacao, caixaVelocidades>;

}  // namespace caudalis::python
