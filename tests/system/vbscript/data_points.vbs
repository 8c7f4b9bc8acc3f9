' Data points from the script host: arrays of objects, their members, extra values to the character.

Const So2Analyzer = 511010001

Dim wrapper, other, points, point, first, free, numbers, read, readCodes, flagged, i, same, xml, had
first = DateSerial(2007, 4, 5)
free = DateSerial(2008, 9, 1) ' behind the demo's data
xml = "<x a=""1"">" & vbCrLf & vbTab & "&amp; " & Chr(0) & "</x>"

Set wrapper = CreateObject("VTWrapDN.DIWrapper")
points = wrapper.GetLongTermDataPoints(So2Mass, "1h", first, first + 1)
Check "before set-up there are no points", Not IsObject(points) And Not HasElements(points)
Set point = wrapper.MakeBlankDataPointWrapper(free + 0.5)
Check "a blank one needs no set-up", point.TStamp = free + 0.5 And IsNull(point.NValue) And IsNull(point.MC)
Check "and it has no texts", point.XValueXML & point.OccDataXML = ""
Check "no value equals Null", point.IsNValueNull = False And point.IsMCNull = False
Check "before set-up nothing is written", wrapper.UpdateLongTermDataPointXValue(point, So2Mass, "1h") = False
Check "and nothing is a problem", wrapper.GetAndClearProblemsList() = ""

Check "set-up", wrapper.Setup(Barry) = True

' A day, point by point against the run.
ReDim read(0)
ReDim readCodes(0)
ReDim flagged(0)
Check "the day as a run", wrapper.Param_GetDataArray_Single(So2Mass, first, 24, "h", 1, read, readCodes, flagged)
points = wrapper.GetLongTermDataPoints(So2Mass, "1h", first, DateAdd("h", 23, first))
Check "the day as points", UBound(points) > 11
same = 0
For i = 0 To UBound(points)
    If PointEqualsRun(points(i)) Then same = same + 1
Next
Check "each has the time, the value and the code", same = UBound(points) + 1
same = 0
For Each point In points
    If point.XValueXML & point.OccDataXML = "" Then same = same + 1
Next
Check "points can be enumerated", same = UBound(points) + 1

' An extra value, read back through another wrapper.
Set point = points(UBound(points))
had = point.NValue
Check "an hour with a value", IsNumeric(had)
point.XValueXML = xml
point.NValue = 4711
Check "an extra value is written", wrapper.UpdateLongTermDataPointXValue(point, So2Mass, "1h") = True
Set other = CreateObject("VTWrapDN.DIWrapper")
Check "set-up of another", other.Setup(Barry) = True
read = other.GetLongTermDataPoints(So2Mass, "1h", point.TStamp, point.TStamp)
Check "one point", UBound(read) = 0
Check "with the extra value to the character", read(0).XValueXML = xml And Len(xml) = 23
Check "and the value that it had", read(0).NValue = had
read(0).XValueXML = ""
Check "the extra value is removed", other.UpdateLongTermDataPointXValue(read(0), So2Mass, "60m") = True
points = wrapper.GetLongTermDataPoints(So2Mass, "1h", read(0).TStamp, read(0).TStamp)
Check "for all", points(0).XValueXML = ""
other.Teardown

' Minutes.
Set point = wrapper.MakeBlankDataPointWrapper(free)
point.XValueXML = "minute"
Check "a minute is written", wrapper.UpdateShortTermDataPointXValue(point, So2Analyzer, "1m") = True
points = wrapper.GetShortTermDataPoints(So2Analyzer, "1m", free, free + 1)
Check "and read", UBound(points) = 0
Check "at its time", points(0).TStamp = free And points(0).XValueXML = "minute"
point.XValueXML = ""
Check "and removed", wrapper.UpdateShortTermDataPointXValue(point, So2Analyzer, "1m") = True
points = wrapper.GetShortTermDataPoints(So2Analyzer, "1m", free, free + 1)
Check "then there are none", Not HasElements(points)

' Values and codes.
point.NValue = "12.5"
point.MC = 7
Check "numbers are taken", CDbl(point.NValue) = CDbl("12.5") And point.MC = 7
point.NValue = "abc"
point.MC = Null
Check "anything else is not", CDbl(point.NValue) = CDbl("12.5") And point.MC = 7
point.SetNValueToNull
point.SetMCToNull
Check "both are cleared", IsNull(point.NValue) And IsNull(point.MC)

' Refusals.
points = wrapper.GetLongTermDataPoints(So2Analyzer, "1m", free, free)
CheckError "minutes of the long-term data", 5, "short-term data"
points = wrapper.GetShortTermDataPoints(So2Mass, "1h", free, free)
CheckError "hours of the short-term data", 5, "long-term data"
points = wrapper.GetLongTermDataPoints(NobodysPid, "1h", free, free)
CheckRefusal "an unknown tag", "5-999-3-00-00"
points = wrapper.GetLongTermDataPoints(So2Mass, "1h", free, free - 1)
CheckRefusal "a span that ends before it starts", "before it starts"
same = wrapper.UpdateLongTermDataPointXValue(wrapper, So2Mass, "1h")
CheckError "another object", 13, "mismatch"
Check "the engine's four are problems", UBound(Split(wrapper.GetAndClearProblemsList(), vbTab)) = 3
wrapper.Teardown
Finish

' Whether there is an array with something in it.
Function HasElements(candidate)
    HasElements = False
    On Error Resume Next
    HasElements = UBound(candidate) >= 0
    Err.Clear
End Function

' For errors whose number is up to the script host: 9 or 6 on one, the platform's own on another.
Sub CheckRefusal(name, part)
    Dim good
    good = (Err.Number <> 0) And (InStr(Err.Description, part) > 0) And (Err.Source = "VTEngine")
    Err.Clear
    Check name, good
End Sub

Function PointEqualsRun(candidate)
    Dim hour
    hour = CLng((candidate.TStamp - first) * 24)
    PointEqualsRun = False
    If candidate.MC <> readCodes(hour) Then Exit Function
    If flagged(hour) Then
        PointEqualsRun = IsNull(candidate.NValue)
    Else
        PointEqualsRun = (CSng(candidate.NValue) = read(hour))
    End If
End Function
