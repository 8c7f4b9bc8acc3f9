' Lists, relationships, names, runs of values, special values and functions, and alarms from the script host.

Const So2Analyzer = 511010001
Const OperatingTime = 501030000
Const Unit = 500100000
Const ByMinutes = 1
Const ByHours = 2
Const Minutes = 1440 ' a day
Const Hours = 168 ' a week

Dim wrapper, names, name, xml, texts, codes, flags, values, read, readCodes, flagged, i, firstOfMay, spanStart, spanEnd, span, same
Dim numbers, total, lowest, highest, hoursOperated, lines
firstOfMay = DateSerial(2008, 5, 1)

Set wrapper = CreateObject("VTWrapDN.DIWrapper")
Check "the component is created by name", IsObject(wrapper)

wrapper.Params_FlushCache
CheckError "before set-up the cache cannot be emptied", 91, "Object variable or With block variable not set"
names = wrapper.Utils_GetUnitNames()
CheckError "before set-up there are no unit names", 91, "Object variable"
names = wrapper.Utils_GetEDRUnitORISCodes()
CheckError "before set-up there are no ORIS codes", 91, "Object variable"
names = wrapper.Utils_GetEDRUnitIDs()
CheckError "before set-up there are no unit ids", 91, "Object variable"
names = wrapper.Utils_GetLongMCNames()
CheckError "before set-up there are no long names of monitor codes", 91, "Object variable"
names = wrapper.Utils_GetShortMCNames()
CheckError "before set-up there are no short names of monitor codes", 91, "Object variable"
names = wrapper.Utils_GetLongPCNames()
CheckError "before set-up there are no long names of parameter codes", 91, "Object variable"
names = wrapper.Utils_GetShortPCNames()
CheckError "before set-up there are no short names of parameter codes", 91, "Object variable"
Check "before set-up lists are empty", wrapper.GetListOfCalPIDs() & wrapper.GetListOfAllRelationshipPIDs() = ""
Check "before set-up no alarm is written", wrapper.WriteStrToAlarm(firstOfMay, "none", "", 0, "", "") = False
Check "before set-up a special value is the default", wrapper.Param_GetSpecialValue_Int32(Unit, -95) = 0
Check "and nothing is a problem", wrapper.GetAndClearProblemsList() = ""

Check "set-up", wrapper.Setup(Barry) = True

Check "calibrations under part 75", wrapper.GetListOf75CalPIDs() = _
    "511010001;511010002;511110001;511110002;511210001;511210002;511410001;511410002"
Check "all calibrations", wrapper.GetListOfCalPIDs() = _
    wrapper.GetListOf75CalPIDs() & ";511510001;511510002;511610001;511610002"
Check "linearity checks", wrapper.GetListOf75LinearityPIDs() = "512010001;512010002;512110001;512110002;512210001;512210002"
Check "interference checks", wrapper.GetListOf75IntfCheckPIDs() = "511610001;511610002"
Check "a list by type can be split", UBound(Split(wrapper.GetListOfTypeXPIDs(3), ";")) = 14
Check "a type that nothing has", wrapper.GetListOfTypeXPIDs(4711) = ""
Check "quarter hours of relationships", wrapper.GetListOfRelationshipPIDs(ByMinutes, 15) = "502020200;503020200;505020200"
Check "hours of relationships", UBound(Split(wrapper.GetListOfRelationshipPIDs(ByHours, 1), ";")) = 8
Check "no such level", wrapper.GetListOfRelationshipPIDs(4, 1) = ""
Check "all relationships", UBound(Split(wrapper.GetListOfAllRelationshipPIDs(), ";")) = 23

Check "the detail of a relationship", wrapper.GetRelationshipDetailData(504030000, xml) = True
Check "is an XML document", Left(xml, 38) = "<?xml version=""1.0""?>" & vbCrLf & "<Relationship>" & "<"
Check "with both levels", InStr(xml, "PID=""504030000""") > 0 And InStr(xml, "PID=""504040200""") > 0
Check "of a parameter without one it is empty", wrapper.GetRelationshipDetailData(RatedHeatInput, xml) = True And xml = ""

names = wrapper.Utils_GetUnitNames()
Check "names can be indexed", names(5) = "Barry 5"
Check "there are 20 units", LBound(names) = 0 And UBound(names) = 19
text = ""
For Each name In names
    text = text & "," & name
Next
Check "names can be enumerated", text = ",,Barry 1,Barry 2,Barry 3,Barry 4,Barry 5" & String(14, ",")
names = wrapper.Utils_GetEDRUnitORISCodes()
Check "the ORIS code of the unit", names(5) = "3" And names(4) = ""
names = wrapper.Utils_GetEDRUnitIDs()
Check "the id of the unit", names(5) = "5" And names(4) = ""
names = wrapper.Utils_GetShortMCNames()
Check "short names of monitor codes", UBound(names) = 198 And names(102) = "Calculated" And names(18) = ""
names = wrapper.Utils_GetLongMCNames()
Check "long names of monitor codes", UBound(names) = 198 And Left(names(102), 24) = "Derived from flag 2: Cal"
names = wrapper.Utils_GetShortPCNames()
Check "short names of parameter codes", UBound(names) = 28 And names(16) = "SO2"
names = wrapper.Utils_GetLongPCNames()
Check "long names of parameter codes", UBound(names) = 28 And names(16) = "SO2 Mass Emissions Rate (lb/hr)"
wrapper.Params_FlushCache
Check "the cache is emptied", wrapper.Param_Name(So2Mass) = "SO2 mass"

' A day of minutes, all of it at once.
ReDim texts(Minutes - 1)
ReDim codes(Minutes - 1)
ReDim flags(Minutes - 1)
For i = 0 To Minutes - 1
    texts(i) = CStr(i / 4 - 100)
    If i Mod 10 = 3 Then texts(i) = ""
    If i Mod 10 = 7 Then texts(i) = "n/a"
    codes(i) = i Mod 50
    flags(i) = 3
Next
Check "a day of minutes is written", _
    wrapper.Param_WriteValues(So2Analyzer, firstOfMay, Minutes, "m", 1, Tabbed(texts), codes, flags) = True
Check "the script's arrays are as they were", UBound(codes) = Minutes - 1 And codes(49) = 49 And flags(0) = 3
CheckDay "that was written"

' The flags say what of it is written; the arrays are those that Array makes.
values = Array(61, 62, 63, 64, 65)
span = Array(0, 1, 2, 3, 9)
Check "a run under flags", wrapper.Param_WriteValues(So2Analyzer, firstOfMay, 5, "m", 1, Tabbed(Array("901", "902", "903", "904", "905")), values, span) = True
texts(1) = "902"
codes(2) = 63
texts(3) = "904"
codes(3) = 64
CheckDay "with what the flags chose"

ReDim values(Minutes - 1)
ReDim readCodes(Minutes - 1)
ReDim flagged(Minutes - 1)
Check "the day as singles", wrapper.Param_GetDataArray_Single(So2Analyzer, firstOfMay, Minutes, "m", 1, values, readCodes, flagged)
same = 0
For i = 0 To Minutes - 1
    If flagged(i) <> IsNumeric(texts(i)) And CStr(readCodes(i)) = CStr(codes(i)) Then
        If flagged(i) Then
            If values(i) = 0 Then same = same + 1
        ElseIf values(i) = CSng(texts(i)) Then
            same = same + 1
        End If
    End If
Next
Check "has the numbers", same = Minutes
Check "the day as whole numbers", wrapper.Param_GetDataArray_Integer(So2Analyzer, firstOfMay, Minutes, "m", 1, values, readCodes, flagged)
same = 0
For i = 0 To Minutes - 1
    If flagged(i) Then
        If Not IsNumeric(texts(i)) Then same = same + 1
    ElseIf values(i) = CLng(texts(i)) Then
        same = same + 1
    End If
Next
Check "has them rounded", same = Minutes

' Refusals, each with its own problem.
values = Array(1, 2)
span = Array(3, 3, 3)
Check "an unknown parameter", wrapper.Param_WriteValues(NobodysPid, firstOfMay, 2, "m", 1, "1", values, values) = False
Check "a constant", wrapper.Param_WriteValues(RatedHeatInput, firstOfMay, 2, "m", 1, "1", values, values) = False
Check "arrays of different sizes", wrapper.Param_WriteValues(So2Analyzer, firstOfMay, 2, "m", 1, "1" & vbTab & "2", values, span) = False
Check "another count", wrapper.Param_WriteValues(So2Analyzer, firstOfMay, 3, "m", 1, "1" & vbTab & "2", values, values) = False
Check "a relationship of an unknown parameter", wrapper.GetRelationshipDetailData(NobodysPid, xml) = False
lines = Split(wrapper.GetAndClearProblemsList(), vbTab)
Check "five problems", UBound(lines) = 4
CheckLine 0, "PID 5-999-3-00-00 does not exist (WDN-038)"
CheckLine 1, "5-901-0-00-00 is not a DBDataIO parameter (WDN-039)"
CheckLine 2, "Array sizes are different. Can't write values/MCs to 5-110-1-00-01 (WDN-040)"
CheckLine 3, "Count does not match array size. Can't write values/MCs to 5-110-1-00-01 (WDN-041)"
CheckLine 4, "PID 5-999-3-00-00 does not exist (WDN-044)"
CheckDay "is the same after refusals"

' Special values.
Check "a special value as a number", wrapper.Param_GetSpecialValue_Int32(Unit, -95) = 3
Check "as a boolean", wrapper.Param_GetSpecialValue_Boolean(Unit, -17) = True
Check "as a text", wrapper.Param_GetSpecialValue_String(So2Analyzer, -22) = "40CFR75"
Check "a text is no boolean", wrapper.Param_GetSpecialValue_Boolean(So2Analyzer, -22) = False
Check "a special value of an unknown parameter", wrapper.Param_GetSpecialValue_String(NobodysPid, -22) = ""

' Special functions over a week, and the same computed here.
spanStart = DateSerial(2007, 4, 5)
spanEnd = DateAdd("h", Hours, spanStart)
span = Array(spanStart, spanEnd)
ReDim values(Hours - 1)
ReDim readCodes(Hours - 1)
ReDim flagged(Hours - 1)
Check "a week of hours", wrapper.Param_GetDataArray_Single(OperatingTime, spanStart, Hours, "h", 1, values, readCodes, flagged)
hoursOperated = 0
For i = 0 To Hours - 1
    hoursOperated = hoursOperated + CDbl(values(i))
Next
Check "operating time", wrapper.Param_CallSF_CalcOpTime(So2Mass, spanStart, spanEnd) = CLng(hoursOperated) And hoursOperated > 100
CheckFunction "operating time by its number", 32, hoursOperated
Check "a week of SO2 mass", wrapper.Param_GetDataArray_Single(So2Mass, spanStart, Hours, "h", 1, values, readCodes, flagged)
numbers = 0
total = 0
lowest = 1e30
highest = -1e30
For i = 0 To Hours - 1
    If Not flagged(i) Then
        numbers = numbers + 1
        total = total + CDbl(values(i))
        If values(i) < lowest Then lowest = CDbl(values(i))
        If values(i) > highest Then highest = CDbl(values(i))
    End If
Next
Check "has some numbers and some gaps", numbers > 100 And numbers < Hours
CheckFunction "average", 102, total / numbers
CheckFunction "sum", 103, total
CheckFunction "minimum", 104, lowest
CheckFunction "maximum", 105, highest
CheckFunction "count", 106, numbers
Check "arguments in the call itself", wrapper.Param_GetSpecialFunction_Int32(So2Mass, 106, Array(spanStart, spanEnd)) = numbers
Check "a count as a boolean", wrapper.Param_GetSpecialFunction_Boolean(So2Mass, 106, span) = True
Check "a rounded single", wrapper.Param_GetSpecialFunction_Real32(So2Mass, 102, span) = CLng(total / numbers)
Check "an unknown function", wrapper.Param_GetSpecialFunction_Int32(So2Mass, 999, span) = 0
Check "a function of an unknown parameter", wrapper.Param_GetSpecialFunction_String(NobodysPid, 106, span) = ""
lines = Split(wrapper.GetAndClearProblemsList(), vbTab)
CheckLine 0, "13, Type mismatch (WDN-037)"
CheckLine 1, "PID 5-999-3-00-00 does not exist (WDN-047)"
Check "the engine's sentence is a problem", InStr(Tabbed(lines), ") 5, The engine has no special function 999. It has 6 (") > 0
Check "with its code", InStr(Tabbed(lines), ". (WDN-0053)") > 0
CheckLine UBound(lines), "PID 5-999-3-00-00 does not exist (WDN-0058)"

Check "an alarm", wrapper.WriteStrToAlarm(firstOfMay, "Written by a script", "Test", 2, "Group", "VBScript") = True
Check "a severity out of range", wrapper.WriteStrToAlarm(firstOfMay, "Not written", "Test", 5, "Group", "VBScript") = False
wrapper.Teardown
Check "teardown", True
Finish

' What Join does, which not every script host has.
Function Tabbed(fields)
    Dim i
    Tabbed = fields(0)
    For i = 1 To UBound(fields)
        Tabbed = Tabbed & vbTab & fields(i)
    Next
End Function

Sub CheckDay(what)
    Dim read, readCodes, i, same
    ReDim read(0)
    ReDim readCodes(0)
    same = 0
    If wrapper.Param_GetDataArray_String(So2Analyzer, firstOfMay, Minutes, "m", 1, read, readCodes) Then
        For i = 0 To Minutes - 1
            If read(i) = texts(i) And readCodes(i) = codes(i) Then same = same + 1
        Next
    End If
    Check "a day of minutes " & what & ", value by value and code by code", same = Minutes
End Sub

Sub CheckFunction(what, id, expected)
    Dim result
    result = CDbl(wrapper.Param_GetSpecialFunction_String(So2Mass, id, span))
    Check what & " is " & expected, Abs(result - expected) <= 0.000001 * Abs(expected)
End Sub

Sub CheckLine(i, expected)
    Check "the problem " & expected, Mid(lines(i), InStr(lines(i), ") ") + 2) = expected
End Sub
