' In a second process: what members.vbs wrote.

Const So2Analyzer = 511010001
Const Minutes = 1440

Dim wrapper, values, codes, i, gaps, notes
Set wrapper = CreateObject("VTWrapDN.DIWrapper")
Check "set-up", wrapper.Setup(Barry) = True
ReDim values(0)
ReDim codes(0)
Check "the day is read", wrapper.Param_GetDataArray_String(So2Analyzer, DateSerial(2008, 5, 1), Minutes, "m", 1, values, codes)
For i = 0 To Minutes - 1
    If values(i) = "" Then gaps = gaps + 1
    If values(i) = "n/a" Then notes = notes + 1
Next
Check "with its gaps and texts", gaps = Minutes / 10 - 1 And notes = Minutes / 10
Check "with its numbers", values(0) = CStr(-100) And values(1) = "902" And values(1439) = CStr(1439 / 4 - 100)
Check "with its codes", codes(2) = 63 And codes(3) = 64 And codes(1439) = 39
wrapper.Teardown
Finish
