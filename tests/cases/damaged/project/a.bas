Attribute VB_Name = "Good"
Sub A()
End Sub
