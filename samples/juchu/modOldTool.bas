Attribute VB_Name = "modOldTool"
' 旧版からの移行に使った道具（現在はどこからも使っていない）
Option Explicit

Private Const OLD_SHEET As String = "台帳"
Private Const OLD_TOP As Long = 3
Private m_lngMoved As Long

' 概要：旧台帳を読み替えて受注シートへ移す
Public Sub IkoDaicho()
    Dim ws As Worksheet
    Dim lngRow As Long

    Set ws = ThisWorkbook.Worksheets(OLD_SHEET)
    For lngRow = OLD_TOP To GetLastRow(ws, 1)
        Call IkoGyo(ws, lngRow)
    Next lngRow
    MsgBox m_lngMoved & " 行を移しました。"
End Sub

Private Sub IkoGyo(ByVal ws As Worksheet, ByVal lngRow As Long)
    Dim lngTo As Long

    If Len(OldNo(ws.Cells(lngRow, 1).Value)) = 0 Then Exit Sub
    lngTo = GetLastRow(shtJuchu, jcJuchuNo) + 1
    With shtJuchu
        .Cells(lngTo, jcJuchuNo).Value = OldNo(ws.Cells(lngRow, 1).Value)
        .Cells(lngTo, jcJuchuDate).Value = ws.Cells(lngRow, 2).Value
        .Cells(lngTo, jcTokuiCode).Value = ws.Cells(lngRow, 3).Value
    End With
    m_lngMoved = m_lngMoved + 1
End Sub

Private Function OldNo(ByVal vntValue As Variant) As String
    Rem 旧版の番号は数字だけなので頭に文字を付ける
    If NzLng(vntValue) > 0 Then OldNo = "J" & PadZero(CStr(NzLng(vntValue)), 7)
End Function
