' Reads the hourly SO2 mass emissions of October 2007 from the demo site and sums them up.
' Run with the 32-bit script host: cscript //nologo read_a_month.vbs
Option Explicit

Const Dahs = 1
Const So2Mass = 504030000 ' 5-040-3-00-00, lb/hr

Dim wrapper, hours, values, codes, missing, i, pounds, measured
On Error Resume Next
Set wrapper = CreateObject("VTWrapDN.DIWrapper")
StopOnError "The component is not registered"

If Not wrapper.Setup3(Dahs, "Read a month") Then
    WScript.Echo "Not bound: " & wrapper.GetAndClearProblemsList()
    WScript.Quit 1
End If
StopOnError "Binding"

hours = 31 * 24
ReDim values(hours - 1)
ReDim codes(hours - 1)
ReDim missing(hours - 1)
If Not wrapper.Param_GetDataArray_Single(So2Mass, DateSerial(2007, 10, 1), hours, "h", 1, values, codes, missing) Then
    WScript.Echo "Not read: " & wrapper.GetAndClearProblemsList()
    wrapper.Teardown
    WScript.Quit 1
End If
StopOnError "Reading"

For i = 0 To hours - 1
    If Not missing(i) Then
        pounds = pounds + CDbl(values(i)) ' a sum of singles would lose the last digits
        measured = measured + 1
    End If
Next
WScript.Echo wrapper.Param_Name(So2Mass) & " of " & wrapper.SelectedDahs_DahsCompleteName() & ": " & measured & _
    " of " & hours & " hours have a value, " & FormatNumber(pounds, 1, True, False, False) & " lb in all"
wrapper.Teardown
StopOnError "Closing"

Sub StopOnError(what)
    If Err.Number <> 0 Then
        WScript.Echo what & ": " & Err.Number & ", " & Err.Description
        WScript.Quit 1
    End If
End Sub
