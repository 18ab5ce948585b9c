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

For Each name In Array("clsGlobals", "clsRefSheet", "clsYearEnd")
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

On Error Resume Next

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

Set globals.App = Nothing
Check "App can be emptied", Err.Number, 0
Check "App once emptied", globals.App Is Nothing, True

WScript.Echo "All checks done."
WScript.Quit 42
