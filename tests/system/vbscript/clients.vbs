' The component from the script host, late bound, on the embedded engine and the demo site.

Dim wrapper, value, code, values, codes, flags, i, january, free
january = DateSerial(2007, 1, 1)
free = DateSerial(2008, 4, 1)

Set wrapper = CreateObject("VTWrapDN.DIWrapper")
Check "the component is created by name", IsObject(wrapper)
Check "before set-up a name is empty", wrapper.Param_Name(So2Mass) = ""
Check "before set-up nothing is a problem", wrapper.GetAndClearProblemsList() = ""
Check "names of members in any case", wrapper.getandclearPROBLEMSlist() = ""
Check "set-up", wrapper.Setup(Barry) = True
Check "the site", wrapper.SelectedDahs_SiteID() = "BARRY5"
Check "an id given as a text is converted", wrapper.Param_Name("504030000") = "SO2 mass"

value = Empty
code = Empty
Check "one interval through variables by reference", wrapper.Param_GetData_String(So2Mass, january, value, code)
Check "its value is a text", VarType(value) = 8 And value = CStr(CSng(5680.7))
Check "its code is a whole number", VarType(code) = 3 And code = 102

ReDim values(23)
ReDim codes(23)
ReDim flags(23)
Check "a day of singles", wrapper.Param_GetDataArray_Single(So2Mass, january, 24, "h", 1, values, codes, flags)
Check "the array of values can be indexed", VarType(values) = 8192 + 12 And CSng(values(0)) = CSng(5680.7)
Check "the array of codes can be indexed", codes(0) = 102
Check "the array of flags can be indexed", flags(0) = False
Check "arrays have as many elements as were asked for", UBound(values) = 23 And LBound(values) = 0

ReDim values(2)
ReDim codes(99)
ReDim flags(0)
Check "arrays of other sizes are replaced", wrapper.Param_GetDataArray_Single(So2Mass, january, 24, "h", 1, values, codes, flags)
Check "by arrays that fit", UBound(values) = 23 And UBound(codes) = 23 And UBound(flags) = 23

ReDim values(0)
ReDim codes(0)
Check "texts", wrapper.Param_GetDataArray_String(UnitStatus, january, 1, "h", 1, values, codes)
Check "a text as it was imported", values(0) = "operating"

Check "a write", wrapper.Param_WriteVMC_Single(So2Mass, free, 12.5, 102)
Check "a write of a text", wrapper.Param_WriteValue_String(So2Mass, free, "n/a")
Check "reads back", wrapper.Param_GetData_String(So2Mass, free, value, code)
Check "with the code that was kept", value = "n/a" And code = 102
Check "clearing", wrapper.Param_WriteVMC_Null(So2Mass, free, 0)

Check "an unknown PID is refused", wrapper.Param_WriteValue_Integer(NobodysPid, free, 1) = False
Check "a constant cannot be written", wrapper.Param_WriteValue_Integer(RatedHeatInput, free, 1) = False
text = wrapper.GetAndClearProblemsList()
values = Split(text, vbTab)
Check "two problems, separated by one tab", UBound(values) = 1
Check "the first says which PID", InStr(values(0), ") PID 5-999-3-00-00 does not exist (WDN-004)") > 0
Check "the second has no PID in front", InStr(values(1), ") 5-901-0-00-00 is not a DBDataIO parameter (WDN-005)") > 0
Check "the list is empty afterwards", wrapper.GetAndClearProblemsList() = ""

wrapper.Param_Name "no number"
CheckError "a text that is no number is a type mismatch", 13, ""
wrapper.Param_Name 1e12
CheckError "a number out of range is an overflow", 6, ""
wrapper.NoSuchMember 1
CheckError "an unknown member", 438, ""
wrapper.Param_Name 1, 2
CheckError "too many arguments", 450, ""
wrapper.Param_WriteValue_Single So2Mass, DateAdd("n", 7, free), 1
i = Err.Number
text = Err.Description
Err.Clear
Check "a write off the hour fails and says why: " & text, i <> 0 And Len(text) > 20
wrapper.Teardown
Check "teardown", True
Check "after teardown a name is empty", wrapper.Param_Name(So2Mass) = ""
Check "an unknown DAHS is refused", wrapper.Setup(4711) = False
Check "and the engine's message names it", InStr(wrapper.GetAndClearProblemsList(), "4711") > 0
wrapper.Teardown
Set wrapper = Nothing

Finish
