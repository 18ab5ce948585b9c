Attribute VB_Name = "ReferenceSheetMacros"
' The lists of the Reference Sheet: macros for its buttons, and the ways to read and write each list
' from macros of your own.
Option Explicit

' --- Planning keys ---

Public Sub VA_KeysListSortbyKey()
    On Error GoTo Failed
    RefSheet.KeysListSortbyKey
    Exit Sub
Failed:
    ShowFailure "VA_KeysListSortbyKey"
End Sub

Public Sub VA_KeysListSortbySheet()
    On Error GoTo Failed
    RefSheet.KeysListSortbySheet
    Exit Sub
Failed:
    ShowFailure "VA_KeysListSortbySheet"
End Sub

Public Sub VA_KeysListSelect()
    On Error GoTo Failed
    RefSheet.KeysListSelect
    Exit Sub
Failed:
    ShowFailure "VA_KeysListSelect"
End Sub

Public Sub VA_KeysListDeselect()
    On Error GoTo Failed
    RefSheet.KeysListDeselect
    Exit Sub
Failed:
    ShowFailure "VA_KeysListDeselect"
End Sub

Public Sub VA_KeysListClear()
    On Error GoTo Failed
    If Confirmed("planning keys") Then RefSheet.KeysListClear
    Exit Sub
Failed:
    ShowFailure "VA_KeysListClear"
End Sub

Public Sub VA_KeysListResetSortButtons()
    On Error GoTo Failed
    RefSheet.KeysListResetSortButtons
    Exit Sub
Failed:
    ShowFailure "VA_KeysListResetSortButtons"
End Sub

' Makes the list of planning keys from the selected key cells.
Public Sub VA_ListSelectedKeys()
    Dim lists As Orvanemcro1.clsRefSheet
    Dim keys() As String
    Dim sheets() As String
    Dim columns() As String
    Dim count As Integer
    Dim row As Integer
    On Error GoTo Failed
    Set lists = RefSheet
    If Not lists.KeysListIsDefined Then Exit Sub
    count = Selection.Rows.Count
    ReDim keys(1 To count)
    ReDim sheets(1 To count)
    ReDim columns(1 To count)
    For row = 1 To count
        keys(row) = CStr(Selection.Cells(row, 1).Value)
        sheets(row) = ActiveSheet.Name
        columns(row) = CStr(Selection.Column)
    Next row
    lists.KeysListClear
    lists.KeysListLoadKeysCol keys, count
    lists.KeysListLoadSheetsCol sheets, count
    lists.KeysListLoadColsCol columns, count
    lists.KeysListSortbyKey
    Exit Sub
Failed:
    ShowFailure "VA_ListSelectedKeys"
End Sub

' --- Defined names and discrepancies ---

Public Sub VA_NamesListPopulate()
    On Error GoTo Failed
    RefSheet.NamesListPopulate
    Exit Sub
Failed:
    ShowFailure "VA_NamesListPopulate"
End Sub

Public Sub VA_NamesListSortbyName()
    On Error GoTo Failed
    RefSheet.NamesListSortbyName
    Exit Sub
Failed:
    ShowFailure "VA_NamesListSortbyName"
End Sub

Public Sub VA_NamesListSortbySheet()
    On Error GoTo Failed
    RefSheet.NamesListSortbySheet
    Exit Sub
Failed:
    ShowFailure "VA_NamesListSortbySheet"
End Sub

Public Sub VA_NamesListSelect()
    Dim lists As Orvanemcro1.clsRefSheet
    On Error GoTo Failed
    Set lists = RefSheet
    If Not lists.NamesListIsDefined Then Exit Sub
    If Not lists.NamesListSelect Then MsgBox "The list of names is empty.", vbInformation, "Vantora"
    Exit Sub
Failed:
    ShowFailure "VA_NamesListSelect"
End Sub

Public Sub VA_NamesListDeselect()
    On Error GoTo Failed
    RefSheet.NamesListDeselect
    Exit Sub
Failed:
    ShowFailure "VA_NamesListDeselect"
End Sub

Public Sub VA_DiscrListSelect()
    On Error GoTo Failed
    RefSheet.DiscrListSelect
    Exit Sub
Failed:
    ShowFailure "VA_DiscrListSelect"
End Sub

Public Sub VA_DiscrListDeselect()
    On Error GoTo Failed
    RefSheet.DiscrListDeselect
    Exit Sub
Failed:
    ShowFailure "VA_DiscrListDeselect"
End Sub

Public Sub VA_DiscrListClear()
    On Error GoTo Failed
    If Confirmed("key discrepancies") Then RefSheet.DiscrListClear
    Exit Sub
Failed:
    ShowFailure "VA_DiscrListClear"
End Sub

' Replaces the discrepancies by one remark.
Public Sub VA_NoteDiscrepancy()
    Dim lists As Orvanemcro1.clsRefSheet
    Dim texts() As String
    On Error GoTo Failed
    Set lists = RefSheet
    If Not lists.DiscrListIsDefined Then Exit Sub
    ReDim texts(1 To 1)
    texts(1) = InputBox("Text of the only entry:", "Vantora")
    If texts(1) = "" Then Exit Sub
    lists.DiscrListClear
    lists.DiscrListLoadCol texts, 1
    Exit Sub
Failed:
    ShowFailure "VA_NoteDiscrepancy"
End Sub

' --- Charts ---

Public Sub VA_ChartsListSelect()
    On Error GoTo Failed
    RefSheet.ChartsListSelect
    Exit Sub
Failed:
    ShowFailure "VA_ChartsListSelect"
End Sub

Public Sub VA_ChartsListDeselect()
    On Error GoTo Failed
    RefSheet.ChartsListDeselect
    Exit Sub
Failed:
    ShowFailure "VA_ChartsListDeselect"
End Sub

Public Sub VA_ChartsListClear()
    On Error GoTo Failed
    If Confirmed("charts") Then RefSheet.ChartsListClear
    Exit Sub
Failed:
    ShowFailure "VA_ChartsListClear"
End Sub

Public Sub VA_ChartsListSort()
    On Error GoTo Failed
    RefSheet.ChartsListSort
    Exit Sub
Failed:
    ShowFailure "VA_ChartsListSort"
End Sub

' Writes the charts' list to the Immediate window.
Public Sub VA_PrintCharts()
    Dim lists As Orvanemcro1.clsRefSheet
    On Error GoTo Failed
    Set lists = RefSheet
    If Not lists.ChartsListIsDefined Then Exit Sub
    lists.ChartsListIteratorInit
    Do While lists.ChartsListIteratorIsMore
        Debug.Print lists.ChartsColumn, lists.ChartsTitle
        lists.ChartsListIteratorNext
    Loop
    Exit Sub
Failed:
    ShowFailure "VA_PrintCharts"
End Sub

' Makes the list of charts from three selected columns: dashboard column, position, title.
Public Sub VA_ListSelectedChartTitles()
    Dim lists As Orvanemcro1.clsRefSheet
    Dim columns() As String
    Dim positions() As String
    Dim titles() As String
    Dim count As Integer
    Dim row As Integer
    On Error GoTo Failed
    Set lists = RefSheet
    count = Selection.Rows.Count
    ReDim columns(1 To count)
    ReDim positions(1 To count)
    ReDim titles(1 To count)
    For row = 1 To count
        columns(row) = Format(Selection.Cells(row, 1).Value, "00")
        positions(row) = Format(Selection.Cells(row, 2).Value, "0000")
        titles(row) = Trim(CStr(Selection.Cells(row, 3).Value))
    Next row
    lists.ChartsListClear
    lists.ChartsListKeysListLoadColsCol columns, count
    lists.ChartsListLoadPosCol positions, count
    lists.ChartsListLoadTitlesCol titles, count
    lists.ChartsListSort
    Exit Sub
Failed:
    ShowFailure "VA_ListSelectedChartTitles"
End Sub

' --- Configurations ---

' Gives a configuration a new name, or takes it from the list with an empty one.
Public Sub VA_RenameConfiguration()
    Dim lists As Orvanemcro1.clsRefSheet
    Dim names() As String
    Dim number As Integer
    On Error GoTo Failed
    Set lists = RefSheet
    If Not lists.ConfigsListIsDefined Then Exit Sub
    ReDim names(1 To 9)
    lists.ConfigsListGet names
    number = CInt(Val(InputBox("Number of one of the " & lists.cCount & " configurations:", "Vantora")))
    If number < 1 Or number > 9 Then Exit Sub
    names(number) = Trim(InputBox("Its name:", "Vantora", names(number)))
    lists.ConfigsListPut names
    MenuManagement.CreateDashboardMenuBar
    Exit Sub
Failed:
    ShowFailure "VA_RenameConfiguration"
End Sub

Public Sub VA_PrintConfigurations()
    Dim lists As Orvanemcro1.clsRefSheet
    On Error GoTo Failed
    Set lists = RefSheet
    lists.ConfigsListIteratorInit
    Do While lists.ConfigsListIteratorIsMore
        Debug.Print lists.ConfigsNum, lists.ConfigsName
        lists.ConfigsListIteratorNext
    Loop
    Exit Sub
Failed:
    ShowFailure "VA_PrintConfigurations"
End Sub

' --- Menu table ---

Public Sub VA_PrintMenuTable()
    Dim lists As Orvanemcro1.clsRefSheet
    On Error GoTo Failed
    Set lists = RefSheet
    If Not lists.MenusListIsDefined Then Exit Sub
    lists.MenusListIteratorInit
    Do While lists.MenusListIteratorIsMore
        Debug.Print lists.MenusListItem, lists.MenusListSubItem, lists.MenusListMacroName, _
            lists.MenusListFaceID
        lists.MenusListIteratorNext
    Loop
    Exit Sub
Failed:
    ShowFailure "VA_PrintMenuTable"
End Sub

' --- Version ---

' Writes the component's version line into cell C6.
Public Sub VA_PutDLLVersion()
    On Error GoTo Failed
    RefSheet.PutDLLVersion Globals.Version
    Exit Sub
Failed:
    ShowFailure "VA_PutDLLVersion"
End Sub

Private Function Confirmed(ByVal listName As String) As Boolean
    Confirmed = MsgBox("Clear the list of " & listName & "?", vbOKCancel + vbQuestion, "Vantora") = vbOK
End Function
