' A check before anything is installed. It would refuse the product by the values Succeeded and Abort Reason of its key.
WScript.Quit 0
