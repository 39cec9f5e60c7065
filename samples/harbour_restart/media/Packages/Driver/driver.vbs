' Runs the program beside this script and hands its request for a restart on.
Option Explicit
Dim shell, folder, code
Set shell = CreateObject("WScript.Shell")
folder = Left(WScript.ScriptFullName, InStrRev(WScript.ScriptFullName, "\"))
code = shell.Run("""" & folder & "driver.exe""", 1, True)
' 3010 and 1641 are how programs ask for a restart.
If code = 3010 Or code = 1641 Then
  ' The machine restarts when this script has ended, and the run goes on with the next component.
  shell.RegWrite "HKLM\Software\Tarvel\Installation\Reboot", "immediate"
  code = 0
End If
WScript.Quit code
