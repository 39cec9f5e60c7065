' Takes the settings away again, and then the folder that this script lies in.
Option Explicit
Dim shell, folder
Set shell = CreateObject("WScript.Shell")
folder = Left(WScript.ScriptFullName, InStrRev(WScript.ScriptFullName, "\") - 1)
shell.Run "regedit.exe /s """ & folder & "\remove.reg""", 0, True
CreateObject("Scripting.FileSystemObject").DeleteFolder folder, True
