' Lists the calibrated parameters of the demo site, and writes a day of minutes to the first of them in one request.
' Run with the 32-bit script host: cscript //nologo write_a_day.vbs
Option Explicit

Const Dahs = 1
Const Minutes = 1440
Const ValueAndCode = 3 ' the flag of an interval of which both are written
Const Measured = 1
Const Missing = 9

Dim wrapper, units, pids, pid, first, i, values, codes, flags
On Error Resume Next
Set wrapper = CreateObject("VTWrapDN.DIWrapper")
StopOnError "The component is not registered"

If Not wrapper.Setup3(Dahs, "Write a day") Then
    WScript.Echo "Not bound: " & wrapper.GetAndClearProblemsList()
    WScript.Quit 1
End If
StopOnError "Binding"

units = wrapper.Utils_GetUnitNames()
pids = Split(wrapper.GetListOfCalPIDs(), ";")
StopOnError "Listing"
For Each pid In pids
    WScript.Echo pid & "  " & units(CLng(pid) \ 100000000) & ", " & wrapper.Param_Name(pid)
Next

' One text for the whole run, its values separated by tabs; an empty one is a minute without a value.
ReDim codes(Minutes - 1)
ReDim flags(Minutes - 1)
For i = 0 To Minutes - 1
    If i > 0 Then values = values & vbTab
    codes(i) = Missing
    flags(i) = ValueAndCode
    If i Mod 60 <> 59 Then
        values = values & (400 + i Mod 60)
        codes(i) = Measured
    End If
Next
first = CLng(pids(0))
If wrapper.Param_WriteValues(first, DateSerial(2008, 5, 1), Minutes, "m", 1, values, codes, flags) Then
    WScript.Echo Minutes & " minutes written to " & first
Else
    WScript.Echo "Not written: " & wrapper.GetAndClearProblemsList()
End If
StopOnError "Writing"
wrapper.Teardown
StopOnError "Closing"

Sub StopOnError(what)
    If Err.Number <> 0 Then
        WScript.Echo what & ": " & Err.Number & ", " & Err.Description
        WScript.Quit 1
    End If
End Sub
