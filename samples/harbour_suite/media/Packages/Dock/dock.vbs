' Reports the outcome under the component's own key.
Set shell = CreateObject("WScript.Shell")
key = "HKLM\Software\Tarvel\Installation\Products\Harbour Suite\Dock\"
shell.RegWrite key & "Process Return", "Pass"
shell.RegWrite "HKLM\Software\Harbour Works\Dock\Berths", "12"
