Attribute VB_Name = "帳票印刷"
' 帳票の作成と印刷
Option Explicit

Private Const 雛形シート As String = "伝票雛形"
Private Const MEISAI_TOP As Long = 10
Private Const MEISAI_ROWS As Long = 12

' 概要：受注伝票を印刷する
' 引数：strNo 受注番号
Public Sub 伝票印刷(ByVal strNo As String)
    Dim objJuchu As clsJuchu
    Dim wsOut As Worksheet
    Dim udtInsatsu As TInsatsu

    On Error GoTo ErrHandler
    Set objJuchu = LoadJuchu(strNo)
    If objJuchu Is Nothing Then Exit Sub
    SetScreen False
    Set wsOut = 雛形複写()
    udtInsatsu.strTitle = "受注伝票 " & strNo
    udtInsatsu.lngPages = ページ数(objJuchu.Meisai.Count)
    Call 見出し作成(wsOut, objJuchu)
    Call 明細作成(wsOut, objJuchu)
    Call ページ設定(wsOut, udtInsatsu)
    wsOut.PrintOut Copies:=1
    GetLogger.WriteInfo udtInsatsu.strTitle & " 印刷"

Owari:
    If Not wsOut Is Nothing Then Application.DisplayAlerts = False: wsOut.Delete
    Application.DisplayAlerts = True
    SetScreen True
    Exit Sub

ErrHandler:
    LogError "伝票印刷"
    Call ShowError("伝票印刷")
    Resume Owari
End Sub

' 概要：雛形のシートを写して返す
Private Function 雛形複写() As Worksheet
    With ThisWorkbook
        .Worksheets(雛形シート).Copy After:=.Worksheets(.Worksheets.Count)
        Set 雛形複写 = .Worksheets(.Worksheets.Count)
    End With
End Function

' 説明：得意先と日付を見出しに書く
Private Sub 見出し作成(ByVal ws As Worksheet, ByVal objJuchu As clsJuchu)
    Dim udtTokui As TTokui

    With objJuchu
        If FindTokui(.TokuiCode, udtTokui) Then
            ws.Range("B3").Value = udtTokui.strName & " 様"
            ws.Range("B4").Value = udtTokui.strJusho
        End If
        ws.Range("F2").Value = .JuchuNo
        ws.Range("F3").Value = Format$(.JuchuDate, FMT_DATE)
        ws.Range("F30").Value = .Goukei
        ws.Range("F31").Value = .Shouhizei()
        ws.Range("F32").Value = StatusName(.Status)
    End With
End Sub

Private Sub 明細作成(ByVal ws As Worksheet, ByVal objJuchu As clsJuchu)
    Dim objItem As clsMeisai
    Dim lngRow As Long

    lngRow = MEISAI_TOP
    For Each objItem In objJuchu.Meisai
        ws.Cells(lngRow, 1).Value = objItem.GyoNo
        ws.Cells(lngRow, 2).Value = GetShohinName(objItem.ShohinCode)
        ws.Cells(lngRow, 4).Value = objItem.Suryo: ws.Cells(lngRow, 5).Value = objItem.Tanka
        ws.Cells(lngRow, 6).Value = objItem.Kingaku
        lngRow = lngRow + 1
    Next objItem
End Sub

Private Sub ページ設定(ByVal ws As Worksheet, ByRef udtInsatsu As TInsatsu)
    With ws.PageSetup
        .CenterHeader = udtInsatsu.strTitle
        .RightFooter = "&P / " & udtInsatsu.lngPages
        .Zoom = False
        .FitToPagesWide = 1
    End With
End Sub

Private Function ページ数(ByVal lngMeisai As Long) As Long
    ページ数 = (lngMeisai + MEISAI_ROWS - 1) \ MEISAI_ROWS
    If ページ数 = 0 Then ページ数 = 1
End Function

' 概要：受注一覧を印刷する
' 引数：blnPreview True ならプレビューだけ
Public Sub 受注一覧印刷(ByVal blnPreview As Boolean)
    Dim lngLast As Long

    lngLast = GetLastRow(shtJuchu, jcJuchuNo)
    If lngLast < ROW_TOP Then MsgBox "受注がありません。", vbInformation, APP_TITLE: Exit Sub
    With shtJuchu
        .RefreshTitle
        .PageSetup.PrintArea = .Range(.Cells(1, 1), .Cells(lngLast, jcBiko)).Address
        If blnPreview Then .PrintPreview Else .PrintOut
    End With
End Sub

' 概要：納品書の印刷（次の版で使う予定）
Public Sub 納品書印刷(ByVal strNo As String)
    Dim TokuiName As String

    TokuiName = NzStr(shtTokui.Cells(ROW_TOP, tcName).Value)
    Debug.Print 宛名(TokuiName), strNo
End Sub

Private Function 宛名(ByVal strName As String) As String
    宛名 = strName & "　御中"
End Function
