// The automation server as a JScript host sees it: the record set of Caudalis.Connection, the
// Arrays operations on values that are no arrays, and an Integer argument that overflows.
//   cscript //nologo server.js WORKFOLDER
// WORKFOLDER holds project.db. Ends with "N passed, N failed" and quits with the failures.

var passed = 0, failed = 0;

function check(ok, what) {
    if (ok) {
        passed++;
    } else {
        failed++;
        WScript.Echo("FAIL: " + what);
    }
}

// The error number a call raises (the runtime's and the data-access numbers are the low
// word of the script engine's), 0 when it raises none.
function errorOf(call) {
    try {
        call();
        return 0;
    } catch (e) {
        return e.number & 0xFFFF;
    }
}

var project = "Provider=SQLite;Data Source=" + WScript.Arguments.Item(0) + "\\project.db";
var S = new ActiveXObject("Caudalis.Statics");

// Arrays: a value that holds no array counts as an unallocated array.
var A = new ActiveXObject("Caudalis.Arrays");
check(errorOf(function () { A.Length("abc"); }) == 0 && A.Length("abc") == 0, "Arrays.Length(\"abc\") is 0");
check(errorOf(function () { A.Length(5); }) == 0 && A.Length(5) == 0, "Arrays.Length(5) is 0");
check(errorOf(function () { A.IsEmpty("abc"); }) == 0 && A.IsEmpty("abc"), "Arrays.IsEmpty(\"abc\") is true");
check(errorOf(function () { A.First(null); }) == 0 && typeof A.First(null) == "undefined", "Arrays.First(null) is Empty");
check(errorOf(function () { A.Slice("abc", 1, 1); }) == 13, "Arrays.Slice of a text raises 13");

// An Integer argument past 32767 overflows.
var overflow = null;
try {
    S.newReguladorPression(40000, 1, 1, 1, true);
} catch (e) {
    overflow = e;
}
check(overflow != null && (overflow.number & 0xFFFF) == 6 && overflow.description == "Overflow",
      "newReguladorPression(40000, ...) raises 6 Overflow (" + (overflow ? (overflow.number & 0xFFFF) + " " + overflow.description : "nothing") + ")");

// The record set.
var con = new ActiveXObject("Caudalis.Connection");
con.Open(project);
con.Execute("CREATE TABLE script_rows (id INTEGER PRIMARY KEY, name TEXT)");
con.Execute("INSERT INTO script_rows (id, name) VALUES (1, 'one')");
con.Execute("INSERT INTO script_rows (id, name) VALUES (2, 'two')");
var rs = con.Execute("SELECT id, name FROM script_rows ORDER BY id");
check(rs.Fields.Count == 2, "Fields.Count (" + rs.Fields.Count + ")");
check(rs.RecordCount == 2, "RecordCount (" + rs.RecordCount + ")");
check(!rs.BOF && !rs.EOF, "a record set with rows starts on its first row");
check(rs.Fields.Item("name").Value == "one" && rs.Fields.Item(0).Value == 1, "Fields.Item by name and by position");
check(rs.Fields("id").Value == 1 && rs.Fields(1).Value == "one", "Fields(name) and Fields(position)");
check(rs.Fields.Item(1).Name == "name", "Field.Name");
var names = "";
for (var each = new Enumerator(rs.Fields); !each.atEnd(); each.moveNext()) {
    names += each.item().Name + ";";
}
check(names == "id;name;", "Enumerator walks the fields (" + names + ")");
var text = "";
while (!rs.EOF) {
    text += rs.Fields("id").Value + ":" + rs.Fields("name").Value + ";";
    rs.MoveNext();
}
check(text == "1:one;2:two;", "MoveNext walks every row (" + text + ")");
check(errorOf(function () { rs.MoveNext(); }) == 3021, "MoveNext at EOF raises 3021");
rs.MoveFirst();
check(rs.Fields("name").Value == "one", "MoveFirst returns to the first row");
check(errorOf(function () { rs.Fields("missing"); }) == 3265, "an unknown field raises 3265");
rs.Close();
check(errorOf(function () { return rs.EOF; }) == 3704, "a closed record set raises 3704");
check(errorOf(function () { rs.Close(); }) == 3704, "closing a record set twice raises 3704");
var empty = con.Execute("SELECT id FROM script_rows WHERE id > 9");
check(empty.EOF && empty.BOF && empty.RecordCount == 0, "a record set without rows is at EOF and BOF");
rs = con.Execute("SELECT name FROM script_rows WHERE id = 2");
con.Close();
check(rs.Fields("name").Value == "two", "a record set stays readable after its connection closes");
check(errorOf(function () { con.Close(); }) == 3704, "closing a connection twice raises 3704");
check(errorOf(function () { con.Execute("SELECT 1 as n"); }) == 3704, "a closed connection refuses Execute with 3704");
con.Open(project);
check(con.Execute("SELECT count(*) as n FROM script_rows").Fields("n").Value == 2, "a closed connection opens again");
con.Close();
check(errorOf(function () { con.Close(); }) == 3704, "and closes once more");

WScript.Echo(passed + " passed, " + failed + " failed");
WScript.Quit(failed);
