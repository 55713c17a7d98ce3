Attribute VB_Name = "modJuchu"
' 受注の登録・取消・出荷
Option Explicit

Private Const KEY_LASTNO As String = "LastNo"
Private m_colRireki As New Collection

' 概要：次の受注番号を作る
Public Function NextJuchuNo() As String
    Dim lngNo As Long

    lngNo = NzLng(GetSettei(KEY_LASTNO, "0")) + 1
    NextJuchuNo = "J" & PadZero(CStr(lngNo), 7)
End Function

' 概要：受注を登録する
' 処理内容：在庫を引き当て、シートに書き、番号を進める
Public Sub TorokuJuchu(ByVal objJuchu As clsJuchu)
    Dim strErr As String

    On Error GoTo ErrHandler
    g_blnBusy = True
    SetScreen False
    strErr = objJuchu.CheckInput()
    If strErr <> "" Then Err.Raise vbObjectError + 513, "TorokuJuchu", strErr
    If HikiateJuchu(objJuchu) Then objJuchu.Status = jsHikiate Else objJuchu.Status = jsToroku
    objJuchu.SaveToSheet
    Call SetSettei(KEY_LASTNO, Mid$(objJuchu.JuchuNo, 2))
    AddRireki objJuchu.JuchuNo
    SetScreen True
    g_blnBusy = False
    Exit Sub

ErrHandler:
    g_blnBusy = False
    Call SetScreen(True)
    Call LogError("TorokuJuchu")
    Err.Raise Err.Number, "TorokuJuchu", Err.Description
End Sub

' 概要：受注番号から受注を読む。なければ Nothing
Public Function LoadJuchu(ByVal strNo As String) As clsJuchu
    Dim objJuchu As clsJuchu

    Set objJuchu = New clsJuchu
    If objJuchu.LoadFromSheet(strNo) Then Set LoadJuchu = objJuchu
End Function

' 概要：受注の取消
Public Function TorikeshiJuchu(ByVal strNo As String) As Boolean
    Dim objJuchu As clsJuchu

    Set objJuchu = LoadJuchu(strNo)
    If objJuchu Is Nothing Then Exit Function
    With objJuchu
        If .Status = jsShukka Then
            MsgBox "出荷済みの受注は取り消せません。", vbExclamation, APP_TITLE
            Exit Function
        End If
        If .Status = jsHikiate Then Call KaijoJuchu(objJuchu)
        .Status = jsTorikeshi
        .SaveToSheet
    End With
    WriteLog LOG_INFO, "取消 " & strNo
    TorikeshiJuchu = True
End Function

' 概要：出荷を確定する
Public Sub ShukkaJuchu(ByVal strNo As String)
    Dim objJuchu As clsJuchu

    On Error GoTo ErrHandler
    Set objJuchu = modJuchu.LoadJuchu(strNo)
    If objJuchu Is Nothing Then GoTo Owari
    If objJuchu.Status <> jsHikiate Then
        MsgBox "引当の済んでいない受注は出荷できません。", vbExclamation, APP_TITLE
        GoTo Owari
    End If
    modZaiko.ShukkaZaiko objJuchu
    objJuchu.Status = jsShukka
    objJuchu.SaveToSheet
    伝票印刷 strNo

Owari:
    Set objJuchu = Nothing
    Exit Sub

ErrHandler:
    LogError "ShukkaJuchu"
    ShowError "出荷"
    Resume Owari
End Sub

' 概要：受注を複写して新しい番号で登録する
Public Function FukushaJuchu(ByVal strNo As String) As String
    Dim objOld As clsJuchu, objNew As clsJuchu

    Set objOld = LoadJuchu(strNo)
    If objOld Is Nothing Then Exit Function
    Set objNew = New clsJuchu
    objNew.JuchuNo = NextJuchuNo
    objNew.TokuiCode = objOld.TokuiCode
    objNew.CopyMeisaiFrom objOld
    TorokuJuchu objNew
    FukushaJuchu = objNew.JuchuNo
End Function

' 概要：得意先ごとの受注残高
Public Function ZandakaTokui(ByVal strTokui As String, Optional ByVal blnZeikomi As Boolean = True) As Currency
    Dim lngRow As Long
    Dim curSum As Currency

    With shtJuchu
        For lngRow = ROW_TOP To GetLastRow(shtJuchu, jcJuchuNo)
            If NzStr(.Cells(lngRow, jcTokuiCode).Value) = strTokui Then
                Select Case NzLng(.Cells(lngRow, jcStatus).Value)
                    Case jsToroku, jsHikiate
                        curSum = curSum + NzCur(.Cells(lngRow, jcKingaku).Value)
                    Case jsShukka, jsTorikeshi
                        ' 残高に入れない
                End Select
            End If
        Next lngRow
    End With
    ZandakaTokui = curSum
End Function

' 概要：操作した受注の履歴を残す
Private Sub AddRireki(ByVal strNo As String)
    If m_colRireki.Count >= MAX_RIREKI Then m_colRireki.Remove 1
    m_colRireki.Add strNo
End Sub

' 概要：最後に操作した受注番号
Public Function LastRireki() As String
    If m_colRireki.Count = 0 Then Exit Function
    LastRireki = m_colRireki(m_colRireki.Count)
End Function

' 概要：二つの受注を一つにまとめる（未完成）
Private Sub GappeiJuchu(ByVal strNo1 As String, ByVal strNo2 As String)
    Dim objJuchu1 As clsJuchu
    Dim lngUnused As Long

    Set objJuchu1 = LoadJuchu(strNo1)
    If KensaGappei(objJuchu1) Then objJuchu1.SaveToSheet
End Sub

Private Function KensaGappei(objJuchu As clsJuchu) As Boolean
    If objJuchu Is Nothing Then Exit Function
    KensaGappei = (objJuchu.Goukei() > 0)
End Function
