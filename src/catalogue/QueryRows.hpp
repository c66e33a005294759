#pragma once

#include <string>

#include "caudalis/core/BoundedArray.hpp"
#include "caudalis/core/Collection.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/Recordset.hpp"
#include "caudalis/db/SqlText.hpp"

namespace caudalis {

// Library-internal helpers of the persistence classes (catalogue and charts) for running
// statement templates and reading rows into collections. Not installed.

/// Runs `statement` with its "?" marks filled by `params` (see `substituteParams`).
inline std::shared_ptr<Recordset> executeFilled(Connection& con, std::string statement,
                                                const BoundedArray<Variant>& params) {
    return con.Execute(substituteParams(statement, params));
}

/// A new collection (no keys) of `rowToValue(rs)` for every row of `rs` from the current one on.
template <class RowToValue>
CollectionRef collectRows(Recordset& rs, RowToValue&& rowToValue) {
    auto result = Collection::create();
    while (!rs.EOF_()) {
        result->Add(rowToValue(rs));
        rs.MoveNext();
    }
    return result;
}

/// Opens a connection from `connectionString`, collects the rows of `statement` as
/// `collectRows` does, and closes the connection.
template <class RowToValue>
CollectionRef queryRows(const std::string& connectionString, const std::string& statement,
                        RowToValue&& rowToValue) {
    Connection con(connectionString);
    con.Open();
    const auto rs = con.Execute(statement);
    auto result = collectRows(*rs, rowToValue);
    con.Close();
    return result;
}

/// Opens a connection from `connectionString`, runs `work` on it and closes it.
template <class Work>
auto onOwnConnection(const std::string& connectionString, Work&& work) {
    Connection con(connectionString);
    con.Open();
    auto result = work(con);
    con.Close();
    return result;
}

}  // namespace caudalis
