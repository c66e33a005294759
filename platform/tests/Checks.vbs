' The checks of the test scripts, put before each of them by scripts/test-windows.sh: every check
' is explicit, and the script ends with "N passed, N failed" and quits with the failures.
Dim passed, failed
passed = 0
failed = 0

Sub Check(ok, what)
    If ok Then
        passed = passed + 1
    Else
        failed = failed + 1
        WScript.Echo "FAIL: " & what
    End If
End Sub

Sub Finish()
    WScript.Echo passed & " passed, " & failed & " failed"
    WScript.Quit failed
End Sub
