Attribute VB_Name = "VantoraSession"
' The session with the Vantora component: one object of each public class, made when it is first used
' and kept as long as the workbook's macros keep their variables.
'
' Needs a reference to "Orvanemcro1" (Tools, References). Each function below carries the name of the
' class that it gives, without "cls".
Option Explicit

Private mGlobals As Orvanemcro1.clsGlobals
Private mRefSheet As Orvanemcro1.clsRefSheet
Private mYearEnd As Orvanemcro1.clsYearEnd
Private mFreeze As Orvanemcro1.clsFreeze
Private mPlanningSpinners As Orvanemcro1.clsPlanningSpinners
Private mDisplayModes As Orvanemcro1.clsDisplayModes
Private mRatiosCompDataSet As Orvanemcro1.clsRatiosCompDataSet
Private mDevelopmentMode As Orvanemcro1.clsDevelopmentMode
Private mClearAllData As Orvanemcro1.clsClearAllData
Private mMenuManagement As Orvanemcro1.clsMenuManagement
Private mDashboard As Orvanemcro1.clsDashboard
Private mCopyWorksheet As Orvanemcro1.clsCopyWorksheet
Private mHider As Orvanemcro1.clsHider
Private mChartListControl As Orvanemcro1.clsChartListControl
Private mNameManagement As Orvanemcro1.clsNameManagement
Private mFormatting As Orvanemcro1.clsFormatting

' The session context: the running Excel and the one menu object.
Public Function Globals() As Orvanemcro1.clsGlobals
    If mGlobals Is Nothing Then
        Set mGlobals = New Orvanemcro1.clsGlobals
        Set mGlobals.App = Application
        Set mMenuManagement = New Orvanemcro1.clsMenuManagement
        mMenuManagement.Init mGlobals
        Set mGlobals.Menus = mMenuManagement
    End If
    Set Globals = mGlobals
End Function

' The menu object belongs to the session: it knows the menus that it has made.
Public Function MenuManagement() As Orvanemcro1.clsMenuManagement
    Set MenuManagement = Globals.Menus
End Function

' Bound anew for each use: it remembers where the lists stand, and they may have moved meanwhile.
Public Function RefSheet() As Orvanemcro1.clsRefSheet
    If mRefSheet Is Nothing Then Set mRefSheet = New Orvanemcro1.clsRefSheet
    mRefSheet.Init Globals
    Set RefSheet = mRefSheet
End Function

Public Function YearEnd() As Orvanemcro1.clsYearEnd
    If mYearEnd Is Nothing Then
        Set mYearEnd = New Orvanemcro1.clsYearEnd
        mYearEnd.Init Globals
    End If
    Set YearEnd = mYearEnd
End Function

Public Function Freeze() As Orvanemcro1.clsFreeze
    If mFreeze Is Nothing Then
        Set mFreeze = New Orvanemcro1.clsFreeze
        mFreeze.Init Globals
    End If
    Set Freeze = mFreeze
End Function

Public Function PlanningSpinners() As Orvanemcro1.clsPlanningSpinners
    If mPlanningSpinners Is Nothing Then
        Set mPlanningSpinners = New Orvanemcro1.clsPlanningSpinners
        mPlanningSpinners.Init Globals
    End If
    Set PlanningSpinners = mPlanningSpinners
End Function

Public Function DisplayModes() As Orvanemcro1.clsDisplayModes
    If mDisplayModes Is Nothing Then
        Set mDisplayModes = New Orvanemcro1.clsDisplayModes
        mDisplayModes.Init Globals
    End If
    Set DisplayModes = mDisplayModes
End Function

Public Function RatiosCompDataSet() As Orvanemcro1.clsRatiosCompDataSet
    If mRatiosCompDataSet Is Nothing Then
        Set mRatiosCompDataSet = New Orvanemcro1.clsRatiosCompDataSet
        mRatiosCompDataSet.Init Globals
    End If
    Set RatiosCompDataSet = mRatiosCompDataSet
End Function

Public Function DevelopmentMode() As Orvanemcro1.clsDevelopmentMode
    If mDevelopmentMode Is Nothing Then
        Set mDevelopmentMode = New Orvanemcro1.clsDevelopmentMode
        mDevelopmentMode.Init Globals
    End If
    Set DevelopmentMode = mDevelopmentMode
End Function

Public Function ClearAllData() As Orvanemcro1.clsClearAllData
    If mClearAllData Is Nothing Then
        Set mClearAllData = New Orvanemcro1.clsClearAllData
        mClearAllData.Init Globals
    End If
    Set ClearAllData = mClearAllData
End Function

' Bound anew for each use: the dashboard may have been added or replaced meanwhile.
Public Function Dashboard() As Orvanemcro1.clsDashboard
    If mDashboard Is Nothing Then Set mDashboard = New Orvanemcro1.clsDashboard
    mDashboard.Init Globals
    Set Dashboard = mDashboard
End Function

Public Function CopyWorksheet() As Orvanemcro1.clsCopyWorksheet
    If mCopyWorksheet Is Nothing Then
        Set mCopyWorksheet = New Orvanemcro1.clsCopyWorksheet
        mCopyWorksheet.Init Globals
    End If
    Set CopyWorksheet = mCopyWorksheet
End Function

Public Function Hider() As Orvanemcro1.clsHider
    If mHider Is Nothing Then
        Set mHider = New Orvanemcro1.clsHider
        mHider.Init Globals
    End If
    Set Hider = mHider
End Function

Public Function ChartListControl() As Orvanemcro1.clsChartListControl
    If mChartListControl Is Nothing Then
        Set mChartListControl = New Orvanemcro1.clsChartListControl
        mChartListControl.Init Globals
    End If
    Set ChartListControl = mChartListControl
End Function

Public Function NameManagement() As Orvanemcro1.clsNameManagement
    If mNameManagement Is Nothing Then
        Set mNameManagement = New Orvanemcro1.clsNameManagement
        mNameManagement.Init Globals
    End If
    Set NameManagement = mNameManagement
End Function

Public Function Formatting() As Orvanemcro1.clsFormatting
    If mFormatting Is Nothing Then
        Set mFormatting = New Orvanemcro1.clsFormatting
        mFormatting.Init Globals
    End If
    Set Formatting = mFormatting
End Function

' Lets go of all objects, and so of Excel. The next use begins a new session.
Public Sub EndSession()
    Set mRefSheet = Nothing
    Set mYearEnd = Nothing
    Set mFreeze = Nothing
    Set mPlanningSpinners = Nothing
    Set mDisplayModes = Nothing
    Set mRatiosCompDataSet = Nothing
    Set mDevelopmentMode = Nothing
    Set mClearAllData = Nothing
    Set mMenuManagement = Nothing
    Set mDashboard = Nothing
    Set mCopyWorksheet = Nothing
    Set mHider = Nothing
    Set mChartListControl = Nothing
    Set mNameManagement = Nothing
    Set mFormatting = Nothing
    Set mGlobals = Nothing
End Sub

' Tells the user what ended a macro, and gives back what the operation may have left switched off.
Public Sub ShowFailure(ByVal macroName As String)
    Dim description As String
    description = Err.Description & vbCrLf & vbCrLf & "Error " & Err.Number & " in " & macroName
    Application.ScreenUpdating = True
    Application.Calculation = xlCalculationAutomatic
    Application.CutCopyMode = False
    MsgBox description, vbExclamation, "Vantora"
End Sub

' Whether a sheet carries the letter in its cell A1.
Public Function HasFlag(ByVal sheet As Object, ByVal letter As String) As Boolean
    If Not TypeOf sheet Is Excel.Worksheet Then Exit Function
    If IsError(sheet.Cells(1, 1).Value) Then Exit Function
    HasFlag = InStr(1, CStr(sheet.Cells(1, 1).Value), letter, vbTextCompare) > 0
End Function

' The dashboard; Nothing when the workbook has none.
Public Function DashboardSheet() As Excel.Worksheet
    Dim sheet As Excel.Worksheet
    For Each sheet In ThisWorkbook.Worksheets
        If HasFlag(sheet, "D") Then
            Set DashboardSheet = sheet
            Exit Function
        End If
    Next sheet
End Function
