// Lists of parameters by kind, and the relationships between averaging levels.

using System;
using System.Collections.Generic;
using System.Linq;
using System.Xml.Linq;
using VTWrapperDN;

internal static class ListTests
{
    private const string Loads = "502010100 502020200 502030201 502040203"; // minute, quarter hour, hour, day

    private static string Joined(params string[] pids) => string.Join(";", pids);

    public static void Run(string folder)
    {
        Tally.Test("the lists by kind are those of the demo site, in order", () => Demo.WithBound(wrapper =>
        {
            string part75 = Joined("511010001", "511010002", "511110001", "511110002", "511210001", "511210002", "511410001", "511410002");
            Tally.Equal(part75, wrapper.GetListOf75CalPIDs(), "calibrations under part 75");
            Tally.Equal(part75 + ";" + Joined("511510001", "511510002", "511610001", "511610002"), wrapper.GetListOfCalPIDs(), "calibrations");
            Tally.Equal(Joined("512010001", "512010002", "512110001", "512110002", "512210001", "512210002"),
                        wrapper.GetListOf75LinearityPIDs(), "linearity checks");
            Tally.Equal(Joined("511610001", "511610002"), wrapper.GetListOf75IntfCheckPIDs(), "interference checks");
            Tally.Equal("", wrapper.GetAndClearProblemsList());
        }));

        Tally.Test("a list by type holds what the site's file says, ascending", () => Demo.WithBound(wrapper =>
        {
            foreach (int type in new[] { 3, 45 })
            {
                string[] expected = Demo.Table(folder, "parameters.csv").Where(row => row[12] == type.ToString())
                                        .Select(row => Nine(row[0])).OrderBy(pid => pid, StringComparer.Ordinal).ToArray();
                Tally.True(expected.Length > 5, "the file has some");
                Tally.Equal(Joined(expected), wrapper.GetListOfTypeXPIDs(type), "type " + type);
            }
            foreach (int type in new[] { -1, 4711, int.MaxValue }) Tally.Equal("", wrapper.GetListOfTypeXPIDs(type), "type " + type);
        }));

        Tally.Test("relationships are listed by their interval", () => Demo.WithBound(wrapper =>
        {
            Tally.Equal("502010100;503010100;505010100", wrapper.GetListOfRelationshipPIDs(ParamRelationshipEnum.ParamRelationship_Minute, 1));
            Tally.Equal("502020200;503020200;505020200", wrapper.GetListOfRelationshipPIDs(ParamRelationshipEnum.ParamRelationship_Minute, 15));
            Tally.Equal("501030000;502030000;502030201;503030000;503030201;504030000;505030000;505030201;505130000",
                        wrapper.GetListOfRelationshipPIDs(ParamRelationshipEnum.ParamRelationship_Hourly, 1));
            Tally.Equal("501040200;502040200;502040203;503040200;503040203;504040200;505040200;505040203;505140200",
                        wrapper.GetListOfRelationshipPIDs(ParamRelationshipEnum.ParamRelationship_Daily, 1));
            foreach (int count in new[] { 0, 2, 60, -1 })
                Tally.Equal("", wrapper.GetListOfRelationshipPIDs(ParamRelationshipEnum.ParamRelationship_Minute, count), "count " + count);
            foreach (int level in new[] { 0, 4, -1 }) Tally.Equal("", wrapper.GetListOfRelationshipPIDs((ParamRelationshipEnum)level, 1), "level " + level);
            Tally.Equal("", wrapper.GetAndClearProblemsList());
        }));

        Tally.Test("all relationships are those of the site's file", () => Demo.WithBound(wrapper =>
        {
            IEnumerable<string> expected = Demo.Table(folder, "relationships.csv").SelectMany(row => row).Select(Nine)
                                               .Distinct().OrderBy(pid => pid, StringComparer.Ordinal);
            Tally.Equal(Joined(expected.ToArray()), wrapper.GetListOfAllRelationshipPIDs());
        }));

        Tally.Test("the detail of a relationship is an XML document that says what the parameters say", () => Demo.WithBound(wrapper =>
        {
            foreach (string pid in Loads.Split(' '))
            {
                XElement[] levels = Detail(wrapper, int.Parse(pid));
                Tally.Equal(Loads, string.Join(" ", levels.Select(level => level.Attribute("PID").Value)));
                Tally.Equal("stored average average average", string.Join(" ", levels.Select(level => level.Attribute("Computation").Value)));
                Tally.Equal("- 502010100 502010100 502030201", string.Join(" ", levels.Select(level => level.Attribute("SourcePID")?.Value ?? "-")));
            }
            foreach (string pid in wrapper.GetListOfAllRelationshipPIDs().Split(';'))
            {
                XElement[] levels = Detail(wrapper, int.Parse(pid));
                Tally.True(levels.Any(level => level.Attribute("PID").Value == pid), pid + " is not among its own levels");
                foreach (XElement level in levels)
                {
                    int of = int.Parse(level.Attribute("PID").Value);
                    Tally.Equal(wrapper.Param_Name(of), level.Attribute("Name").Value);
                    Tally.Equal(wrapper.Param_MeasUnits(of), level.Attribute("Units").Value);
                    string unit = level.Attribute("IntervalUnit").Value;
                    Tally.Equal(wrapper.Param_IntervalType(of), level.Attribute("IntervalCount").Value + (unit == "n" ? "m" : unit));
                }
            }
            Tally.Equal("", wrapper.GetAndClearProblemsList());
        }));

        Tally.Test("a parameter without a relationship has an empty detail, one that does not exist is a problem", () => Demo.WithBound(wrapper =>
        {
            string xml = "left over";
            Tally.Equal(true, wrapper.GetRelationshipDetailData(Demo.RatedHeatInput, ref xml));
            Tally.Equal("", xml ?? "");
            xml = "left over";
            Tally.Equal(false, wrapper.GetRelationshipDetailData(Demo.Unknown, ref xml));
            Tally.Equal("left over", xml);
            Tally.Lines(Demo.Problems(wrapper), "PID 5-999-3-00-00 does not exist (WDN-044)");
        }));
    }

    private static string Nine(string displayed) => displayed.Replace("-", "").PadLeft(9, '0');

    private static XElement[] Detail(_DIWrapper wrapper, int pid)
    {
        string xml = "left over";
        Tally.True(wrapper.GetRelationshipDetailData(pid, ref xml), "refused: " + pid);
        Tally.True(xml.StartsWith("<?xml version=\"1.0\"?>\r\n<"), "starts with " + xml.Substring(0, Math.Min(30, xml.Length)));
        XElement root = XDocument.Parse(xml).Root;
        Tally.Equal("Relationship", root.Name.LocalName);
        Tally.True(root.Elements().All(level => level.Name.LocalName == "Parameter"), "levels are elements named Parameter");
        return root.Elements().ToArray();
    }
}
