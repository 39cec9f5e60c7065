' Fonts that the system shows after its next start: one restart at the end is enough.
CreateObject("Scripting.FileSystemObject").OpenTextFile("C:\Harbour Restart.txt", 8, True).WriteLine "Fonts"
CreateObject("WScript.Shell").RegWrite "HKLM\Software\Tarvel\Installation\Reboot", "deferred"
