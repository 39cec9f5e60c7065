' Has regedit import the file beside this script. Regedit tells nothing of a failure, so a value is read back.
Option Explicit
Dim shell, folder, colour
Set shell = CreateObject("WScript.Shell")
folder = Left(WScript.ScriptFullName, InStrRev(WScript.ScriptFullName, "\"))
shell.Run "regedit.exe /s """ & folder & "colours.reg""", 0, True
On Error Resume Next
colour = shell.RegRead("HKLM\Software\Harbour Works\Colours\Port")
If colour <> "red" Then WScript.Quit 1
