#pragma once

#include <libpq-fe.h>

namespace caudalis {

/// PostgreSQL's client library (libpq), loaded when the first PostgreSQL connection string is
/// read rather than when the program starts, so that a program that never reaches a server does
/// not pay for libpq and the security libraries it pulls in (Kerberos, LDAP, TLS). Each member
/// is the libpq function of the same name.
struct PostgresLibrary {
    /// The file loaded: the client library's run-time name.
    static constexpr const char* fileName = "libpq.so.5";

    /// The library, loaded on the first call; raises a database engine error naming the file
    /// when it cannot be loaded, and tries again on the next call.
    static const PostgresLibrary& shared();

    /// Loads `file` and looks up every function; raises a database engine error naming `file`
    /// and what is missing when it cannot.
    static PostgresLibrary load(const char* file);

    decltype(&::PQconnectdb) PQconnectdb = nullptr;
    decltype(&::PQfinish) PQfinish = nullptr;
    decltype(&::PQstatus) PQstatus = nullptr;
    decltype(&::PQerrorMessage) PQerrorMessage = nullptr;
    decltype(&::PQsetNoticeProcessor) PQsetNoticeProcessor = nullptr;
    decltype(&::PQtransactionStatus) PQtransactionStatus = nullptr;
    decltype(&::PQdb) PQdb = nullptr;
    decltype(&::PQexec) PQexec = nullptr;
    decltype(&::PQexecParams) PQexecParams = nullptr;
    decltype(&::PQresultStatus) PQresultStatus = nullptr;
    decltype(&::PQresultErrorField) PQresultErrorField = nullptr;
    decltype(&::PQclear) PQclear = nullptr;
    decltype(&::PQntuples) PQntuples = nullptr;
    decltype(&::PQnfields) PQnfields = nullptr;
    decltype(&::PQfname) PQfname = nullptr;
    decltype(&::PQftype) PQftype = nullptr;
    decltype(&::PQgetisnull) PQgetisnull = nullptr;
    decltype(&::PQgetvalue) PQgetvalue = nullptr;
    decltype(&::PQgetlength) PQgetlength = nullptr;
    decltype(&::PQconninfoParse) PQconninfoParse = nullptr;
    decltype(&::PQconninfoFree) PQconninfoFree = nullptr;
    decltype(&::PQfreemem) PQfreemem = nullptr;
};

/// The loaded client library (`PostgresLibrary::shared`).
inline const PostgresLibrary& libpq() {
    return PostgresLibrary::shared();
}

}  // namespace caudalis
