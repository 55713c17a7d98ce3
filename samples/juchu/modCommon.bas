Attribute VB_Name = "modCommon"
' 共通関数
Option Explicit

Private m_lngScreenDepth As Long
Private m_strUnused As String

' 概要：最終行を返す
' 引数：ws     対象シート
'       lngCol 調べる列
Public Function GetLastRow(ByVal ws As Worksheet, ByVal lngCol As Long) As Long
    GetLastRow = ws.Cells(ws.Rows.Count, lngCol).End(xlUp).Row
End Function

' 概要：空を空文字列にする
Public Function NzStr(ByVal vntValue As Variant) As String
    If IsError(vntValue) Then Exit Function
    If IsNull(vntValue) Or IsEmpty(vntValue) Then Exit Function
    NzStr = Trim$(CStr(vntValue))
End Function

Public Function NzLng(ByVal vntValue As Variant) As Long
    If IsNumeric(NzStr(vntValue)) Then NzLng = CLng(NzStr(vntValue))
End Function

Public Function NzCur(ByVal vntValue As Variant) As Currency
    Dim strValue As String

    strValue = NzStr(vntValue)
    If IsNumeric(strValue) Then NzCur = CCur(strValue)
End Function

' 概要：左にゼロを詰める
Public Function PadZero(ByVal strValue As String, ByVal lngLen As Long) As String
    If Len(strValue) >= lngLen Then
        PadZero = strValue
    Else
        PadZero = Right$(String$(lngLen, "0") & strValue, lngLen)
    End If
End Function

' 概要：円未満の端数処理
Public Function RoundYen(ByVal curValue As Currency, ByVal lngMode As RoundMode) As Currency
    Select Case lngMode
        Case rmFloor: RoundYen = Int(curValue)
        Case rmCeil: RoundYen = Int(curValue + 0.9999)
        Case rmHalfUp: RoundYen = Int(curValue + 0.5)
        Case Else: LogError "RoundYen"
    End Select
End Function

Public Function IsFileExist(ByVal strPath As String) As Boolean
    If Len(strPath) = 0 Then Exit Function
    On Error Resume Next
    IsFileExist = (Len(Dir$(strPath)) > 0)
End Function

Public Function IsFolderExist(ByVal strPath As String) As Boolean
    On Error GoTo NotFound
    IsFolderExist = ((GetAttr(strPath) And vbDirectory) = vbDirectory)
    Exit Function
NotFound:
    IsFolderExist = False
End Function

Public Function JoinPath(ByVal strFolder As String, ByVal strFile As String) As String
    If Right$(strFolder, 1) = "\" Then JoinPath = strFolder & strFile Else JoinPath = strFolder & "\" & strFile
End Function

' 概要：日付として使えるか
Public Function IsHizuke(ByVal strValue As String) As Boolean
    If Not IsDate(strValue) Then Exit Function
    IsHizuke = (CDate(strValue) >= DateSerial(2000, 1, 1)) And (CDate(strValue) < DateSerial(2100, 1, 1))
End Function

' 概要：比較用に半角の大文字へそろえる
Public Function ToHankaku(ByVal strValue As String) As String
    ToHankaku = UCase$(StrConv(strValue, vbNarrow))
End Function

' 概要：フォルダの中のファイルを数える（下位フォルダを含む）
' 説明：自分自身を呼び出す
Public Function CountFiles(ByVal objFolder As Object) As Long
    Dim objSub As Object
    Dim lngCount As Long

    lngCount = objFolder.Files.Count
    For Each objSub In objFolder.SubFolders
        lngCount = lngCount + CountFiles(objSub)
    Next objSub
    CountFiles = lngCount
End Function

' 概要：フォルダを選ばせる
Public Function AskFolder(ByVal strDefault As String) As String
    With Application.FileDialog(msoFileDialogFolderPicker)
        .Title = "フォルダの選択"
        .InitialFileName = strDefault
        If .Show = -1 Then AskFolder = .SelectedItems(1)
    End With
End Function

' 概要：はい・いいえの確認
Public Function Confirm(ByVal strMsg As String) As Boolean
    Confirm = (MsgBox(strMsg, vbQuestion + vbYesNo, APP_TITLE) = vbYes)
End Function

' 概要：エラーの表示
Public Sub ShowError(ByVal strProc As String)
    Dim strMsg As String

    strMsg = strProc & " でエラーが発生しました。" & vbCrLf & _
             "番号: " & Err.Number & vbCrLf & _
             "内容: " & Err.Description
    MsgBox strMsg, vbCritical, APP_TITLE
End Sub

' 概要：画面更新と再計算の切り替え
' 説明：入れ子で呼ばれたときは一番外側だけ効かせる
Public Sub SetScreen(ByVal blnOn As Boolean)
    If blnOn Then
        If m_lngScreenDepth > 0 Then m_lngScreenDepth = m_lngScreenDepth - 1
        If m_lngScreenDepth > 0 Then Exit Sub
        Application.Calculation = xlCalculationAutomatic
    Else
        m_lngScreenDepth = m_lngScreenDepth + 1
        Application.Calculation = xlCalculationManual
    End If
    Application.ScreenUpdating = blnOn
    Application.EnableEvents = blnOn
End Sub

' 概要：和暦の日付文（今は使っていない）
Public Function MakeWareki(ByVal dtmValue As Date) As String
    Dim strGengo As String
    Dim lngNen As Long

    strGengo = GetGengo(dtmValue, lngNen)
    MakeWareki = strGengo & IIf(lngNen = 1, "元", CStr(lngNen)) & "年" & Month(dtmValue) & "月" & Day(dtmValue) & "日"
End Function

Private Function GetGengo(ByVal dtmValue As Date, ByRef lngNen As Long) As String
    If dtmValue >= DateSerial(2019, 5, 1) Then
        GetGengo = "令和": lngNen = Year(dtmValue) - 2018
    ElseIf dtmValue >= DateSerial(1989, 1, 8) Then
        GetGengo = "平成": lngNen = Year(dtmValue) - 1988
    Else
        GetGengo = "昭和": lngNen = Year(dtmValue) - 1925
    End If
End Function
