' Has reg.exe import the file beside this script; its exit code, 1 for a failure, is this script's.
Option Explicit
Dim shell, folder
Set shell = CreateObject("WScript.Shell")
folder = Left(WScript.ScriptFullName, InStrRev(WScript.ScriptFullName, "\"))
WScript.Quit shell.Run("reg.exe import """ & folder & "settings.reg""", 0, True)
