' What the scripts of this folder share; each of them is run behind it.
' An unhandled error would end the script silently, so every call stands before a Check.
Option Explicit
On Error Resume Next

Const Barry = 1
Const So2Mass = 504030000
Const UnitStatus = 501530100
Const RatedHeatInput = 590100000
Const NobodysPid = 599930000

Dim passed, failed, text
passed = 0
failed = 0

Sub Check(name, condition)
    Dim problem
    If Err.Number <> 0 Then problem = ": error " & Err.Number & ", " & Err.Description
    If problem = "" And condition = True Then
        passed = passed + 1
        WScript.Echo "ok    " & name
    Else
        failed = failed + 1
        WScript.Echo "FAIL  " & name & problem
    End If
    Err.Clear
End Sub

' For calls that must fail: number and a part of the description.
Sub CheckError(name, number, part)
    Dim good
    good = (Err.Number = number) And (InStr(1, Err.Description, part, 1) > 0)
    text = "got " & Err.Number & ", " & Err.Description & " from " & Err.Source
    Err.Clear
    Check name & " (" & text & ")", good
End Sub

Sub Finish()
    WScript.Echo passed & " passed, " & failed & " failed"
    If failed > 0 Then WScript.Quit 1
End Sub
