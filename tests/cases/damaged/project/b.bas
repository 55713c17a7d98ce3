Attribute VB_Name = "GOOD"
Sub B()
End Sub
