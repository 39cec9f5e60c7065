' Reports a failure, with the reason for it.
Set shell = CreateObject("WScript.Shell")
key = "HKLM\Software\Tarvel\Installation\Products\Harbour Suite\Licence\"
shell.RegWrite key & "Process Return", "Fail"
shell.RegWrite key & "Message", "The licence has run out."
