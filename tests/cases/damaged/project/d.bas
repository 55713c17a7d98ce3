Attribute VB_Name = "Bad"
' ‚ ÿþ x
Sub C()
End Sub
