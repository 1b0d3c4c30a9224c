' A late-bound client of Fennrickfct.FnrkRoutines, as the desktop applications call it.
' Arguments: the company folder (named by its short name), the temporary folder, the invoice
' file to write. Prints "OK ..." for each check that holds and "FAIL ..." for one that does not,
' then the marker "CLIENT DONE": the script host swallows a script error and exits 0, so only
' the marker shows that the script ran to its end.
Option Explicit

Dim dossier, temporary, invoice
dossier = WScript.Arguments(0)
temporary = WScript.Arguments(1)
invoice = WScript.Arguments(2)

Sub Check(holds, what)
    If holds Then
        WScript.Echo "OK " & what
    Else
        WScript.Echo "FAIL " & what
    End If
End Sub

' The caller's own registry entries and user: plain script objects, read by name. One Public
' statement per field: Wine's VBScript does not parse a list of them in a class.
Class TableEntry
    Public Alias
    Public ActiveIndexHandle
    Public Order
End Class

Class SessionUser
    Public Name
    Public Password
    Public Rights
    Public language
End Class

Function EntryOf(alias, order)
    Dim entry
    Set entry = New TableEntry
    entry.Alias = alias
    entry.ActiveIndexHandle = 0
    entry.Order = order
    Set EntryOf = entry
End Function

Dim r, user, registry, entries, name, kept, list, status
Set r = CreateObject("Fennrickfct.FnrkRoutines")
Check IsObject(r), "CreateObject(""Fennrickfct.FnrkRoutines"")"

' The session, property by property.
r.InitializeProperty "tempath", temporary
r.InitializeProperty "TEMPPATH", "not a key: the key has one P"
r.InitializeProperty "LANGUAGE", "F"
r.TestMode = True
r.IsFiduc = False
r.InitializeDLL
Set user = New SessionUser
user.Name = "DEMO"
user.Password = ""
user.Rights = ""
user.language = "F"
Set r.USER_Class = user
Check r.init(0), "init"
Check r.TempPath = temporary, "TempPath read back"
Check r.TESTMODE, "TestMode read back in another case"
Check r.USER_Class.Name = "DEMO", "the user object's name"

r.pathName = dossier
r.socShortName = "SOC1"
status = r.FileOpenParam()
Check status = 0, "parameter table opened (" & status & ")"
Check r.socShortName = "SOC1", "socShortName"

' A company parameter by reference, with the caller's registry as an array of its own objects.
registry = Array(EntryOf("PARAM", 1))
name = ""
r.GetParamValue registry, "SOCNAME", name
Check name = "SOC1 sprl", "SOCNAME by reference: " & name

' The same through a dictionary of entries; the argument in parentheses goes by value.
Set entries = CreateObject("Scripting.Dictionary")
entries.Add "PARAM", EntryOf("PARAM", 1)
kept = "unchanged"
r.GetParamValue entries, "SOCNAME", (kept)
Check kept = "unchanged", "a by-value argument keeps its value"
Check entries.Count = 1 And IsObject(entries("PARAM")), "the caller's dictionary stays its own"

' A value list kept by the caller in a by-reference variable.
r.LSTValuesAddItem Array(), list, "first", 7
r.LSTValuesAddItem Array(), list, "second", 8
Check UBound(list) = 1, "two items in the list"
Check list(1)(0) = "second" And list(1)(1) = 8, "the second item"

' A PEPPOL BIS 3 invoice through the invoice members, as the sales module calls them.
Dim none
none = Array()
r.PEPPOLInitFormat none, "INV-0001", "14/03/2025", "13/04/2025", False, "Thank you", "EUR"
r.PEPPOLOrderReferenceFormat none, "PO-7781"
r.PEPPOLAccountingSupplierPartFormat none, "BE0477472701", name, "Rue Haute 12", "Bruxelles", "1000", "BE", "Belgique"
r.SetCustomerPEPPOLID none, "", ""
r.PEPPOLAccountingCustomerPartFormat none, "BE0812345603", "Brasserie NV", "Kerkstraat 5", "Gent", "9000", "BE", "België", "", "", "ap@brasserie.example"
r.PEPPOLPaymentMeansFormat none, "13/04/2025", "+++090/9337/55493+++", "BE68 5390 0754 7034", "GKCCBEBB"
r.UBLInitTableSubTotal none
r.UBLAddSubTotalVATInfo none, 21, 500, 105, "V21", ""
r.PEPPOLTaxTotalFormat none, 105, 0
r.PEPPOLLegalMonetaryTotalFormat none, "500.00", "500.00", "605.00", "0", "0", "0", "605.00"
r.UBLResetLineDescription none
r.UBLAddLineDescription none, "Étagère en chêne, 80 cm"
r.PEPPOLInvoiceLineFormat none, "1", "", 10, 500, 0, 0, "V21", 21, 105, "", "ART-1", 50, "Étagère"
r.UBLSavefile none, invoice
r.UBLClose none
Check CreateObject("Scripting.FileSystemObject").FileExists(invoice), "invoice written"

' Errors come with the library's number, source and description.
On Error Resume Next
r.CarsOpen none
Check Err.Number = 445, "Err.Number of a member not in this build: " & Err.Number
Check Err.Source = "Fennrickfct.FnrkRoutines", "Err.Source: " & Err.Source
Check InStr(Err.Description, "CarsOpen") > 0, "Err.Description: " & Err.Description
Err.Clear
r.TestMode = "not a flag"
Check Err.Number = 13, "Err.Number of a type mismatch: " & Err.Number
Err.Clear
r.NoSuchMember
Check Err.Number = 438, "Err.Number of an unknown member: " & Err.Number
Err.Clear
On Error GoTo 0

r.FileCloseAll
Set r = Nothing
WScript.Echo "CLIENT DONE"
