// Connections, record sets, table statements and the SQL text helpers.
#include <filesystem>
#include <optional>
#include <string>

#include "Bindings.hpp"
#include "Declarations.hpp"
#include "VariantConversion.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/ConnectionSettings.hpp"
#include "caudalis/db/Recordset.hpp"
#include "caudalis/db/SqlScript.hpp"
#include "caudalis/db/SqlText.hpp"
#include "caudalis/db/TableSchema.hpp"

namespace caudalis::python {

namespace {

void bindConnection(py::module_& m) {
    reopen<RecordsetClass>()
        .def(py::init<>(), doc("Recordset.Recordset"))
        .def("EOF", &Recordset::EOF_, doc("Recordset.EOF_"))
        .def("EOF_", &Recordset::EOF_, doc("Recordset.EOF_"))
        .def("BOF", &Recordset::BOF, doc("Recordset.BOF"))
        .def("MoveNext", &Recordset::MoveNext, doc("Recordset.MoveNext"))
        .def("Fields", &Recordset::Fields, py::arg("name"), doc("Recordset.Fields"))
        .def("fieldNames", &Recordset::fieldNames, doc("Recordset.fieldNames"))
        .def(
            "rows",
            [](Recordset& self) {
                py::list rows;
                for (; !self.EOF_(); self.MoveNext()) {
                    py::dict row;
                    for (const auto& name : self.fieldNames()) {
                        row[py::str(name)] = variantToPython(self.Fields(name));
                    }
                    rows.append(row);
                }
                return rows;
            },
            "The rows from the current one to the end, each a dict of field name to value; moves to EOF.");
    reopen<ConnectionClass>()
        .def(py::init<>())
        .def(py::init<std::string>(), py::arg("connectionString"))
        .def("ConnectionString", py::overload_cast<const std::string&>(&Connection::ConnectionString),
             py::arg("text"), doc("Connection.ConnectionString"))
        .def("ConnectionString", py::overload_cast<>(&Connection::ConnectionString, py::const_))
        .def("Open", py::overload_cast<>(&Connection::Open), doc("Connection.Open"))
        .def("Open", py::overload_cast<const std::string&>(&Connection::Open), py::arg("connectionString"),
             doc("Connection.Open", 1))
        .def("Execute", &Connection::Execute, py::arg("sql"), doc("Connection.Execute"))
        .def("BeginTrans", &Connection::BeginTrans)
        .def("CommitTrans", &Connection::CommitTrans)
        .def("RollbackTrans", &Connection::RollbackTrans)
        .def("Close", &Connection::Close, doc("Connection.Close"))
        .def("isOpen", &Connection::isOpen)
        .def("__enter__", [](const std::shared_ptr<Connection>& self) { return self; })
        .def(
            "__exit__",
            [](Connection& self, const py::args& /*exception*/) {
                if (self.isOpen()) {
                    self.Close();
                }
            },
            "Closes the connection (rolling back an open transaction) when it is open.");
    reopen<ConnectionSettingsClass>()
        .def_static("parse", &ConnectionSettings::parse, py::arg("text"))
        .def("provider", &ConnectionSettings::provider, doc("ConnectionSettings.provider"))
        .def("dataSource", &ConnectionSettings::dataSource, doc("ConnectionSettings.dataSource"))
        .def("value", &ConnectionSettings::value, py::arg("key"), doc("ConnectionSettings.value"));
    m.def("splitStatements", &splitStatements, py::arg("script"), doc("splitStatements"));
    m.def("runScript", &runScript, py::arg("connection"), py::arg("script"), doc("runScript"));
    m.def(
        "runScriptFile",
        [](Connection& connection, const std::string& file) { runScriptFile(connection, file); },
        py::arg("connection"), py::arg("file"), doc("runScriptFile"));
}

void bindTableSchema(py::module_& m) {
    using OptionalVariant = std::optional<Variant>;
    using OptionalArray = std::optional<BoundedArray<Variant>>;
    reopen<TableSchemaClass>()
        .def(py::init<>())
        .def("init", &TableSchema::init, py::arg("lnome"), py::arg("lcampos"), py::arg("lfield_id"))
        .def("copyData", &TableSchema::copyData, py::arg("con"), py::arg("from_id"), py::arg("to_id"),
             doc("TableSchema.copyData"))
        .def("copyDataSQL", &TableSchema::copyDataSQL, py::arg("from_id"), py::arg("to_id"),
             doc("TableSchema.copyDataSQL"))
        .def("updateSQL", &TableSchema::updateSQL, py::arg("values"), py::arg("id"),
             doc("TableSchema.updateSQL"))
        .def("countSQL", &TableSchema::countSQL, py::arg("condition") = OptionalVariant(),
             doc("TableSchema.countSQL"))
        .def("selectSQL", &TableSchema::selectSQL, py::arg("id") = OptionalVariant(),
             py::arg("selection") = OptionalArray(), py::arg("condition") = OptionalVariant(),
             py::arg("order") = OptionalVariant(), doc("TableSchema.selectSQL"))
        .def("insertSQL", &TableSchema::insertSQL, py::arg("values"), py::arg("fields") = OptionalArray(),
             doc("TableSchema.insertSQL"))
        .def("deleteSQL", &TableSchema::deleteSQL, py::arg("id") = OptionalVariant(),
             py::arg("condition") = OptionalVariant(), doc("TableSchema.deleteSQL"));
    m.def("makeTableSchema", &makeTableSchema, py::arg("lnome"), py::arg("lcampos"), py::arg("lfield_id"),
          doc("makeTableSchema"));
}

void bindSqlText(py::module_& m) {
    m.def(
        "substituteParams",
        [](const std::string& sql, const BoundedArray<Variant>& params) {
            std::string filled = sql;
            return substituteParams(filled, params);
        },
        py::arg("sql"), py::arg("params"),
        "Fills the \"?\" marks of `sql` from left to right with the elements of `params` and returns the "
        "text (Python strings cannot be written back). A Null element raises 94.");
    m.def(
        "isNewRecord",
        [](const py::object& item) {
            if (!py::hasattr(item, "id")) {
                throw py::type_error(
                    "isNewRecord(item): the item has no id (pass a record or object that is stored)");
            }
            py::object id = item.attr("id");
            if (PyCallable_Check(id.ptr()) != 0) {
                id = id();  // an object's id is a property: a method without arguments
            }
            if (!py::isinstance<py::int_>(id) && !py::isinstance<py::float_>(id)) {
                throw py::type_error("isNewRecord(item): the item's id is not a number");
            }
            return id.cast<Double>() <= 0;
        },
        py::arg("item"), doc("isNewRecord"));
    m.def("innerJoin", &innerJoin, py::arg("tables"), py::arg("lastIndex") = -1, doc("innerJoin"));
    m.def("sqlDouble", &sqlDouble, py::arg("value"), doc("sqlDouble"));
    m.def("decimalSeparator", &decimalSeparator, doc("decimalSeparator"));
    m.def("sqlBoolean", &sqlBoolean, py::arg("value"), doc("sqlBoolean"));
    m.def("sqlQuote", &sqlQuote, py::arg("value"), doc("sqlQuote"));
    m.def("sqlDate", &sqlDate, py::arg("value"), doc("sqlDate"));
    m.def("nullIf", &nullIf, py::arg("condition"), py::arg("value"), doc("nullIf"));
    m.def("emptyLiteralToNull", &emptyLiteralToNull, py::arg("literal"), doc("emptyLiteralToNull"));
    m.def("zeroToNull", &zeroToNull, py::arg("value"), doc("zeroToNull"));
    m.def("nullToZero", &nullToZero, py::arg("value"), doc("nullToZero"));
    m.def("nullToEmpty", &nullToEmpty, py::arg("value"), doc("nullToEmpty"));
    m.def("isBlank", &isBlank, py::arg("text"), doc("isBlank"));
    m.def("lastIdentity", &lastIdentity, py::arg("conn"), doc("lastIdentity"));
}

}  // namespace

void bindDb(py::module_& m) {
    bindConnection(m);
    bindTableSchema(m);
    bindSqlText(m);
}

}  // namespace caudalis::python
