' What a workbook's macros do with the component, as a client that knows it by name alone.
Option Explicit

Sub Check(what, found, expected)
  If found = expected Then
    WScript.Echo "ok: " & what
  Else
    WScript.Echo "FAILED: " & what & ": " & found & " instead of " & expected
  End If
End Sub

Dim globals, refSheet, yearEnd, host, name, number, text

For Each name In Array("clsGlobals", "clsRefSheet", "clsYearEnd", "clsFreeze", _
    "clsPlanningSpinners", "clsDisplayModes", "clsRatiosCompDataSet", "clsDevelopmentMode", _
    "clsClearAllData", "clsMenuManagement", "clsDashboard", "clsCopyWorksheet", "clsHider", _
    "clsChartListControl", "clsNameManagement", "clsFormatting")
  ' Some hosts give the class's name, others that of its interface.
  Check "type of " & name, Replace(TypeName(CreateObject("Orvanemcro1." & name)), "_", ""), name
Next

Set globals = CreateObject("Orvanemcro1.clsGlobals")
Set refSheet = CreateObject("Orvanemcro1.clsRefSheet")
Set yearEnd = CreateObject("Orvanemcro1.clsYearEnd")

Check "App before it is set", globals.App Is Nothing, True
Check "version line", InStr(globals.Version, "DLL") > 0, True
Check "version line read again", globals.Version, globals.Version

' Nothing is bound yet, so nothing happens.
refSheet.PutDLLVersion "1"
yearEnd.SaveHistoryYear
yearEnd.SaveCurrentYear
yearEnd.SaveLastYear
yearEnd.ShiftHistory
yearEnd.CopyCurrentYear

' An object that has none of Excel's members stands in for it.
Set host = CreateObject("Scripting.Dictionary")
Set globals.App = host
Check "App is what was set", globals.App Is host, True
yearEnd.Init globals

' Arguments of every kind from a script's variables; the objects are not bound.
Dim configs, flags, direction, index, count
configs = Array("", "first", "second")
flags = Array(False, True, False)
direction = True
index = 2
count = 2
refSheet.ConfigsListGet configs
refSheet.ConfigsListPut configs
refSheet.KeysListLoadKeysCol configs, count
Check "an array passed by reference", configs(1), "first"
Check "a result of False", refSheet.KeysListIsDefined, False
Check "a result of 0", refSheet.cCount, 0
Check "a result of no text", refSheet.ConfigsName, ""
With CreateObject("Orvanemcro1.clsDashboard")
  .RetrieveColumnConfig index, flags
  .SaveColumnConfig index, flags
End With
With CreateObject("Orvanemcro1.clsFormatting")
  .RangeSelect direction
  .RangeSelect direction, index
End With
CreateObject("Orvanemcro1.clsDisplayModes").SetPresentationDisplay 1, "two", Nothing
Set globals.Menus = CreateObject("Orvanemcro1.clsMenuManagement")
Check "Menus are what was set", Replace(TypeName(globals.Menus), "_", ""), "clsMenuManagement"

On Error Resume Next

Set globals.Menus = refSheet
Check "Menus takes nothing else", Err.Number, 13
Err.Clear
refSheet.ConfigsListPut "no array"
Check "a text where an array is asked for, of an object that is not bound", Err.Number, 0
Err.Clear

refSheet.Init globals
number = Err.Number
text = Err.Description
Err.Clear
Check "number of the host's error", number, 438
Check "text of the host's error", Len(text) > 10, True

' The object is not usable after that, so nothing happens.
text = 12
refSheet.PutDLLVersion text
Check "a variable with a number as a text", Err.Number, 0
Err.Clear

refSheet.PutDLLVersion
Check "a missing argument is an error", Err.Number <> 0, True
Err.Clear

globals.Version = "2"
Check "Version is read-only", Err.Number <> 0, True
Err.Clear

yearEnd.NoSuchMember
Check "unknown member", Err.Number, 438
Err.Clear

' The other classes need nothing of Excel to be bound, and hand on the error of their first call.
Dim names, classNumber, object
names = Array("clsFreeze", "clsPlanningSpinners", "clsRatiosCompDataSet", _
    "clsDevelopmentMode", "clsMenuManagement", "clsHider", "clsFormatting")
For classNumber = 0 To 6
  name = names(classNumber)
  Set object = CreateObject("Orvanemcro1." & name)
  object.Init globals
  Check name & " is bound", Err.Number, 0
  Err.Clear
  Select Case classNumber
    Case 0: object.SetSpinnerstoBase
    Case 1: object.SpinnerChange
    Case 2: object.RatiosCompDataSet
    Case 3: object.AlignSheets
    Case 4: object.CreateVAMenuBar
    Case 5: object.AtOpen
    Case 6: object.LeftFormat
  End Select
  Check "number of the error that " & name & " hands on", Err.Number, 438
  Err.Clear
Next

Set globals.App = Nothing
Check "App can be emptied", Err.Number, 0
Check "App once emptied", globals.App Is Nothing, True

WScript.Echo "All checks done."
WScript.Quit 42
