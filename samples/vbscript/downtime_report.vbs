' Reports the monitor downtimes and the excursions of 2007 from the demo site, one line for each parameter that had any.
' Run with the 32-bit script host: cscript //nologo downtime_report.vbs
Option Explicit

Const Dahs = 1

Dim wrapper, everything(), occurrences, occurrence, tag, down, excludable, over
On Error Resume Next
Set wrapper = CreateObject("VTWrapDN.DIWrapper")
StopOnError "The component is not registered"

If Not wrapper.Setup3(Dahs, "Downtime report") Then
    WScript.Echo "Not bound: " & wrapper.GetAndClearProblemsList()
    WScript.Quit 1
End If
StopOnError "Binding"

' An array without elements asks for everything; Array(5, 504030000) for a unit and a parameter.
occurrences = wrapper.GetOccurrences(DateSerial(2007, 1, 1), DateSerial(2008, 1, 1) - 1 / 86400, True, True, 0, True, everything)
StopOnError "Listing"

tag = 0
For Each occurrence In occurrences
    If occurrence.AffectedPID <> tag Then
        PrintTag
        tag = occurrence.AffectedPID
        down = 0
        excludable = 0
        over = 0
    End If
    If occurrence.HasDowntime Then down = down + 1
    If occurrence.Downtime_Excludable Then excludable = excludable + 1
    If occurrence.HasExcursion Then over = over + 1
Next
StopOnError "Summing up"
PrintTag
wrapper.Teardown
StopOnError "Closing"

Sub PrintTag()
    If tag = 0 Then Exit Sub
    WScript.Echo wrapper.Param_Name(tag) & ": " & down & " intervals of " & wrapper.Param_IntervalType(tag) & " down, " & _
        excludable & " of them excludable, " & over & " over a limit"
End Sub

Sub StopOnError(what)
    If Err.Number <> 0 Then
        WScript.Echo what & ": " & Err.Number & ", " & Err.Description
        WScript.Quit 1
    End If
End Sub
