"""Connections, record sets, stored charts and stored evaluations on real SQLite files."""
import caudalis
import pytest

from conftest import FixedNozzleStrategy, make_machine, make_nozzle


def test_connection_and_recordset_read_rows(tmp_path):
    with caudalis.Connection(str(tmp_path / "t.db")) as con:
        con.Open()
        con.Execute("CREATE TABLE t (id INTEGER PRIMARY KEY, name TEXT, ok BOOLEAN)")
        con.Execute("INSERT INTO t (name, ok) VALUES ('a', true)")
        assert caudalis.lastIdentity(con) == 1
        rs = con.Execute("SELECT id, name FROM t")
        assert not rs.EOF() and not rs.BOF()
        assert rs.Fields("NAME") == "a"
        rs.MoveNext()
        assert rs.EOF()
        with pytest.raises(caudalis.Error) as raised:
            rs.Fields("name")
        assert raised.value.number == caudalis.RuntimeError.DataAccess
        assert con.Execute("SELECT name, ok FROM t").rows() == [{"name": "a", "ok": 1}]
    assert not con.isOpen()


def test_connection_errors_carry_numbers(tmp_path):
    con = caudalis.Connection()
    with pytest.raises(caudalis.Error) as raised:
        con.Close()
    assert raised.value.number == caudalis.DatabaseError.ObjectClosed
    con.Open(":memory:")
    with pytest.raises(caudalis.Error) as raised:
        con.Execute("SELECT 1; SELECT 2")
    assert raised.value.number == caudalis.DatabaseError.CharactersAfterStatement
    with pytest.raises(caudalis.Error) as raised:
        con.Execute("SELECT * FROM missing")
    assert raised.value.number == caudalis.RuntimeError.DatabaseEngine
    con.Close()


def test_a_transaction_rolls_back_on_close(tmp_path):
    path = str(tmp_path / "t.db")
    con = caudalis.Connection(path)
    con.Open()
    con.Execute("CREATE TABLE t (v INTEGER)")
    con.BeginTrans()
    con.Execute("INSERT INTO t VALUES (1)")
    con.Close()
    con.Open()
    assert con.Execute("SELECT Count(*) AS n FROM t").Fields("n") == 0
    con.Close()


def test_table_schema_and_sql_text(statics):
    schema = caudalis.makeTableSchema("tb", ["a", "b"], "id")
    assert schema.deleteSQL(id=3) == "DELETE FROM tb WHERE id = 3"
    assert caudalis.substituteParams("? and ?", ["x", 2]) == "x and 2"
    with pytest.raises(caudalis.Error) as raised:
        caudalis.substituteParams("?", [caudalis.Null])
    assert raised.value.number == 94
    assert caudalis.sqlDouble(1.5) == "1.5"
    assert caudalis.sqlQuote("a") == "'a'"
    assert caudalis.innerJoin(caudalis.BoundedArray[object](["t1", "t2 ON x"], lower=0)).startswith("(")


def test_a_chart_is_saved_found_and_refused_twice(statics, project_db, catalogue_db):
    strategy = FixedNozzleStrategy(make_nozzle())
    wrapper = statics.newPivotWrapper(make_machine(spans=1), strategy)
    wrapper.setIndicadores(statics.newIndicadores(24.0, 0))
    wrapper.calculate()
    chart = wrapper.extractCarta()
    chart.transferAcessoriesFrom(strategy.chart)
    chart.setNome("North")
    charts = statics.CartaAspersor()
    charts.saveAsNew(project_db, 1, chart)
    assert chart.id() > 0
    listed = charts.enumerateAll(project_db, 1)
    assert [info.nome for info in listed] == ["North"]
    again = statics.newCartaAspersores()
    again.setNome("North")
    with pytest.raises(caudalis.Error) as raised:
        charts.saveAsNew(project_db, 1, again)
    assert raised.value.number == caudalis.CartaExceptions.NomeDaCartaJaExistente.number
    found = charts.find(project_db, catalogue_db, chart.id())
    assert found.getNome() == "North"
    assert found.getIndicadores().horasRevolucao == 24.0
    charts.destroy(project_db, chart.id())
    assert not charts.AnyFor(project_db, 1)


def test_catalogue_nozzles_are_saved_and_read_back(statics, catalogue_db):
    catalogue = statics.Aspersores()
    catalogue.save(catalogue_db, make_nozzle("N1"))
    nozzles = catalogue.find(catalogue_db)
    assert [n.nome() for n in nozzles] == ["N1"]
    assert [b.nome for b in catalogue.MarcasAll(catalogue_db)] == ["Test brand"]
    best = catalogue.getBestMatch(nozzles, 100.0, 0.045, 0.1)
    assert best.nome() == "N1"


def test_an_evaluation_is_saved_with_its_new_id_written_back(statics, project_db):
    evaluations = statics.PivotEvaluations()
    evaluation = evaluations.newEvaluation("Field 7")
    evaluation.pluviometer = statics.Pluviometros().newPluviometro(0.1)
    evaluation.firstSample = [statics.FieldSamples().Parse("25 3.5"), statics.FieldSamples().Parse("30 7")]
    with caudalis.Connection(project_db) as con:
        con.Open()
        evaluations.save(con, evaluation)
        assert evaluation.id > 0
        assert evaluations.Enumerate(con).tolist() == ["Field 7"]
        found = evaluations.find(con, "name = 'Field 7'")
        assert found.firstSample[2] == caudalis.FieldSample(collectedAmount=30.0, distanceFromCenter=7.0)


def test_field_readings_become_depths(statics):
    samples = statics.FieldSamples()
    gauge = statics.Pluviometros().newPluviometro(0.1)
    depths = samples.CollectionToWaterDepth([samples.newFieldSample(100.0, 5.0), samples.Parse("-1 3")], gauge)
    assert depths[1].depth == pytest.approx(100.0 / (0.05**2 * 3.14159265358979 * 1000))
    assert depths[2].p_null
    assert gauge.p_area > 0
