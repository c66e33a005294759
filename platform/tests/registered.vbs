' What a macro of one architecture needs after the other architecture's server was unregistered:
' the program identifiers create their objects, and they work. Run after Checks.vbs:
'   cscript //nologo registered.vbs AMD64|x86

Function Made(progid)
    On Error Resume Next
    Set Made = Nothing
    Set Made = CreateObject(progid)
    If Err.Number <> 0 Then WScript.Echo "CreateObject(""" & progid & """) raised " & Err.Number
    Err.Clear
End Function

Dim S, con
Check CreateObject("WScript.Shell").Environment("PROCESS")("PROCESSOR_ARCHITECTURE") = WScript.Arguments(0), _
    "the script host runs as " & WScript.Arguments(0)
Set S = Made("Caudalis.Statics")
Check Not S Is Nothing, "CreateObject(""Caudalis.Statics"")"
If Not S Is Nothing Then Check S.Doubles.Max(1, 2) = 2, "Statics answers"
Set con = Made("Caudalis.Connection")
Check Not con Is Nothing, "CreateObject(""Caudalis.Connection"")"
If Not con Is Nothing Then
    con.Open ":memory:"
    Check con.Execute("SELECT 7 as n").Fields("n").Value = 7, "Connection answers"
    con.Close
End If
Finish
