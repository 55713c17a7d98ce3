Attribute VB_Name = "modZaiko"
' 在庫の引当
Option Explicit

Private Const ERR_ZAIKO As Long = 600
Private Const DEF_HACCHUTEN As Long = 10
Private m_strLastCode As String

' 概要：在庫の行を探す
Private Function FindRow(ByVal strCode As String) As Long
    Dim lngRow As Long

    For lngRow = ROW_TOP To GetLastRow(shtZaiko, zcCode)
        If NzStr(shtZaiko.Cells(lngRow, zcCode).Value) = strCode Then
            FindRow = lngRow
            Exit For
        End If
    Next lngRow
End Function

' 概要：有効在庫（現在庫から引当済を引いた数）
Public Function YukoZaiko(ByVal strCode As String) As Long
    Dim lngRow As Long

    lngRow = FindRow(strCode)
    If lngRow = 0 Then Exit Function
    With shtZaiko.Rows(lngRow)
        YukoZaiko = NzLng(.Cells(1, zcGenzai).Value) - NzLng(.Cells(1, zcHikiate).Value)
    End With
End Function

' 概要：受注の全明細を引き当てる
' 説明：一つでも足りなければ何も引き当てない。 _
        足りない商品はログに残す。
Public Function HikiateJuchu(ByVal objJuchu As clsJuchu) As Boolean
    Dim objItem As clsMeisai
    Dim blnTarinai As Boolean

    For Each objItem In objJuchu.Meisai
        If YukoZaiko(objItem.ShohinCode) < objItem.Suryo Then
            g_objLog.WriteWarn "在庫不足: " & objItem.ToListText
            blnTarinai = True
        End If
    Next objItem
    If blnTarinai Then Exit Function
    For Each objItem In objJuchu.Meisai
        Call AddHikiate(objItem.ShohinCode, objItem.Suryo)
    Next objItem
    HikiateJuchu = True
End Function

' 概要：引当を解く
Public Sub KaijoJuchu(ByVal objJuchu As clsJuchu)
    Dim i As Long

    For i = 1 To objJuchu.Meisai.Count
        With objJuchu.Meisai.Item(i)
            AddHikiate .ShohinCode, -.Suryo
        End With
    Next i
End Sub

' 処理内容：引当を解き、現在庫を減らす
Public Sub ShukkaZaiko(ByVal objJuchu As clsJuchu)
    Dim objItem As clsMeisai
    Dim lngRow As Long

    KaijoJuchu objJuchu
    For Each objItem In objJuchu.Meisai
        lngRow = FindRow(objItem.ShohinCode)
        If lngRow = 0 Then Err.Raise vbObjectError + ERR_ZAIKO, "ShukkaZaiko", "在庫がありません: " & objItem.ShohinCode
        With shtZaiko
            With .Cells(lngRow, zcGenzai)
                .Value = NzLng(.Value) - objItem.Suryo
                .Interior.ColorIndex = IIf(IsHacchu(lngRow), 6, xlNone)
            End With
        End With
    Next objItem
End Sub

' 概要：引当数を増減する
Private Sub AddHikiate(ByVal strCode As String, ByVal lngSuryo As Long)
    Dim lngRow As Long

    lngRow = FindRow(strCode)
    If lngRow = 0 Then
        ' 在庫表にない商品は新しい行を作る
        lngRow = GetLastRow(shtZaiko, zcCode) + 1
        shtZaiko.Cells(lngRow, zcCode).Value = strCode
        shtZaiko.Cells(lngRow, zcHacchuten).Value = DEF_HACCHUTEN
    End If
    With shtZaiko.Cells(lngRow, zcHikiate)
        .Value = NzLng(.Value) + lngSuryo
        If .Value < 0 Then .Value = 0
    End With
    m_strLastCode = strCode
End Sub

' 概要：発注点を下回ったか
Public Function IsHacchu(ByVal lngRow As Long) As Boolean
    With shtZaiko
        IsHacchu = (NzLng(.Cells(lngRow, zcGenzai).Value) <= NzLng(.Cells(lngRow, zcHacchuten).Value))
    End With
End Function

' 概要：在庫金額の概算（未使用）
Public Function ZaikoKingaku(ByVal strTokui As String) As Currency
    Dim lngRow As Long
    Dim curSum As Currency
    Dim lngDummy As Long

    For lngRow = ROW_TOP To GetLastRow(shtZaiko, zcCode)
        curSum = curSum + modMaster.GetTanka(NzStr(shtZaiko.Cells(lngRow, zcCode).Value), "") * NzLng(shtZaiko.Cells(lngRow, zcGenzai).Value)
    Next lngRow
    ZaikoKingaku = curSum
End Function
