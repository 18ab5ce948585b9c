Attribute VB_Name = "VantoraMacros"
' The macros behind menus, buttons and spin buttons: VA_ and the name of the operation that each runs.
' Give them to buttons as they are, or name them in the Reference Sheet's menu table.
Option Explicit

' --- Behind the entries that the component makes: they tell what was chosen by caption and tag ---

' A sheet's entry of the model's menu: its caption is the sheet's name.
Public Sub VA_SelSheet()
    On Error GoTo Failed
    ThisWorkbook.Worksheets(Application.CommandBars.ActionControl.Caption).Activate
    Exit Sub
Failed:
    ShowFailure "VA_SelSheet"
End Sub

' A chart's entry of the dashboard's menu: its tag is side:column, side 1 for left and 2 for right.
Public Sub VA_SelChart()
    Dim parts() As String
    Dim side As Integer
    On Error GoTo Failed
    parts = Split(Application.CommandBars.ActionControl.Tag, ":")
    side = CInt(parts(0))
    DashboardSheet.Activate
    With ActiveWindow.Panes
        ' A window that is not split shows the charts of both sides.
        If side > .Count Then side = .Count
        .Item(side).ScrollColumn = CInt(parts(1))
    End With
    Exit Sub
Failed:
    ShowFailure "VA_SelChart"
End Sub

' A configuration's entry: its tag is the number, 0 for all columns. Turning the sign has the
' dashboard activated as well.
Public Sub VA_selConfig()
    On Error GoTo Failed
    MenuManagement.SelectConfig -CInt(Application.CommandBars.ActionControl.Tag)
    Exit Sub
Failed:
    ShowFailure "VA_selConfig"
End Sub

' "Maintain configurations".
Public Sub VA_DashboardConfigure()
    On Error GoTo Failed
    Dashboard.DashboardConfigure
    Exit Sub
Failed:
    ShowFailure "VA_DashboardConfigure"
End Sub

' --- Year end ---

Public Sub VA_SaveHistoryYear()
    On Error GoTo Failed
    YearEnd.SaveHistoryYear
    Exit Sub
Failed:
    ShowFailure "VA_SaveHistoryYear"
End Sub

Public Sub VA_SaveCurrentYear()
    On Error GoTo Failed
    YearEnd.SaveCurrentYear
    Exit Sub
Failed:
    ShowFailure "VA_SaveCurrentYear"
End Sub

Public Sub VA_SaveLastYear()
    On Error GoTo Failed
    YearEnd.SaveLastYear
    Exit Sub
Failed:
    ShowFailure "VA_SaveLastYear"
End Sub

Public Sub VA_ShiftHistory()
    On Error GoTo Failed
    YearEnd.ShiftHistory
    Exit Sub
Failed:
    ShowFailure "VA_ShiftHistory"
End Sub

Public Sub VA_CopyCurrentYear()
    On Error GoTo Failed
    YearEnd.CopyCurrentYear
    Exit Sub
Failed:
    ShowFailure "VA_CopyCurrentYear"
End Sub

' --- Base case, planning, ratios, data ---

Public Sub VA_FreezeCurrentResults()
    On Error GoTo Failed
    Freeze.FreezeCurrentResults
    Exit Sub
Failed:
    ShowFailure "VA_FreezeCurrentResults"
End Sub

Public Sub VA_SetSpinnersToBase()
    On Error GoTo Failed
    Freeze.SetSpinnerstoBase
    Exit Sub
Failed:
    ShowFailure "VA_SetSpinnersToBase"
End Sub

' The macro of every spin button.
Public Sub VA_Spinner()
    On Error GoTo Failed
    PlanningSpinners.SpinnerChange
    Exit Sub
Failed:
    ShowFailure "VA_Spinner"
End Sub

Public Sub VA_RatiosCompDataSet()
    On Error GoTo Failed
    RatiosCompDataSet.RatiosCompDataSet
    Exit Sub
Failed:
    ShowFailure "VA_RatiosCompDataSet"
End Sub

Public Sub VA_ClearAllData()
    On Error GoTo Failed
    ClearAllData.ClearAllData
    Exit Sub
Failed:
    ShowFailure "VA_ClearAllData"
End Sub

' --- Development mode ---

Public Sub VA_DevelopmentMode()
    On Error GoTo Failed
    DevelopmentMode.DevelopmentMode
    Exit Sub
Failed:
    ShowFailure "VA_DevelopmentMode"
End Sub

Public Sub VA_AlignSheets()
    On Error GoTo Failed
    DevelopmentMode.AlignSheets
    Exit Sub
Failed:
    ShowFailure "VA_AlignSheets"
End Sub

Public Sub VA_CheckPlanningKeys()
    On Error GoTo Failed
    DevelopmentMode.CheckPlanningKeys
    Exit Sub
Failed:
    ShowFailure "VA_CheckPlanningKeys"
End Sub

' --- Windows ---

Public Sub VA_MultiWindowUD()
    On Error GoTo Failed
    DisplayModes.MultiWindowUD
    Exit Sub
Failed:
    ShowFailure "VA_MultiWindowUD"
End Sub

Public Sub VA_MultiWindowLR()
    On Error GoTo Failed
    DisplayModes.MultiWindowLR
    Exit Sub
Failed:
    ShowFailure "VA_MultiWindowLR"
End Sub

' Reserved: the component does nothing yet.
Public Sub VA_SetPresentationDisplay()
    On Error GoTo Failed
    DisplayModes.SetPresentationDisplay 0, 0, 0
    Exit Sub
Failed:
    ShowFailure "VA_SetPresentationDisplay"
End Sub

' --- Menus ---

' Makes the model's menu anew, after its table or a sheet's flags were changed.
Public Sub VA_CreateVAMenuBar()
    On Error GoTo Failed
    MenuManagement.RemoveVAMenuBar
    MenuManagement.CreateVAMenuBar
    Exit Sub
Failed:
    ShowFailure "VA_CreateVAMenuBar"
End Sub

Public Sub VA_RemoveVAMenuBar()
    On Error GoTo Failed
    MenuManagement.RemoveVAMenuBar
    Exit Sub
Failed:
    ShowFailure "VA_RemoveVAMenuBar"
End Sub

Public Sub VA_CreateDashboardMenuBar()
    On Error GoTo Failed
    MenuManagement.CreateDashboardMenuBar
    MenuManagement.SetDashboardMenuPanes
    Exit Sub
Failed:
    ShowFailure "VA_CreateDashboardMenuBar"
End Sub

Public Sub VA_RemoveDashboardMenuBar()
    On Error GoTo Failed
    MenuManagement.RemoveDashboardMenuBar
    Exit Sub
Failed:
    ShowFailure "VA_RemoveDashboardMenuBar"
End Sub

' After the dashboard's window was split or the split removed.
Public Sub VA_SetDashboardMenuPanes()
    On Error GoTo Failed
    MenuManagement.SetDashboardMenuPanes
    Exit Sub
Failed:
    ShowFailure "VA_SetDashboardMenuPanes"
End Sub

Public Sub VA_ExposeDashMenu()
    On Error GoTo Failed
    MenuManagement.ExposeDashMenu HasFlag(ActiveSheet, "D")
    Exit Sub
Failed:
    ShowFailure "VA_ExposeDashMenu"
End Sub

Public Sub VA_ShowAllColumns()
    On Error GoTo Failed
    MenuManagement.SelectConfig 0
    Exit Sub
Failed:
    ShowFailure "VA_ShowAllColumns"
End Sub

' --- Dashboard ---

' Lists the charts anew and offers them in the menu.
Public Sub VA_BuildChartList()
    On Error GoTo Failed
    Dashboard.BuildChartList
    MenuManagement.CreateDashboardMenuBar
    Exit Sub
Failed:
    ShowFailure "VA_BuildChartList"
End Sub

' Tells which configurations hide the column of the active cell.
Public Sub VA_ShowColumnConfig()
    Dim shown() As Boolean
    Dim hidden As String
    Dim column As Integer
    Dim number As Integer
    On Error GoTo Failed
    ReDim shown(1 To 9)
    column = ActiveCell.Column
    Dashboard.RetrieveColumnConfig column, shown
    For number = 1 To 9
        If Not shown(number) Then hidden = hidden & " " & number
    Next number
    If hidden = "" Then hidden = " none"
    MsgBox "Configurations that hide this column:" & hidden, vbInformation, "Vantora"
    Exit Sub
Failed:
    ShowFailure "VA_ShowColumnConfig"
End Sub

' Lets every configuration show the column of the active cell.
Public Sub VA_ShowColumnInAll()
    Dim shown() As Boolean
    Dim column As Integer
    Dim number As Integer
    On Error GoTo Failed
    ReDim shown(1 To 9)
    For number = 1 To 9
        shown(number) = True
    Next number
    column = ActiveCell.Column
    Dashboard.SaveColumnConfig column, shown
    Exit Sub
Failed:
    ShowFailure "VA_ShowColumnInAll"
End Sub

' --- Sheets, names, formats ---

Public Sub VA_CopyWorksheet()
    On Error GoTo Failed
    CopyWorksheet.CopyWorksheet
    Exit Sub
Failed:
    ShowFailure "VA_CopyWorksheet"
End Sub

Public Sub VA_NameDefinition()
    On Error GoTo Failed
    NameManagement.NameDefinition
    Exit Sub
Failed:
    ShowFailure "VA_NameDefinition"
End Sub

Public Sub VA_NameCleanup()
    On Error GoTo Failed
    NameManagement.NameCleanup
    Exit Sub
Failed:
    ShowFailure "VA_NameCleanup"
End Sub

' The next of the column blocks, from all years to history and current year.
Public Sub VA_SelectNextColumns()
    Dim forward As Boolean
    On Error GoTo Failed
    forward = True
    Formatting.RangeSelect forward
    Exit Sub
Failed:
    ShowFailure "VA_SelectNextColumns"
End Sub

Public Sub VA_SelectPreviousColumns()
    Dim forward As Boolean
    On Error GoTo Failed
    forward = False
    Formatting.RangeSelect forward
    Exit Sub
Failed:
    ShowFailure "VA_SelectPreviousColumns"
End Sub

' Entry 4 of the column blocks, whatever is selected.
Public Sub VA_SelectPlanningYears()
    Dim forward As Boolean
    Dim entry As Integer
    On Error GoTo Failed
    forward = True
    entry = 4
    Formatting.RangeSelect forward, entry
    Exit Sub
Failed:
    ShowFailure "VA_SelectPlanningYears"
End Sub

Public Sub VA_LeftFormat()
    On Error GoTo Failed
    Formatting.LeftFormat
    Exit Sub
Failed:
    ShowFailure "VA_LeftFormat"
End Sub

Public Sub VA_RightFormat()
    On Error GoTo Failed
    Formatting.RightFormat
    Exit Sub
Failed:
    ShowFailure "VA_RightFormat"
End Sub

Public Sub VA_PasteFormula()
    On Error GoTo Failed
    Formatting.PasteFormula
    Exit Sub
Failed:
    ShowFailure "VA_PasteFormula"
End Sub

' --- The component ---

Public Sub VA_Version()
    On Error GoTo Failed
    MsgBox Globals.Version, vbInformation, "Vantora"
    Exit Sub
Failed:
    ShowFailure "VA_Version"
End Sub

' Reserved: the class has no operations yet.
Public Sub VA_ChartListControl()
    Dim control As Orvanemcro1.clsChartListControl
    On Error GoTo Failed
    Set control = ChartListControl
    Exit Sub
Failed:
    ShowFailure "VA_ChartListControl"
End Sub
