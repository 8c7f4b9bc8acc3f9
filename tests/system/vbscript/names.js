// Names, lists, special values, an extra value and occurrences from the other language of the script host, whose own arrays are objects.

var passed = 0, failed = 0;

function check(name, test) {
    var good = false, why = "";
    try {
        good = test();
    } catch (failure) {
        why = ": error " + (failure.number & 0xFFFF) + ", " + failure.description;
    }
    if (good === true) ++passed; else ++failed;
    WScript.Echo((good === true ? "ok    " : "FAIL  ") + name + why);
}

var wrapper = new ActiveXObject("VTWrapDN.DIWrapper");
check("before set-up names are error 91", function () {
    try {
        wrapper.Utils_GetUnitNames();
    } catch (failure) {
        return (failure.number & 0xFFFF) === 91;
    }
    return false;
});
check("set-up", function () { return wrapper.Setup(1); });
check("unit names", function () {
    var names = new VBArray(wrapper.Utils_GetUnitNames());
    return names.lbound() === 0 && names.ubound() === 19 && names.getItem(5) === "Barry 5";
});
check("names of codes as an array of this language", function () {
    var names = new VBArray(wrapper.Utils_GetShortMCNames()).toArray();
    return names.length === 199 && names[102] === "Calculated" && names[18] === "";
});
check("lists", function () { return wrapper.GetListOf75IntfCheckPIDs().split(";").length === 2; });
check("relationships", function () { return wrapper.GetListOfRelationshipPIDs(1, 15) === "502020200;503020200;505020200"; });
check("a special value as a number", function () { return wrapper.Param_GetSpecialValue_Int32(500100000, -95) === 3; });
check("a special value as a boolean", function () { return wrapper.Param_GetSpecialValue_Boolean(500100000, -17) === true; });
check("a special value as a text", function () { return wrapper.Param_GetSpecialValue_String(511010001, -22) === "40CFR75"; });
check("an extra value comes back to the character", function () {
    var at = 39692, text = "<x>\u0000 \u20AC \uD83C\uDFED</x>";
    var point = wrapper.MakeBlankDataPointWrapper(at);
    point.XValueXML = text;
    var written = wrapper.UpdateLongTermDataPointXValue(point, 504030000, "1h");
    var found = new VBArray(wrapper.GetLongTermDataPoints(504030000, "1h", at, at)).getItem(0).XValueXML;
    point.XValueXML = "";
    return written && wrapper.UpdateLongTermDataPointXValue(point, 504030000, "1h") && found === text;
});
wrapper.Teardown();

check("set-up of the site with occurrences", function () { return wrapper.Setup(3); });
check("occurrences are an array of objects", function () {
    var none = new ActiveXObject("Scripting.Dictionary").Items(); // an array without elements
    var list = new ActiveXObject("Scripting.Dictionary");
    list.add(0, 8);
    var all = new VBArray(wrapper.GetOccurrences(45292, 45294, true, true, 0, false, list.Items())).toArray();
    var nothing = true; // what has no elements is no array here
    try {
        new VBArray(wrapper.GetOccurrences(45292, 45294, true, true, 0, false, none));
        nothing = false;
    } catch (failure) {
    }
    return all.length === 5 && all[4].AffectedPID === 804030000 && all[0].HasDowntime === true &&
        all[0].Downtime_Category === "failure" && nothing;
});
check("an occurrence is made, edited and retrieved", function () {
    var text = "<r>\u0000\r\n \\ \u20AC \uD83C\uDFED</r>", at = 45505;
    var made = wrapper.CreateOrRetrieveOccurrence(898030002, at);
    made.Downtime_Reason = text;
    made.Downtime_Excludable = true;
    var saved = wrapper.SaveOccurrence(made);
    var found = wrapper.CreateOrRetrieveOccurrence(898030002, at);
    return saved && found.Downtime_Reason === text && found.Downtime_Excludable === true && found.NValue === null;
});
check("what is no occurrence parameter gives no object", function () {
    return wrapper.CreateOrRetrieveOccurrence(704030000, 45505) === null &&
        wrapper.GetAndClearProblemsList().indexOf("is not an occurrence parameter (WDN-0060)") > 0;
});
wrapper.Teardown();

WScript.Echo(passed + " passed, " + failed + " failed");
if (failed > 0) WScript.Quit(1);
