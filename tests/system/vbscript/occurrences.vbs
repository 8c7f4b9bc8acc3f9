' Occurrences from the script host: listed with every filter, edited to the character, made, retrieved.

Const OccurrenceSite = 3 ' tests/system/occurrence_site
Const So2Rate = 704030000
Const NoxAnalyzer = 705010001
Const OtherRate = 804030000
Const So2Excess = 798030001
Const So2Downtime = 798030002

Dim wrapper, other, all, found, one, again, january, free, at, i, count, before, texts, none, noList()
january = DateSerial(2024, 1, 1)
free = DateSerial(2024, 6, 1) ' behind the site's data
texts = "<r a=""1"">" & vbCrLf & vbTab & "&amp;" & Chr(0) & "\ " & "</r>"

Set wrapper = CreateObject("VTWrapDN.DIWrapper")
all = wrapper.GetOccurrences(january, january + 2, True, True, 0, False, noList)
Check "before set-up there are no occurrences", ElementsIn(all) = 0
Set one = wrapper.CreateOrRetrieveOccurrence(So2Downtime, free)
Check "and none is made", one Is Nothing
Check "and none is saved", wrapper.SaveOccurrence(Nothing) = False
Check "and nothing is a problem", wrapper.GetAndClearProblemsList() = ""
Check "set-up", wrapper.Setup(OccurrenceSite) = True

' Lists.
all = wrapper.GetOccurrences(january, january + 2, True, True, 0, False, noList)
Check "no list is everything", ElementsIn(all) = 43
count = 0
before = 0
For Each one In all
    If one.StartDate >= before And (one.HasDowntime Or one.HasExcursion) Then count = count + 1
    before = one.StartDate
Next
Check "in order of time", count = 43
Check "an empty list is nothing", ElementsIn(wrapper.GetOccurrences(january, january + 2, True, True, 0, False, Array())) = 0
Check "a tag", CountOf(True, True, 0, Array(So2Rate)) = 8
Check "a unit", CountOf(True, True, 0, Array(8)) = 5
Check "a unit and a tag", CountOf(True, True, 0, Array("8", NoxAnalyzer)) = 35
Check "an occurrence parameter", CountOf(True, True, 0, Array(So2Excess)) = 3
Check "downtimes", CountOf(True, False, 0, Array(So2Rate)) = 6
Check "excursions", CountOf(False, True, 0, Array(So2Rate)) = 3
Check "excursions, asked for by a text", CountOf(False, "True", 0, Array(So2Rate)) = 3
Check "neither", CountOf(False, 0, 0, Array(So2Rate)) = 0
Check "without what is excludable", CountOf(True, True, 1, Array(So2Rate)) = 5
Check "nothing but what is excludable", CountOf(True, True, 2, Array(So2Rate)) = 4
Check "another filter is none", CountOf(True, True, 3, Array(So2Rate)) = 8 And CountOf(True, True, -1, Array(So2Rate)) = 8
all = wrapper.GetOccurrences(january, january + 2, True, True, 0, True, noList)
Check "by tag", all(0).AffectedPID = So2Rate And all(42).AffectedPID = OtherRate And all(8).AffectedPID = NoxAnalyzer

' One, edited.
at = DateAdd("h", 8, january)
found = wrapper.GetOccurrences(at, at, True, True, 0, False, Array(So2Rate))
Check "one", ElementsIn(found) = 1
Set one = found(0)
Check "its interval", one.AffectedPID = So2Rate And one.StartDate = at
Check "its value", one.NValue = CDbl("0.68") Or one.NValue = CDbl("0,68")
Check "its code", one.MC = 1 And InStr(one.TextValue, "680") > 0
Check "its excursion", one.HasExcursion = True And one.Excursion_PID = So2Excess And one.Excursion_Reason = "Startup"
Check "its limit", one.Excursion_Limit = "0.5 lb/mmBtu" And one.Excursion_LimitPID = 790100000
Check "its downtime", one.HasDowntime = True And one.Downtime_PID = So2Downtime And one.Downtime_Excludable = True
one.Downtime_Reason = texts
one.Downtime_Excludable = False
one.Excursion_Category = "startup & <more>"
Check "it is saved", wrapper.SaveOccurrence(one) = True
wrapper.Teardown
Set other = CreateObject("VTWrapDN.DIWrapper")
Check "set-up of another", other.Setup(OccurrenceSite) = True
found = other.GetOccurrences(at, at, True, True, 0, False, Array(So2Rate))
Check "the reason to the character", found(0).Downtime_Reason = texts And Len(texts) = 24
Check "the other edits", found(0).Downtime_Excludable = False And found(0).Excursion_Category = "startup & <more>"
Check "and the rest as it was", found(0).Downtime_Category = "maintenance" And found(0).Excursion_Reason = "Startup" And found(0).MC = 1
' The object of a wrapper that was torn down.
one.Downtime_Reason = "Filter changed"
one.Downtime_Excludable = True
one.Excursion_Category = ""
Check "an object outlives its wrapper", other.SaveOccurrence(one) = True
found = other.GetOccurrences(at, at, True, True, 0, False, Array(So2Rate))
Check "and is what it was", found(0).Downtime_Reason = "Filter changed" And found(0).Excursion_Category = ""

' Made and retrieved.
Set one = other.CreateOrRetrieveOccurrence(So2Downtime, free)
Check "one is made", one.HasDowntime = True And one.HasExcursion = False And one.StartDate = free And IsNull(one.NValue)
one.Downtime_Action = "kept"
one.Excursion_Action = "not there"
Check "a missing part cannot be set", one.Excursion_Action = "" And one.Excursion_PID = 0 And one.Excursion_Excludable = False
Check "it is saved", other.SaveOccurrence(one) = True
Set again = other.CreateOrRetrieveOccurrence(So2Downtime, free)
Check "it is retrieved", again.Downtime_Action = "kept"
Set again = other.CreateOrRetrieveOccurrence(So2Excess, free)
Check "beside it an excursion", again.HasExcursion = True And again.Excursion_Limit = "0.5 lb/mmBtu" And again.Downtime_Action = "kept"

' Refusals.
Set one = other.CreateOrRetrieveOccurrence(NobodysPid, free)
Check "an unknown parameter", one Is Nothing
Set one = other.CreateOrRetrieveOccurrence(So2Rate, free)
Check "a tag", one Is Nothing
Set one = other.CreateOrRetrieveOccurrence(So2Downtime, DateAdd("n", 30, free))
Check "a time off the hour", one Is Nothing
all = Split(other.GetAndClearProblemsList(), vbTab)
Check "the first problem", InStr(all(0), ") PID 5-999-3-00-00 does not exist (WDN-0065)") > 0
Check "the second", InStr(all(1), ") PID 7-040-3-00-00 is not an occurrence parameter (WDN-0060)") > 0
Check "the last", InStr(all(UBound(all)), ") Error in creating/retrieving occurrence data points.  5 ") > 0
i = other.SaveOccurrence(other)
CheckError "another object", 13, "mismatch"
i = other.SaveOccurrence(other.MakeBlankDataPointWrapper(free))
CheckError "a data point", 13, "mismatch"
Check "nothing", other.SaveOccurrence(Nothing) = False
all = other.GetOccurrences(january, january, True, "neither", 0, False, noList)
CheckRefusal "no boolean", "mismatch", "VTWrapDN.DIWrapper"
all = other.GetOccurrences(january, january - 1, True, True, 0, False, noList)
CheckRefusal "a span that ends before it starts", "before", "VTEngine"
all = other.GetOccurrences(january, january, True, True, 0, False, Array("unit"))
CheckError "a list with a word", 13, "mismatch"
other.Teardown
Finish

' How many elements a result has; 0 for no array.
Function ElementsIn(candidate)
    ElementsIn = 0
    On Error Resume Next
    ElementsIn = UBound(candidate) + 1
    Err.Clear
End Function

' For errors whose number is up to the script host.
Sub CheckRefusal(name, part, origin)
    Dim good
    good = (Err.Number <> 0) And (InStr(1, Err.Description, part, 1) > 0) And (Err.Source = origin)
    text = Err.Number & ", " & Err.Description & " from " & Err.Source
    Err.Clear
    Check name & " (" & text & ")", good
End Sub

Function CountOf(downtimes, excursions, filter, list)
    CountOf = ElementsIn(wrapper.GetOccurrences(january, january + 2, downtimes, excursions, filter, False, list))
End Function
