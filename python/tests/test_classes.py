"""Every class, record and enumeration of the library is reachable under its own name."""
import caudalis
import pytest

CLASSES = [
    "Statics", "Types", "Tramos", "Arrays", "PivotWrapper", "PivotApplier", "ReguladorPression",
    "CartaAspersoresStatic", "PipeMaterials", "TableSchema", "Pluviometros", "Pivots", "CoordenadasSaidas",
    "Doubles", "Comparator", "Exceptions", "Aspersor", "AspersoresStatic", "MountedAspersor", "CartaAspersores",
    "CalculosStrategy", "Drops", "WaterDepths", "WaterDepthsComparator", "FieldSamples", "PivotEvaluations",
    "Collection", "Variant", "Connection", "Recordset", "ConnectionSettings", "Object",
]
RECORDS = [
    "pivot", "tramo", "saida", "Gun", "Placement", "ParPressaoCaudal", "CoordenadasSaida", "Drop", "PipeMaterial",
    "regulador", "indicadores", "PluviometryCheck", "PivotSample", "KostiakovParameters", "WaterDepthSample",
    "FieldSample", "Pluviometro", "PivotEvaluation", "marca", "modelo", "CartaInfo", "Projecto", "TramoMarca",
    "ReferenceTramo", "FrequencialData", "velocidadeDotacao", "caixaVelocidades",
]
ERROR_CODES = {
    "AspersorException": {"MissingAsperorDataException": 500},
    "DescricaoException": {"MissingNameException": 600, "ModeloIsNewRecordException": 601},
    "ModeloException": {"MissingNameException": 700, "MarcaIsNewRecordException": 701},
    "MarcaException": {"MissingNameException": 800},
    "DropException": {"DropIncompleteException": 900},
    "CartaExceptions": {"NomeDaCartaJaExistente": 1000},
    "PluviometroException": {"PluviometroIncompleteException": 1001},
    "WaterDepthSampleException": {"NotEnoughSamplesToComputeLowQuarter": 1101},
}


@pytest.mark.parametrize("name", CLASSES + RECORDS)
def test_every_class_and_record_is_a_type_of_the_package(name):
    assert isinstance(getattr(caudalis, name), type)


@pytest.mark.parametrize("name", RECORDS)
def test_every_record_starts_all_zero_with_its_fields_in_order(name):
    record_class = getattr(caudalis, name)
    record = record_class()
    assert record._fields
    for field in record._fields:
        value = getattr(record, field)
        if isinstance(value, (int, float, bool)):
            assert value == 0, field
        elif isinstance(value, str):
            assert value == "", field


def test_pivot_fields_are_in_the_record_order():
    assert caudalis.pivot._fields == (
        "Tramos", "tramoVOladizo", "endGun", "caudal", "caudaDaCartaAssociada", "alcanceCanhao", "caixa", "presion",
        "rugosidad", "cota", "p_has_overhang", "p_has_end_gun",
    )


@pytest.mark.parametrize("enum_name", sorted(ERROR_CODES))
def test_error_codes_carry_their_numbers(enum_name):
    for code, offset in ERROR_CODES[enum_name].items():
        member = getattr(getattr(caudalis, enum_name), code)
        assert member.number == caudalis.ObjectErrorBase + offset
        assert member.number == -2147221504 + offset


def test_the_three_missing_name_codes_stay_apart():
    numbers = {caudalis.DescricaoException.MissingNameException.number,
               caudalis.ModeloException.MissingNameException.number,
               caudalis.MarcaException.MissingNameException.number}
    assert len(numbers) == 3


def test_shared_helpers_are_one_object_and_new_objects_are_fresh(statics):
    assert statics.Tramos() is statics.Tramos()
    assert statics.Pivots() is caudalis.Pivots.shared()
    assert statics.newCartaAspersores() is not statics.newCartaAspersores()
    assert statics is caudalis.Statics.application()


def test_gun_placements_and_saidas_are_three_types_instances(statics):
    gun, placements, saidas = statics.Gun(), statics.Placements(), statics.Saidas()
    assert all(isinstance(t, caudalis.Types) for t in (gun, placements, saidas))
    assert len({id(gun), id(placements), id(saidas)}) == 3


def test_each_statics_object_keeps_its_own_catalogue_object():
    first, second = caudalis.Statics(), caudalis.Statics()
    assert first.Aspersores() is first.Aspersores()
    assert first.Aspersores() is not second.Aspersores()
    assert isinstance(first.CartaAspersor(), caudalis.CartaAspersoresStatic)


def test_every_accessor_of_statics_gives_its_class(statics):
    for accessor, expected in [
        ("Drops", "Drops"), ("Pivots", "Pivots"), ("Tramos", "Tramos"), ("Arrays", "Arrays"),
        ("CoordenadasSaidas", "CoordenadasSaidas"), ("Doubles", "Doubles"), ("PipeMaterials", "PipeMaterials"),
        ("FieldSamples", "FieldSamples"), ("WaterDepths", "WaterDepths"), ("Pluviometros", "Pluviometros"),
        ("PivotEvaluations", "PivotEvaluations"), ("Aspersores", "AspersoresStatic"),
    ]:
        assert isinstance(getattr(statics, accessor)(), getattr(caudalis, expected)), accessor


def test_record_factories(statics):
    assert statics.newIndicadores(24, 3) == caudalis.indicadores(horasRevolucao=24, numeroSaidasObturadas=3, id=0)
    assert statics.newPivotSample(100, 30, "A").code == "A"
    assert statics.newKostiakovParameters(2.5, 0.4) == caudalis.KostiakovParameters(k=2.5, a=0.4)
    assert caudalis.makeIndicadores(12, 1).horasRevolucao == 12


def test_a_new_pivot_is_empty_and_incomplete(statics):
    machine = statics.newPivot()
    pivots = statics.Pivots()
    assert pivots.FixedSpansCount(machine) == 0
    assert not pivots.hasOverHang(machine)
    assert not pivots.hasEndGun(machine)
    assert not pivots.isComplete(machine)
    assert not machine.Tramos.isAllocated()


def test_objects_in_a_collection_come_back_as_their_own_class(statics):
    collection = caudalis.Collection()
    regulator = statics.newReguladorPression(1, 140, 2, 0.1, True)
    collection.Add(regulator, "r1")
    assert collection.Item("r1") is regulator
    assert isinstance(collection[1], caudalis.ReguladorPression)
    assert isinstance(collection[1], caudalis.PivotApplier)


def test_docstrings_come_from_the_header_comments():
    assert "every field is zero" in caudalis.Statics.newPivot.__doc__
    assert "Hazen-Williams" in caudalis.hazenWilliamsLoss.__doc__
    assert "outlet of a span" in caudalis.saida.__doc__
    assert "settles" in caudalis.PivotWrapper.__doc__
