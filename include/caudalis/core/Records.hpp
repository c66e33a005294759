#pragma once

#include <memory>
#include <string>

#include "caudalis/core/Basic.hpp"
#include "caudalis/core/BoundedArray.hpp"

namespace caudalis {

class Aspersor;

/// Selects the key by which water-depth samples are compared.
enum class compareWhat : Long { depth = 0, distance = 1 };

/// Pressure and flow at a point of the pipe.
struct ParPressaoCaudal {
    Double pressao = 0;
    Double caudal = 0;
    bool operator==(const ParPressaoCaudal&) const = default;
};

/// A span's position on the ground.
struct Placement {
    Double start_cota = 0;
    Double end_cota = 0;
    Double Length = 0;
    Double p_angle = 0;
    Double p_slope = 0;
};

/// An outlet of a span.
struct saida {
    Double caudal = 0;
    Double caudal_do_aspersor = 0;
    Double pressao_ideal = 0;
    Double pressao_real = 0;
    Double cota = 0;
    Double distanciaAoPivot = 0;
    String nomeAspersor;
    Double pressao_actuante = 0;
    std::shared_ptr<Aspersor> obj_aspersor;
    Boolean over_pressure = false;
};

/// Pressure regulator as fitted to a span.
struct regulador {
    String marca;
    String modelo;
    Double qmax = 0;
    Double qmin = 0;
    Double Preg = 0;
    bool operator==(const regulador&) const = default;
};

/// A span of the machine.
struct tramo {
    Long id = 0;
    Double longitude = 0;
    String denominacion;
    Double separationSaidas_cm = 0;
    Double separacionSaidas = 0;
    Double diametro = 0;
    Placement site;
    ParPressaoCaudal entry_conditions;
    ParPressaoCaudal exit_condition;
    ParPressaoCaudal ideal_entry_conditions;
    ParPressaoCaudal ideal_exit_conditions;
    Double cota = 0;
    BoundedArray<caudalis::saida> Saidas;
    Double perdaDeCargaIdeal = 0;
    caudalis::regulador regulador;
    Boolean temRegulador = false;
    Double p_outlet_count = 0;
    Boolean p_complete = false;
};

/// The end gun.
struct Gun {
    Double rs = 0;
    caudalis::saida saida;
};

/// One row of the drive's speed table.
struct velocidadeDotacao {
    Double percentagem = 0;
    Double velocidadeLinear = 0;
    Double tempoDeUmaVolta = 0;
    Double dotacao = 0;
    bool operator==(const velocidadeDotacao&) const = default;
};

/// The drive's speed table: exactly 10 rows, indexed 1 to 10.
struct caixaVelocidades {
    Double tempoH100 = 0;
    FixedArray<velocidadeDotacao, 1, 10> velocidades;
};

/// A whole machine.
struct pivot {
    BoundedArray<tramo> Tramos;
    tramo tramoVOladizo;
    Gun endGun;
    Double caudal = 0;
    Double caudaDaCartaAssociada = 0;
    Double alcanceCanhao = 0;
    caixaVelocidades caixa;
    Double presion = 0;
    Double rugosidad = 0;
    Double cota = 0;
    Boolean p_has_overhang = false;
    Boolean p_has_end_gun = false;
};

/// Address of an outlet: span and outlet number, or -1, -1 for the end gun.
struct CoordenadasSaida {
    Integer numeroTramo = 0;
    Long saida = 0;
    bool operator==(const CoordenadasSaida&) const = default;
};

/// Material of a pipe or hose.
struct PipeMaterial {
    Long id = 0;
    String name;
    Long rugosidade = 0;
    bool operator==(const PipeMaterial&) const = default;
};

/// Drop hose between the pipe and the sprinkler.
struct Drop {
    Double longitud = 0;
    Double diametro = 0;
    PipeMaterial pipe_material;
    Long p_pipe_material_id = 0;
    Boolean p_is_null = false;
    Boolean p_installed = false;
    bool operator==(const Drop&) const = default;
};

/// Figures of a sprinkler chart.
struct indicadores {
    Double horasRevolucao = 0;
    Integer numeroSaidasObturadas = 0;
    Long id = 0;
    bool operator==(const indicadores&) const = default;
};

/// A reference point on the machine for the pluviometry check.
struct PivotSample {
    Double distanceToCenter = 0;
    Double wetDiameter = 0;
    String code;
    bool operator==(const PivotSample&) const = default;
};

/// Soil infiltration law.
struct KostiakovParameters {
    Double k = 0;
    Double a = 0;
    bool operator==(const KostiakovParameters&) const = default;
};

/// The pluviometry check held by a chart.
struct PluviometryCheck {
    PivotSample firstSample;
    PivotSample secondSample;
    KostiakovParameters kostiakov;
    bool operator==(const PluviometryCheck&) const = default;
};

/// Water depth at a distance from the centre.
struct WaterDepthSample {
    Double depth = 0;
    Double distanceFromCenter = 0;
    Boolean p_null = false;
    bool operator==(const WaterDepthSample&) const = default;
};

/// A catch-can reading.
struct FieldSample {
    Double collectedAmount = 0;
    Double distanceFromCenter = 0;
    bool operator==(const FieldSample&) const = default;
};

/// Rain gauge.
struct Pluviometro {
    Double diameter = 0;
    Double p_area = 0;
};

/// A field evaluation.
struct PivotEvaluation {
    Long id = 0;
    String name;
    Pluviometro pluviometer;
    BoundedArray<FieldSample> firstSample;
    BoundedArray<FieldSample> secondSample;
};

/// Sprinkler brand.
struct marca {
    Long id = 0;
    String nome;
    bool operator==(const marca&) const = default;
};

/// Sprinkler model.
struct modelo {
    Long id = 0;
    String nome;
    caudalis::marca marca;
    Long marca_id = 0;
    bool operator==(const modelo&) const = default;
};

/// A stored chart as listed.
struct CartaInfo {
    String nome;
    Integer id = 0;
    bool operator==(const CartaInfo&) const = default;
};

/// A design project (exchanged with hosts; no operation reads it).
struct Projecto {
    Long id = 0;
    String nome;
    String propietario;
    Double areaParcela = 0;
    Double p = 0;
    Double q = 0;
    PipeMaterial pipe_material;
    Double cotaCentral = 0;
    Boolean hasVoladizo = false;
    Boolean hasGun = false;
    Gun endGun;
    Double horas_de_operacao_diaria = 0;
    BoundedArray<tramo> Tramos;
    Long p_pipe_material_id = 0;
    Boolean p_tramos_loaded = false;
    Boolean p_destroyed = false;
};

/// Maker of a span type.
struct TramoMarca {
    String name;
    Long id = 0;
    bool operator==(const TramoMarca&) const = default;
};

/// A catalogue span type.
struct ReferenceTramo {
    Long id = 0;
    String denominacion;
    Double diametro = 0;
    Double longitud = 0;
    Double separacion_saidas = 0;
    TramoMarca marca;
    Long id_marca = 0;
    bool operator==(const ReferenceTramo&) const = default;
};

struct FrequencialData {
    Double frequencia = 0;
    Double Qfc = 0;
    Double ano = 0;
    bool operator==(const FrequencialData&) const = default;
};

}  // namespace caudalis
