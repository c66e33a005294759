' The automation server as a script host sees it. Run by cscript after Checks.vbs and
' Classes.vbs (the class lists made from the interface description):
'   cscript //nologo server.vbs WORKFOLDER [AMD64|x86]
' WORKFOLDER holds catalogue.db and project.db.

Function Creates(progid)
    Dim o
    On Error Resume Next
    Set o = CreateObject(progid)
    Creates = (Err.Number = 0)
    If Err.Number = 0 Then Creates = IsObject(o)
    Err.Clear
End Function

Function CreateError(progid)
    Dim o
    On Error Resume Next
    Set o = CreateObject(progid)
    CreateError = Err.Number
    Err.Clear
End Function

Dim folder, catalogue, project, number
folder = WScript.Arguments(0)
catalogue = "Provider=SQLite;Data Source=" & folder & "\catalogue.db"
project = "Provider=SQLite;Data Source=" & folder & "\project.db"

' The server of the expected architecture answers (second argument: AMD64 or x86).
If WScript.Arguments.Count > 1 Then
    Check CreateObject("WScript.Shell").Environment("PROCESS")("PROCESSOR_ARCHITECTURE") = WScript.Arguments(1), _
        "the script host runs as " & WScript.Arguments(1)
End If

' Instancing: every creatable class by its program identifier, none of the library-only ones.
Dim name
For Each name In Split(CreatableClasses)
    Check Creates("Caudalis." & name), "CreateObject(""Caudalis." & name & """)"
Next
For Each name In Split(LibraryOnlyClasses)
    Check CreateError("Caudalis." & name) = 429, "Caudalis." & name & " cannot be created by name"
Next

' The Statics edge cases.
Dim S, S2
Set S = CreateObject("Caudalis.Statics")
Set S2 = CreateObject("Caudalis.Statics")
Check S.Tramos Is S.Tramos, "Statics.Tramos is the same object every time"
Check S.Doubles Is S.Doubles, "Statics.Doubles is the same object every time"
Check S.Tramos Is S2.Tramos, "the shared Tramos is library-wide"
Check Not (S.newCartaAspersores Is S.newCartaAspersores), "newCartaAspersores makes a new chart every time"
Check Not (S.Gun Is S.Placements) And Not (S.Placements Is S.Saidas) And Not (S.Gun Is S.Saidas), _
    "Gun, Placements and Saidas are three objects"
Check InStr(TypeName(S.Gun), "Types") > 0 And InStr(TypeName(S.Saidas), "Types") > 0, "Gun and Saidas are Types (" & TypeName(S.Gun) & ")"
Check S.Aspersores Is S.Aspersores, "one Statics keeps its Aspersores"
Check Not (S.Aspersores Is S2.Aspersores), "two Statics have two Aspersores"
Check S.CartaAspersor Is S.CartaAspersor, "one Statics keeps its CartaAspersor"

' Numbers.
Dim D
Set D = S.Doubles
Check D.isNaN(D.NaN), "Doubles.isNaN(Doubles.NaN)"
Check Not D.isNaN(1.5), "1.5 is a number"
Check D.Max(1, 2) = 2 And D.Min(1, 2) = 1, "Doubles.Max and Min"
Check D.MaxValue > 1E+308, "Doubles.MaxValue"

' Arrays of the script's own, written back.
Dim A, values, sliced, mismatch
Set A = S.Arrays
values = Array(10, 20)
Check A.Length(values) = 2, "Arrays.Length of a two-element array"
A.Push values, 30
Check IsArray(values), "Push writes the array back"
If IsArray(values) Then
    Check UBound(values) - LBound(values) = 2 And values(UBound(values)) = 30, "Push appends 30"
    Check A.Last(values) = 30 And A.First(values) = 10, "Arrays.First and Last"
    sliced = A.Slice(values, 2, 3)
    Check IsArray(sliced), "Slice gives an array"
    If IsArray(sliced) Then Check UBound(sliced) = 2 And sliced(1) = 20, "Slice(2, 3) starts with 20"
End If
Check A.IsEmpty(Empty) And Not A.HasAny(Empty), "an unallocated array is empty"

' Arrays takes any value: one that holds no array counts as an unallocated array.
Function Outcome(operation, value)
    On Error Resume Next
    Select Case operation
        Case "Length"
            Outcome = A.Length(value)
        Case "IsEmpty"
            Outcome = A.IsEmpty(value)
        Case "HasAny"
            Outcome = A.HasAny(value)
        Case "First"
            Outcome = TypeName(A.First(value))
        Case "Last"
            Outcome = TypeName(A.Last(value))
        Case "Slice"
            Outcome = A.Slice(value, 1, 1)
    End Select
    If Err.Number <> 0 Then Outcome = "error " & Err.Number
    Err.Clear
End Function
Check Outcome("Length", "abc") = 0, "Arrays.Length(""abc"") is 0 (" & Outcome("Length", "abc") & ")"
Check Outcome("Length", 5) = 0, "Arrays.Length(5) is 0 (" & Outcome("Length", 5) & ")"
Check Outcome("Length", Null) = 0, "Arrays.Length(Null) is 0 (" & Outcome("Length", Null) & ")"
Check Outcome("IsEmpty", "abc") = True, "Arrays.IsEmpty(""abc"") is True (" & Outcome("IsEmpty", "abc") & ")"
Check Outcome("HasAny", 5) = False, "Arrays.HasAny(5) is False (" & Outcome("HasAny", 5) & ")"
Check Outcome("First", Null) = "Empty", "Arrays.First(Null) is Empty (" & Outcome("First", Null) & ")"
Check Outcome("Last", "abc") = "Empty", "Arrays.Last(""abc"") is Empty (" & Outcome("Last", "abc") & ")"
Check Outcome("Slice", "abc") = "error 13", "Arrays.Slice of a text fails with error 13 (" & Outcome("Slice", "abc") & ")"
' Length counts the elements whatever they hold, and the first dimension of a grid.
Dim grid(2, 3)
Check Outcome("Length", Array(Array(1, 2), "x", Empty)) = 3, "Arrays.Length of an array of arrays (" & Outcome("Length", Array(Array(1, 2), "x", Empty)) & ")"
Check Outcome("Length", grid) = 3 And Outcome("HasAny", grid) = True, "Arrays.Length of a grid counts its first dimension (" & Outcome("Length", grid) & ")"
Check Outcome("IsEmpty", Array()) = True, "an array without elements is empty"
' An element that is itself an array cannot be read (13), nor a grid's (9).
Check Outcome("Last", grid) = "error 9", "Arrays.Last of a grid raises 9 (" & Outcome("Last", grid) & ")"
Check Outcome("First", Array(Array(1, 2), "x")) = "error 13", "Arrays.First of an array of arrays raises 13 (" & Outcome("First", Array(Array(1, 2), "x")) & ")"
Dim pushed
pushed = "abc"
On Error Resume Next
A.Push pushed, 7
number = Err.Number
Err.Clear
On Error GoTo 0
Check number = 0 And IsArray(pushed), "Push onto a text makes it an array (" & number & ")"
If IsArray(pushed) Then Check LBound(pushed) = 1 And UBound(pushed) = 1 And pushed(1) = 7, "Push onto a text gives (7) from 1 to 1"

' Outlet addresses.
Check S.CoordenadasSaidas Is S.CoordenadasSaidas, "CoordenadasSaidas is shared"

' A regulator made by Statics, read through its properties.
Dim R
Set R = S.newReguladorPression(2, 140, 1.2, 0.2, True)
Check R.pression = 140 And R.tramo = 2 And R.installed And R.maximum_caudal = 1.2 And R.minimum_caudal = 0.2, _
    "ReguladorPression properties"
' An Integer argument past 32767 overflows (6), a text that is no number mismatches (13).
Dim description
On Error Resume Next
Set R = S.newReguladorPression(40000, 1, 1, 1, True)
number = Err.Number
description = Err.Description
Err.Clear
Set R = S.newReguladorPression("two", 1, 1, 1, True)
mismatch = Err.Number
Err.Clear
On Error GoTo 0
Check number = 6 And description = "Overflow", "newReguladorPression(40000, ...) raises 6 Overflow (" & number & " " & description & ")"
Check mismatch = 13, "newReguladorPression(""two"", ...) raises 13 (" & mismatch & ")"

' A statement builder.
Dim T
Set T = CreateObject("Caudalis.TableSchema")
T.init "tb_test", Array("a", "b"), "id"
Check T.countSQL() = "SELECT Count(id) as result FROM tb_test", "countSQL without a condition (" & T.countSQL() & ")"
Check InStr(T.countSQL("a = 1"), " WHERE a = 1") > 0, "countSQL with a condition"
Check InStr(T.insertSQL(Array(1, 2)), "INSERT INTO tb_test") = 1, "insertSQL"
Check InStr(T.deleteSQL(5), "DELETE FROM tb_test WHERE id = 5") = 1, "deleteSQL with an id (" & T.deleteSQL(5) & ")"

' A collection of the server's, walked with For Each.
Dim C, item, total, count
Set C = CreateObject("Caudalis.Collection")
C.Add 1
C.Add 2, "two"
C.Add 3
Check C.Count = 3, "Collection.Count"
Check C.Item("two") = 2 And C(3) = 3, "Collection.Item by key and by index"
total = 0
For Each item In C
    total = total + item
Next
Check total = 6, "For Each walks the collection"
C.Remove "two"
Check C.Count = 2, "Collection.Remove by key"

' The catalogue database: a collection of sprinklers, walked with For Each.
Dim all, sprinkler
Set all = S.Aspersores.find(catalogue)
count = 0
For Each sprinkler In all
    If sprinkler.pmax > 0 And Len(sprinkler.nome) > 0 Then count = count + 1
Next
Check count = all.Count And count > 0, "For Each over the catalogue's " & all.Count & " sprinklers"
Set sprinkler = all(1)
Check sprinkler.flowWithin(sprinkler.pmax, sprinkler.calculate(sprinkler.pmax), 0.01), "Aspersor.calculate and flowWithin"
Dim best
Set best = S.Aspersores.getBestMatch(all, sprinkler.pmax, sprinkler.calculate(sprinkler.pmax), 0.05)
Check Not best Is Nothing, "getBestMatch finds a sprinkler"
Set best = S.Aspersores.getBestMatch(all, 100, 1000, 0.01)
Check best Is Nothing, "getBestMatch gives Nothing when no sprinkler fits"

' A collection of the script's own (any object with Count and Item) is read by late binding.
Class ScriptList
    Public First
    Public Function Count()
        Count = 1
    End Function
    Public Function Item(index)
        Set Item = First
    End Function
End Class
Dim list
Set list = New ScriptList
Set list.First = sprinkler
Set best = S.Aspersores.getBestMatch(list, sprinkler.pmax, sprinkler.calculate(sprinkler.pmax), 0.05)
Check Not best Is Nothing, "getBestMatch reads a collection of the script's own"
If Not best Is Nothing Then Check best.nome = sprinkler.nome, "the script's collection gives its sprinkler"

' Connections over SQLite: statements, transactions, record sets.
Dim con, rs
Set con = CreateObject("Caudalis.Connection")
con.Open project
con.BeginTrans
con.Execute "CREATE TABLE script_check (id INTEGER PRIMARY KEY, name TEXT)"
con.Execute "INSERT INTO script_check (name) VALUES ('kept')"
con.CommitTrans
con.BeginTrans
con.Execute "INSERT INTO script_check (name) VALUES ('dropped')"
con.RollbackTrans
Set rs = con.Execute("SELECT name FROM script_check")
count = 0
Do While Not rs.EOF
    If rs.Fields("name").Value = "kept" Then count = count + 1
    rs.MoveNext
Loop
Check count = 1, "a committed row is read back and a rolled-back one is not"
Set all = S.PipeMaterials.All(con)
Check all.Count > 0, "PipeMaterials.All on an open Caudalis.Connection"
con.Close

' A connection of the host's own, with ADO's shape (Wine has no ADO): it forwards to a
' Caudalis.Connection over SQLite, keeps the statements it was given and counts the record sets
' left open. A record set of a statement without rows is closed, and reading it fails, as ADO's.
Class HostConnection
    Public Inner
    Public Statements
    Public OpenRecordSets
    Public FailWith
    Private Sub Class_Initialize()
        Set Inner = CreateObject("Caudalis.Connection")
        Statements = ""
        OpenRecordSets = 0
        FailWith = 0
    End Sub
    Public Function Execute(sql)
        Dim records, code
        Statements = Statements & sql & vbLf
        If FailWith <> 0 Then
            code = FailWith
            FailWith = 0
            Err.Raise code, "HostDatabase", "The host's database refused the statement."
        End If
        Set records = New HostRecordSet
        records.Init Me, Inner.Execute(sql), UCase(Left(LTrim(sql), 6)) = "SELECT"
        If records.State = 1 Then OpenRecordSets = OpenRecordSets + 1
        Set Execute = records
    End Function
    Public Sub BeginTrans()
        Inner.BeginTrans
    End Sub
    Public Sub CommitTrans()
        Inner.CommitTrans
    End Sub
    Public Sub RollbackTrans()
        Inner.RollbackTrans
    End Sub
End Class

Class HostRecordSet
    Private owner
    Private rows
    Public State
    Public Sub Init(connection, result, hasRows)
        Set owner = connection
        Set rows = result
        If hasRows Then State = 1 Else State = 0
    End Sub
    Private Sub RequireOpen()
        If State = 0 Then Err.Raise 3704, "HostDatabase", "Operation is not allowed when the object is closed."
    End Sub
    Public Property Get EOF()
        RequireOpen
        EOF = rows.EOF
    End Property
    Public Sub MoveNext()
        RequireOpen
        rows.MoveNext
    End Sub
    Public Property Get Fields()
        Dim list
        RequireOpen
        Set list = New HostFields
        list.Init rows
        Set Fields = list
    End Property
    Public Sub Close()
        RequireOpen
        State = 0
        owner.OpenRecordSets = owner.OpenRecordSets - 1
    End Sub
End Class

Class HostFields
    Private rows
    Public Sub Init(result)
        Set rows = result
    End Sub
    Public Function Item(name)
        Set Item = rows.Fields(name)
    End Function
End Class

Function RowsOf(sql)
    Dim records, text
    Set records = con.Execute(sql)
    text = ""
    Do While Not records.EOF
        text = text & records.Fields("id").Value & ":" & records.Fields("name").Value & ";"
        records.MoveNext
    Loop
    RowsOf = text
End Function

' The operations that take an open connection run on the host's own.
Dim host, hostSchema, hostNames, hostError, hostDescription
con.Open project
con.Execute "CREATE TABLE host_check (id INTEGER PRIMARY KEY, name TEXT)"
con.Execute "INSERT INTO host_check (id, name) VALUES (1, 'original')"
con.Execute "INSERT INTO pivot_evaluations (name) VALUES ('Host field')"
Set host = New HostConnection
host.Inner.Open project

Set all = CreateObject("Caudalis.PipeMaterials").All(host)
Check all.Count > 0 And all.Count = CreateObject("Caudalis.PipeMaterials").All(con).Count, _
    "PipeMaterials.All on the host's connection reads every material (" & all.Count & ")"
Check InStr(host.Statements, "pipe_materials") > 0, "PipeMaterials.All queries the host's connection (" & host.Statements & ")"
host.Statements = ""
hostNames = S.PivotEvaluations.Enumerate(host)
Check IsArray(hostNames), "PivotEvaluations.Enumerate on the host's connection gives a list"
Check InStr(host.Statements, "FROM pivot_evaluations") > 0, "Enumerate queries the host's connection (" & host.Statements & ")"
Check S.PivotEvaluations.exists(host, "name = 'Host field' AND true"), "exists finds the evaluation through the host's connection"
Check InStr(host.Statements, "name = 'Host field' AND true") > 0, "the host's connection receives the statement as written (" & host.Statements & ")"
Check host.OpenRecordSets = 0, "every record set of the host's is closed after the calls (" & host.OpenRecordSets & " open)"

Set hostSchema = CreateObject("Caudalis.TableSchema")
hostSchema.init "host_check", Array("name"), "id"
hostSchema.copyData host, 1, 2
Check RowsOf("SELECT id, name FROM host_check ORDER BY id") = "1:original;2:original;", _
    "copyData through the host's connection copies the row"

' The host's transaction brackets the calls: a failure inside it is rolled back by the host.
host.BeginTrans
hostSchema.copyData host, 1, 3
On Error Resume Next
hostSchema.copyData host, 1, 2
hostError = Err.Number
Err.Clear
On Error GoTo 0
host.RollbackTrans
Check hostError = 3146, "a statement the host's engine refuses raises its error 3146 (" & hostError & ")"
Check RowsOf("SELECT id, name FROM host_check ORDER BY id") = "1:original;2:original;", _
    "rolling back the host's transaction after the failure leaves no copied row"

' Errors the host's object raises come back with its number.
host.FailWith = vbObjectError + 77
On Error Resume Next
hostSchema.copyData host, 1, 4
hostError = Err.Number
Err.Clear
On Error GoTo 0
Check hostError = vbObjectError + 77, "an error the host's connection raises comes back with its number (" & hostError & ")"

' The statement guard holds before the host's connection sees anything.
host.Statements = ""
On Error Resume Next
hostNames = S.PivotEvaluations.exists(host, "1 = 1; DELETE FROM host_check")
hostError = Err.Number
Err.Clear
On Error GoTo 0
Check hostError = 3142, "a second statement is refused with error 3142 before it runs (" & hostError & ")"
Check host.Statements = "", "the host's connection sees nothing of a refused statement (" & host.Statements & ")"
Check RowsOf("SELECT id, name FROM host_check ORDER BY id") = "1:original;2:original;", "the refused statement deleted nothing"

' An object without ADO's shape is refused naming the member it lacks.
Class NotAConnection
    Public Name
End Class
On Error Resume Next
Set all = CreateObject("Caudalis.PipeMaterials").All(New NotAConnection)
hostError = Err.Number
hostDescription = Err.Description
Err.Clear
On Error GoTo 0
Check hostError = 438 And InStr(hostDescription, "Execute") > 0, _
    "an object without Execute is refused with error 438 naming it (" & hostError & ": " & hostDescription & ")"
host.Inner.Close
con.Close

' The server has no PostgreSQL client: a string that names a server names no database file.
Set con = CreateObject("Caudalis.Connection")
On Error Resume Next
con.Open "host=localhost dbname=caudalis"
hostError = Err.Number
hostDescription = Err.Description
Err.Clear
On Error GoTo 0
Check hostError = 3146 And InStr(hostDescription, "Data Source") > 0, _
    "a PostgreSQL connection string names no database on Windows (" & hostError & ": " & hostDescription & ")"

' A library error: storing a second chart under a taken name.
Dim chart, charts, source
Set charts = S.CartaAspersor
Set chart = S.newCartaAspersores
chart.setNome "Script chart"
charts.saveAsNew project, 3, chart
Check chart.id > 0, "saveAsNew sets the chart's id"
Check charts.AnyFor(project, 3), "AnyFor finds the system's chart"
Set chart = S.newCartaAspersores
chart.setNome "Script chart"
On Error Resume Next
charts.saveAsNew project, 3, chart
number = Err.Number
source = Err.Source
Err.Clear
On Error GoTo 0
Check number = -2147220504, "a taken chart name raises vbObjectError + 1000 (" & number & ")"
Check source = "Caudalis", "the library error's source is Caudalis (" & source & ")"

' Runtime errors keep their numbers: 9 for a missing index, 13 for a text that is no address.
On Error Resume Next
item = C(7)
number = Err.Number
source = Err.Source
Err.Clear
Dim parsed
parsed = S.CoordenadasSaidas.Parse("left-right")
mismatch = Err.Number
Err.Clear
On Error GoTo 0
Check number = 9, "Collection.Item(7) raises error 9 (" & number & ")"
Check source = "Caudalis", "the runtime error's source is Caudalis (" & source & ")"
Check mismatch = 13, "parsing a text that is no outlet address raises error 13 (" & mismatch & ")"

' The record set of Caudalis.Connection, as a macro reads it.
Function Attempt(what)
    ' Runs one statement on rs/con/fld and gives the error number (0 when it succeeds).
    On Error Resume Next
    Select Case what
        Case "MoveNext"
            rs.MoveNext
        Case "MoveFirst"
            rs.MoveFirst
        Case "EOF"
            Attempt = rs.EOF
        Case "Count"
            Attempt = rs.RecordCount
        Case "Close"
            rs.Close
        Case "Fields"
            Attempt = rs.Fields.Count
        Case "missing"
            Attempt = rs.Fields("missing").Value
        Case "position"
            Attempt = rs.Fields(3).Value
        Case "name"
            Attempt = rs.Fields("name").Value
        Case "field"
            Attempt = fld.Value
        Case "con.Close"
            con.Close
        Case "con.Execute"
            Set rs = con.Execute("SELECT 1 as n")
        Case "con.BeginTrans"
            con.BeginTrans
    End Select
    Attempt = Err.Number
    Err.Clear
End Function

Dim fld, text
Set con = CreateObject("Caudalis.Connection")
con.Open project
con.Execute "CREATE TABLE rows_check (id INTEGER PRIMARY KEY, name TEXT, size REAL)"
con.Execute "INSERT INTO rows_check (id, name, size) VALUES (1, 'a', 1.5)"
con.Execute "INSERT INTO rows_check (id, name, size) VALUES (2, 'b', 2.5)"
con.Execute "INSERT INTO rows_check (id, name, size) VALUES (3, 'c', null)"
Set rs = con.Execute("SELECT id, name, size FROM rows_check ORDER BY id")
Check rs.Fields.Count = 3, "Fields.Count is the number of columns (" & rs.Fields.Count & ")"
Check rs.RecordCount = 3, "RecordCount is the number of rows (" & rs.RecordCount & ")"
Check Not rs.BOF And Not rs.EOF, "a record set with rows starts on its first row"
Check rs.Fields.Item("name").Value = "a" And rs.Fields.Item(0).Value = 1, "Fields.Item by name and by position"
Check rs.Fields("NAME").Value = "a" And rs.Fields(2).Value = 1.5 And rs("size") = 1.5, "Fields(name), Fields(position) and the default members"
Check rs.Fields(1).Name = "name", "Field.Name (" & rs.Fields(1).Name & ")"
text = ""
For Each fld In rs.Fields
    text = text & fld.Name & "=" & fld.Value & ";"
Next
Check text = "id=1;name=a;size=1.5;", "For Each walks the fields (" & text & ")"
Set fld = rs.Fields("name")
text = ""
Do While Not rs.EOF
    text = text & rs.Fields("id").Value & ":" & fld.Value & ":" & IsNull(rs.Fields("size").Value) & ";"
    rs.MoveNext
Loop
Check text = "1:a:False;2:b:False;3:c:True;", "MoveNext walks every row and a Field follows it (" & text & ")"
Check rs.EOF And Not rs.BOF, "after the last row EOF is True and BOF is not"
Check Attempt("MoveNext") = 3021, "MoveNext at EOF raises 3021"
Check Attempt("field") = 3021, "a field's value at EOF raises 3021"
rs.MoveFirst
Check Not rs.EOF And rs.Fields("id").Value = 1 And fld.Value = "a", "MoveFirst returns to the first row"
Check Attempt("missing") = 3265, "an unknown field name raises 3265"
Check Attempt("position") = 3265, "a field position past the last raises 3265"
rs.Close
Check Attempt("EOF") = 3704 And Attempt("Count") = 3704 And Attempt("Fields") = 3704, "a closed record set raises 3704"
Check Attempt("field") = 3704 And Attempt("MoveFirst") = 3704, "a field of a closed record set raises 3704"
Check Attempt("Close") = 3704, "closing a record set twice raises 3704"
Set rs = con.Execute("SELECT id FROM rows_check WHERE id > 100")
Check rs.EOF And rs.BOF And rs.RecordCount = 0, "a record set without rows is at EOF and BOF"
Check Attempt("MoveFirst") = 3021 And Attempt("name") = 3265, "MoveFirst without rows raises 3021"
Set rs = con.Execute("SELECT 1 as n, 2 as N")
Check rs.Fields.Count = 2 And rs.Fields(1).Value = 1, "columns of one name all read the first of them (" & rs.Fields(1).Value & ")"
Set rs = con.Execute("UPDATE rows_check SET name = 'd' WHERE id = 3")
Check rs.EOF And rs.BOF And rs.Fields.Count = 0, "a statement without rows gives an empty record set"
' The record set keeps its rows after its connection closes; the connection refuses everything.
Set rs = con.Execute("SELECT id, name FROM rows_check ORDER BY id DESC")
con.Close
Check rs.RecordCount = 3 And rs.Fields("name").Value = "d", "a record set stays readable after its connection closes"
Check Attempt("con.Close") = 3704, "closing a connection twice raises 3704"
Check Attempt("con.Execute") = 3704 And Attempt("con.BeginTrans") = 3704, "a closed connection raises 3704"
Check rs.Fields("name").Value = "d", "a refused Execute leaves the record set as it was"
con.Open project
Check con.Execute("SELECT count(*) as n FROM rows_check").Fields("n").Value = 3, "a closed connection opens again"
' Closing twice, reading after closing and letting go in every order, many times over.
Dim round, closedErrors
closedErrors = 0
For round = 1 To 25
    Set rs = con.Execute("SELECT id FROM rows_check")
    If round Mod 2 = 0 Then rs.Close
    con.Close
    If Attempt("con.Close") = 3704 Then closedErrors = closedErrors + 1
    If round Mod 3 = 0 Then Set con = Nothing: Set con = CreateObject("Caudalis.Connection")
    If round Mod 2 = 1 Then Set rs = Nothing
    con.Open project
Next
con.Close
Check closedErrors = 25, "every second Close raised 3704 (" & closedErrors & " of 25)"
Set con = Nothing
Set rs = Nothing
Set fld = Nothing

Finish
