// Holds samples/csharp/VTWrapperDN.cs against the type library inside the component: every interface, member,
// dispatch id, argument, class, enumeration and value, in order.

using System;
using System.Collections.Generic;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;
using System.Runtime.InteropServices.ComTypes;

internal static class TypeLibraryTest
{
    [DllImport("oleaut32.dll", CharSet = CharSet.Unicode, PreserveSig = false)]
    private static extern void LoadTypeLibEx(string file, int registration, out ITypeLib library);

    public static void Run(string componentPath)
    {
        Tally.Test("the C# declarations equal the type library", () =>
        {
            LoadTypeLibEx(componentPath, 2 /* do not register */, out ITypeLib library);
            List<string> expected = OfLibrary(library).ToList();
            List<string> actual = OfDeclarations().ToList();
            Tally.True(expected.Count > 30, "the type library lists only " + expected.Count + " declarations");
            foreach (string line in expected.Except(actual)) Console.WriteLine("      only in the type library: " + line);
            foreach (string line in actual.Except(expected)) Console.WriteLine("      only in the C# file: " + line);
            Tally.True(expected.SequenceEqual(actual), "they differ");
        });
    }

    private static IEnumerable<string> OfLibrary(ITypeLib library)
    {
        var lines = new SortedDictionary<string, List<string>>(StringComparer.Ordinal);
        for (int i = 0; i < library.GetTypeInfoCount(); i++)
        {
            library.GetTypeInfo(i, out ITypeInfo type);
            TYPEATTR attributes = Attributes(type);
            type.GetDocumentation(-1, out string name, out _, out _, out _);
            var members = new List<string>();
            if (attributes.typekind == TYPEKIND.TKIND_ENUM)
            {
                members.Add("enum " + name + " " + attributes.guid);
                for (int v = 0; v < attributes.cVars; v++) members.Add(Constant(type, v));
            }
            else if (attributes.typekind == TYPEKIND.TKIND_DISPATCH)
            {
                type.GetRefTypeOfImplType(-1, out int reference);
                type.GetRefTypeInfo(reference, out ITypeInfo vtable);
                members.Add("interface " + name + " " + attributes.guid);
                for (int f = 0; f < Attributes(vtable).cFuncs; f++) members.Add(Member(vtable, f));
            }
            else if (attributes.typekind == TYPEKIND.TKIND_COCLASS)
            {
                members.Add("class " + name + " " + attributes.guid);
            }
            if (members.Count > 0) lines[name] = members;
        }
        return lines.Values.SelectMany(l => l);
    }

    private static TYPEATTR Attributes(ITypeInfo type)
    {
        type.GetTypeAttr(out IntPtr pointer);
        var attributes = Marshal.PtrToStructure<TYPEATTR>(pointer);
        type.ReleaseTypeAttr(pointer);
        return attributes;
    }

    private static string Constant(ITypeInfo type, int index)
    {
        type.GetVarDesc(index, out IntPtr pointer);
        var constant = Marshal.PtrToStructure<VARDESC>(pointer);
        var names = new string[1];
        type.GetNames(constant.memid, names, 1, out _);
        object value = Marshal.GetObjectForNativeVariant(constant.desc.lpvarValue);
        type.ReleaseVarDesc(pointer);
        return string.Format("{0} = {1}", names[0], value);
    }

    private static string Member(ITypeInfo type, int index)
    {
        type.GetFuncDesc(index, out IntPtr pointer);
        var function = Marshal.PtrToStructure<FUNCDESC>(pointer);
        var names = new string[function.cParams + 1];
        type.GetNames(function.memid, names, names.Length, out _);
        string result = "void";
        var arguments = new List<string>();
        for (int i = 0; i < function.cParams; i++)
        {
            var element = Marshal.PtrToStructure<ELEMDESC>(function.lprgelemdescParam + i * Marshal.SizeOf<ELEMDESC>());
            string text = TypeText(type, element.tdesc);
            // A property's names are those of its get: the new value has none of its own.
            bool isNewValue = function.invkind == INVOKEKIND.INVOKE_PROPERTYPUT && i + 1 == function.cParams;
            string name = isNewValue ? "value" : names[i + 1];
            if ((element.desc.paramdesc.wParamFlags & PARAMFLAG.PARAMFLAG_FRETVAL) != 0)
                result = text.Substring("ref ".Length);
            else
                arguments.Add(text + " " + name);
        }
        type.ReleaseFuncDesc(pointer);
        string kind = function.invkind == INVOKEKIND.INVOKE_PROPERTYGET ? "get_"
                    : function.invkind == INVOKEKIND.INVOKE_PROPERTYPUT ? "set_"
                    : "";
        return string.Format("{0} {1} {2}({3})", function.memid, result, kind + names[0], string.Join(", ", arguments));
    }

    private static string TypeText(ITypeInfo user, TYPEDESC type)
    {
        switch ((VarEnum)type.vt)
        {
            case VarEnum.VT_PTR:
                var target = Marshal.PtrToStructure<TYPEDESC>(type.lpValue);
                return (IsInterface(user, target) ? "" : "ref ") + TypeText(user, target);
            case VarEnum.VT_SAFEARRAY: return TypeText(user, Marshal.PtrToStructure<TYPEDESC>(type.lpValue)) + "[]";
            case VarEnum.VT_USERDEFINED:
                ITypeInfo used = Used(user, type);
                TYPEATTR attributes = Attributes(used);
                if (attributes.typekind == TYPEKIND.TKIND_ALIAS) return TypeText(used, attributes.tdescAlias);
                used.GetDocumentation(-1, out string name, out _, out _, out _);
                return name;
            default: return ((VarEnum)type.vt).ToString();
        }
    }

    private static ITypeInfo Used(ITypeInfo user, TYPEDESC type)
    {
        user.GetRefTypeInfo(type.lpValue.ToInt32(), out ITypeInfo used); // a reference, not a pointer
        return used;
    }

    private static bool IsInterface(ITypeInfo user, TYPEDESC type)
    {
        if ((VarEnum)type.vt != VarEnum.VT_USERDEFINED) return false;
        TYPEKIND kind = Attributes(Used(user, type)).typekind;
        return kind == TYPEKIND.TKIND_DISPATCH || kind == TYPEKIND.TKIND_INTERFACE;
    }

    private static IEnumerable<string> OfDeclarations()
    {
        IEnumerable<Type> types = Assembly.GetExecutingAssembly().GetTypes().Where(t => t.Namespace == "VTWrapperDN");
        foreach (Type type in types.OrderBy(t => t.Name, StringComparer.Ordinal))
        {
            yield return (type.IsEnum ? "enum " : type.IsInterface ? "interface " : "class ") + type.Name + " " + type.GUID;
            if (type.IsEnum)
                foreach (FieldInfo field in type.GetFields(BindingFlags.Public | BindingFlags.Static).OrderBy(f => f.MetadataToken))
                    yield return string.Format("{0} = {1}", field.Name, Convert.ToInt32(field.GetRawConstantValue()));
            if (!type.IsInterface) continue;
            foreach (MethodInfo method in type.GetMethods().OrderBy(m => m.MetadataToken))
                yield return string.Format("{0} {1} {2}({3})", method.GetCustomAttribute<DispIdAttribute>().Value,
                                           method.ReturnType == typeof(void) ? "void" : ClrText(method.ReturnParameter),
                                           method.Name, string.Join(", ", method.GetParameters().Select(Argument)));
        }
    }

    private static string Argument(ParameterInfo parameter) => ClrText(parameter) + " " + parameter.Name;

    // What the runtime's marshaller makes of a declared parameter.
    private static string ClrText(ParameterInfo parameter)
    {
        Type type = parameter.ParameterType;
        if (type.IsByRef) return "ref " + Element(type.GetElementType(), parameter);
        return Element(type, parameter);
    }

    private static string Element(Type type, ParameterInfo parameter)
    {
        var marshal = parameter.GetCustomAttribute<MarshalAsAttribute>();
        if (type.IsArray) return ArrayElement(type.GetElementType(), marshal) + "[]";
        if (type == typeof(string)) return marshal != null && marshal.Value == UnmanagedType.BStr ? "VT_BSTR" : "no BSTR";
        if (type == typeof(int)) return "VT_I4";
        if (type == typeof(float)) return "VT_R4";
        if (type == typeof(bool)) return "VT_BOOL";
        if (type == typeof(DateTime)) return "VT_DATE";
        if (type == typeof(object)) return marshal != null && marshal.Value == UnmanagedType.Struct ? "VT_VARIANT" : "no VARIANT";
        return type.Name;
    }

    private static string ArrayElement(Type type, MarshalAsAttribute marshal)
    {
        if (marshal.Value != UnmanagedType.SafeArray) return "no safe array";
        return marshal.SafeArraySubType == VarEnum.VT_DISPATCH && type.IsInterface ? type.Name : marshal.SafeArraySubType.ToString();
    }
}
