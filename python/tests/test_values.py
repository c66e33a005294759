"""Variants, Null, collections, bounded arrays, comparators and sorting."""
import caudalis
import pytest


def test_variants_convert_with_the_runtime_rules():
    assert caudalis.Variant(2.5).toInteger() == 2
    assert caudalis.Variant(3.5).toInteger() == 4
    assert caudalis.Variant.integer(7).type() == caudalis.Variant.Type.Integer
    assert caudalis.Variant(7).type() == caudalis.Variant.Type.Long
    assert caudalis.Variant(2**40).type() == caudalis.Variant.Type.Double
    assert caudalis.Variant().isEmpty()
    with pytest.raises(caudalis.Error) as raised:
        caudalis.Variant.null().toDouble()
    assert raised.value.number == 94
    with pytest.raises(caudalis.Error) as raised:
        caudalis.Variant("abc").toDouble()
    assert raised.value.number == 13


def test_null_and_empty_travel_both_ways():
    assert caudalis.Variant(caudalis.Null).isNull()
    assert caudalis.Variant.null().value is caudalis.Null
    assert caudalis.nullToZero(caudalis.Null) == 0
    assert caudalis.nullToEmpty(caudalis.Null) == ""
    assert caudalis.Variant(None).value is None


def test_records_travel_inside_variants():
    sample = caudalis.FieldSample(collectedAmount=10.0, distanceFromCenter=5.0)
    collection = caudalis.Collection()
    collection.Add(sample)
    assert collection[1] == sample
    assert isinstance(caudalis.Variant(sample).value, caudalis.FieldSample)


def test_collection_keys_indexes_and_errors():
    collection = caudalis.Collection()
    collection.Add("a", "First")
    collection.Add(2.5)
    assert collection.Count() == 2 and len(collection) == 2
    assert collection.Item("first") == "a"
    assert list(collection) == ["a", 2.5]
    assert "FIRST" in collection
    with pytest.raises(caudalis.Error) as raised:
        collection.Add("b", "first")
    assert raised.value.number == caudalis.RuntimeError.KeyAlreadyAssociated
    with pytest.raises(caudalis.Error) as raised:
        collection.Item(3)
    assert raised.value.number == 9
    collection.Remove("first")
    assert collection.tolist() == [2.5]


def test_bounded_arrays_keep_their_bounds():
    values = caudalis.BoundedArray[float]([1.0, 2.0, 3.0], lower=0)
    assert values.bounds() == (0, 2)
    assert values[0] == 1.0
    values.redimPreserve(0, 3)
    assert values.tolist() == [1.0, 2.0, 3.0, 0.0]
    values.erase()
    assert values.bounds() is None and not values.isAllocated()
    with pytest.raises(caudalis.Error) as raised:
        values.lbound()
    assert raised.value.number == 9
    with pytest.raises(TypeError):
        caudalis.BoundedArray[complex]


def test_hosts_cannot_make_a_comparator():
    with pytest.raises(TypeError):
        caudalis.Comparator()
    with pytest.raises(TypeError):
        caudalis.WaterDepthsComparator()


def test_water_depths_sort_by_distance(statics):
    depths = statics.WaterDepths()
    samples = [depths.newWaterDepthSample(d, r) for d, r in [(5.0, 3.0), (9.0, 1.0), (1.0, 2.0)]]
    by_distance = depths.Sort(samples, caudalis.compareWhat.distance)
    assert [s.distanceFromCenter for s in by_distance] == [1.0, 2.0, 3.0]
    assert samples[0].depth == 5.0


def test_doubles_nan_is_the_negative_one(statics):
    nan = statics.Doubles().NaN()
    assert nan != nan
    assert statics.Doubles().isNaN(nan)
    assert not statics.Doubles().isNaN(float("nan"))
