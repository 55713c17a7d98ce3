Attribute VB_Name = "modMaster"
' 商品・得意先マスタの参照
Option Explicit

Private m_objCache As Object
Private m_lngHit As Long

' 概要：商品の行を探す。なければ 0
Private Function FindRow(ByVal strCode As String) As Long
    Dim lngRow As Long

    If m_objCache Is Nothing Then BuildCache
    If m_objCache.Exists(strCode) Then
        FindRow = m_objCache(strCode)
        m_lngHit = m_lngHit + 1
    End If
End Function

Private Sub BuildCache()
    Dim lngRow As Long
    Dim strCode As String

    Set m_objCache = CreateObject("Scripting.Dictionary")
    For lngRow = ROW_TOP To GetLastRow(shtShohin, scCode)
        strCode = UCase$(NzStr(shtShohin.Cells(lngRow, scCode).Value))
        If Not m_objCache.Exists(strCode) Then m_objCache.Add strCode, lngRow
    Next lngRow
End Sub

Public Sub ClearCache()
    Set m_objCache = Nothing
    m_lngHit = 0
End Sub

Public Function IsShohinExist(ByVal strCode As String) As Boolean
    IsShohinExist = (FindRow(UCase$(strCode)) > 0)
End Function

Public Function GetShohinName(ByVal strCode As String) As String
    Dim lngRow As Long

    lngRow = FindRow(UCase$(strCode))
    If lngRow > 0 Then GetShohinName = NzStr(shtShohin.Cells(lngRow, scName).Value)
End Function

' 概要：得意先の掛率を掛けた単価
Public Function GetTanka(ByVal strCode As String, ByVal strTokui As String) As Currency
    Dim lngRow As Long
    Dim udtTokui As TTokui

    lngRow = FindRow(UCase$(strCode))
    If lngRow = 0 Then Exit Function
    GetTanka = NzCur(shtShohin.Cells(lngRow, scTanka).Value)
    If FindTokui(strTokui, udtTokui) Then
        If udtTokui.dblKakeritsu > 0 Then GetTanka = RoundYen(GetTanka * udtTokui.dblKakeritsu, rmHalfUp)
    End If
End Function

' 概要：商品を書き込む。なければ末尾に加える
Public Sub PutShohin(ByVal strCode As String, ByVal strName As String, ByVal curTanka As Currency)
    Dim lngRow As Long

    lngRow = FindRow(UCase$(strCode))
    If lngRow = 0 Then lngRow = GetLastRow(shtShohin, scCode) + 1: ClearCache
    With shtShohin
        .Cells(lngRow, scCode).Value = UCase$(strCode)
        .Cells(lngRow, scName).Value = strName
        .Cells(lngRow, scTanka).Value = curTanka
    End With
End Sub

' 概要：得意先を探す
' 引数：strCode  得意先コード
'       udtTokui 見つかった得意先
Public Function FindTokui(ByVal strCode As String, ByRef udtTokui As TTokui) As Boolean
    Dim rngFound As Range
    Dim strFind As String

    strFind = PadZero(strCode, LEN_TOKUI)
    Set rngFound = shtTokui.Columns(tcCode).Find(What:=strFind, LookAt:=xlWhole)
    If rngFound Is Nothing Then Exit Function
    With udtTokui
        .strCode = NzStr(rngFound.Value)
        .strName = NzStr(rngFound.Offset(0, tcName - 1).Value)
        .strJusho = NzStr(rngFound.Offset(0, tcJusho - 1).Value)
        .strTel = NzStr(rngFound.Offset(0, tcTel - 1).Value)
        .dblKakeritsu = Val(NzStr(rngFound.Offset(0, tcKakeritsu - 1).Value))
    End With
    FindTokui = True
End Function

Public Function IsTokuiExist(ByVal strCode As String) As Boolean
    Dim udtTokui As TTokui

    IsTokuiExist = FindTokui(strCode, udtTokui)
End Function

' 概要：得意先の名前
Public Function TokuiName(ByVal strCode As String) As String
    Dim udtTokui As TTokui

    If FindTokui(strCode, udtTokui) Then TokuiName = udtTokui.strName
End Function

' 概要：得意先の電話番号（未使用）
Public Function TokuiTel(ByVal strCode As String) As String
    Dim udtTokui As TTokui

    If FindTokui(strCode, udtTokui) Then TokuiTel = udtTokui.strTel
End Function
