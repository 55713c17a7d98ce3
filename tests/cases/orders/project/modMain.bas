Attribute VB_Name = "modMain"
' 受注処理の入口
Option Explicit

Private Const LIMIT As Long = 10
Public gOrder As Order

' 概要：一日分の受注を処理する
Public Sub RunDaily()
    Dim i As Long
    On Error GoTo Failed
    Set gOrder = New Order
    For i = 1 To LIMIT
        If Not gOrder.IsEmpty Then
            gOrder.Post i
        End If
    Next i
    ShowTotal
    Exit Sub
Failed:
    WriteLog "RunDaily", Err.Number
End Sub

' 説明：合計を表示する
Private Sub ShowTotal()
    MsgBox "合計: " & CStr(Total(1, 2))
End Sub

Private Function Total(ByVal a As Long, ByVal b As Long) As Long
    Total = a + b
End Function

' 使われていない
Private Sub OldReport()
    ShowTotal
End Sub
