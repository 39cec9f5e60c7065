' No printer here: fails by its exit code alone.
WScript.Quit 5
