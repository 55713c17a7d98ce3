Attribute VB_Name = "modLog"
Option Explicit
Private Declare PtrSafe Sub Sleep Lib "kernel32" (ByVal ms As Long)

Public Sub WriteLog(ByVal where As String, ByVal number As Long)
    Debug.Print where; number
End Sub
