' Runs the installer beside this script, and makes its exit code count: 3010 and 1641 ask for a restart, 0 is a success,
' any other a failure.
Option Explicit
Dim shell, folder, command, at, code
Set shell = CreateObject("WScript.Shell")
folder = Left(WScript.ScriptFullName, InStrRev(WScript.ScriptFullName, "\"))
command = """" & folder & "sonar.exe"""
For at = 0 To WScript.Arguments.Count - 1
  command = command & " " & WScript.Arguments(at)
Next
code = shell.Run(command, 1, True)
If code = 3010 Or code = 1641 Then
  shell.RegWrite "HKLM\Software\Tarvel\Installation\Reboot", "immediate"
  code = 0
End If
WScript.Quit code
