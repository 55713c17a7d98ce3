Attribute VB_Name = "modCsv"
' CSV の取り込みと書き出し
Option Explicit

Private Const CSV_HEADER As String = "受注番号,受注日,得意先,商品,数量,単価"
Private Const COL_COUNT As Long = 6
Private m_lngErrCount As Long

' 概要：受注 CSV を取り込む
' 引数：strPath ファイルのパス
' 戻り値：取り込んだ件数
Public Function ImportJuchu(ByVal strPath As String) As Long
    Dim objCsv As clsCsvFile
    Dim objJuchu As clsJuchu
    Dim vntItems As Variant
    Dim strPrevNo As String
    Dim lngCount As Long
    Dim dblStart As Double

    On Error GoTo ErrHandler
    dblStart = GetTickCount()
    m_lngErrCount = 0
    Set objCsv = New clsCsvFile
    If Not objCsv.OpenRead(strPath) Then
        MsgBox "ファイルを開けません。" & vbCrLf & strPath, vbExclamation, APP_TITLE
        Exit Function
    End If
    SetScreen False
    objCsv.ReadFields 'Call SkipLine 見出しの行
    Do Until objCsv.IsEnd
        vntItems = objCsv.ReadFields()
        If CheckItems(vntItems, objCsv.LineNo) Then
            If vntItems(0) <> strPrevNo Then
                If Not objJuchu Is Nothing Then Call TorokuJuchu(objJuchu): lngCount = lngCount + 1
                Set objJuchu = MakeJuchu(vntItems)
                strPrevNo = vntItems(0)
            End If
            objJuchu.AddMeisai CStr(vntItems(3)), NzLng(vntItems(4)), NzCur(vntItems(5))
        End If
    Loop
    If Not objJuchu Is Nothing Then
        TorokuJuchu objJuchu
        lngCount = lngCount + 1
    End If
    ImportJuchu = lngCount
    GetLogger().WriteInfo "CSV 取込 " & lngCount & " 件 " & ElapsedMs(dblStart) & " ms"

Owari:
    If Not objCsv Is Nothing Then objCsv.CloseFile
    SetScreen True
    Exit Function

ErrHandler:
    LogError "ImportJuchu"
    SetScreen True
    ShowError "ImportJuchu"
    Resume Owari
End Function

' 概要：項目の検査
Private Function CheckItems(ByVal vntItems As Variant, ByVal lngLine As Long) As Boolean
    Dim strErr As String

    If UBound(vntItems) <> COL_COUNT - 1 Then
        strErr = "項目数"
    ElseIf Not IsHizuke(vntItems(1)) Then
        strErr = "受注日"
    ElseIf Not IsTokuiExist(vntItems(2)) Then
        strErr = "得意先"
    ElseIf Not IsShohinExist(vntItems(3)) Then
        strErr = "商品"
    End If
    If Len(strErr) > 0 Then
        m_lngErrCount = m_lngErrCount + 1
        modLog.WriteLog LOG_WARN, lngLine & " 行目: " & strErr & "が正しくありません"
        Exit Function
    End If
    CheckItems = True
End Function

Private Function MakeJuchu(ByVal vntItems As Variant) As clsJuchu
    Dim objNew As New clsJuchu

    With objNew
        .JuchuNo = CStr(vntItems(0))
        .JuchuDate = CDate(vntItems(1))
        .TokuiCode = CStr(vntItems(2))
    End With
    Set MakeJuchu = objNew
End Function

' 概要：受注シートを CSV に書き出す
Public Sub ExportJuchu(ByVal strPath As String)
    Dim objCsv As Object
    Dim lngRow As Long

    On Error GoTo ErrHandler
    Set objCsv = New clsCsvFile
    objCsv.Delimiter = ","
    objCsv.OpenWrite strPath
    For lngRow = ROW_TOP - 1 To GetLastRow(shtJuchu, jcJuchuNo)
        objCsv.WriteFields FieldText(lngRow, jcJuchuNo), FieldText(lngRow, jcJuchuDate), _
                           FieldText(lngRow, jcTokuiCode), FieldText(lngRow, jcShohinCode), _
                           FieldText(lngRow, jcSuryo), FieldText(lngRow, jcTanka)
    Next lngRow
    objCsv.CloseFile
    Exit Sub

ErrHandler:
    objCsv.CloseFile
    ShowError "ExportJuchu"
End Sub

Private Function FieldText(ByVal lngRow As Long, ByVal lngCol As Long) As String
    Dim vntValue As Variant

    vntValue = shtJuchu.Cells(lngRow, lngCol).Value
    If VarType(vntValue) = vbDate Then FieldText = Format$(vntValue, FMT_DATE) Else FieldText = NzStr(vntValue)
End Function

' 概要：商品マスタの取り込み
' 説明：行番号付きで、失敗した行を Erl で記録する
Public Sub ImportShohin(ByVal strPath As String)
          Dim intFile As Integer
          Dim strLine As String
          Dim vntItems As Variant

10        On Error GoTo ErrHandler
20        intFile = FreeFile
30        Open strPath For Input As #intFile
40        Do Until EOF(intFile)
50            Line Input #intFile, strLine
60            vntItems = Split(strLine, ",")
70            If UBound(vntItems) >= 2 Then
80                PutShohin CStr(vntItems(0)), CStr(vntItems(1)), NzCur(vntItems(2))
90            End If
100       Loop
110       Close #intFile
120 Call ClearCache
130       Exit Sub

ErrHandler:
140       modLog.WriteLog LOG_ERROR, "ImportShohin 行番号 " & Erl & " " & Err.Description
150       Close #intFile
End Sub

' 概要：見出しの行を読み飛ばす（旧形式用）
Private Sub SkipLine(ByVal intFile As Integer, Optional ByVal lngCount As Long = 1)
    Dim strLine As String

    Line Input #intFile, strLine
    If strLine <> CSV_HEADER Then Debug.Print "見出しが違います: " & strLine
End Sub
