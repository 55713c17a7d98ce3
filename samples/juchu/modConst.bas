Attribute VB_Name = "modConst"
' 概要：全体で使う定数・型・変数
Option Explicit

' アプリケーション
Public Const APP_TITLE As String = "受注管理システム"
Public Const APP_VERSION As String = "3.2.1"
Public Const FMT_DATE As String = "yyyy/mm/dd"
Public Const FMT_KINGAKU As String = "#,##0"
Public Const ROW_TOP As Long = 5
Public Const LEN_TOKUI As Long = 6, LEN_BIKO As Long = 60
Public Const MAX_SURYO As Long = 99999
Public Const MAX_RIREKI As Long = 50
Private Const OLD_TITLE As String = "受注台帳"

' ログの水準
Public Const LOG_ERROR As Long = 1
Public Const LOG_WARN As Long = 2
Public Const LOG_INFO As Long = 3
Public Const LOG_DEBUG As Long = 4

Public Enum JuchuStatus
    jsMinyuryoku = 0
    jsToroku = 1
    jsHikiate = 2
    jsShukka = 3
    jsTorikeshi = 9
End Enum

Public Enum JuchuCol
    jcJuchuNo = 1
    jcGyoNo
    jcJuchuDate
    jcTokuiCode
    jcShohinCode
    jcSuryo
    jcTanka
    jcKingaku
    jcStatus
    jcBiko
End Enum

Public Enum ShohinCol
    scCode = 1
    scName
    scTanka
    scTani
End Enum

Public Enum TokuiCol
    tcCode = 1
    tcName
    tcJusho
    tcTel
    tcKakeritsu
End Enum

Public Enum ZaikoCol
    zcCode = 1
    zcGenzai
    zcHikiate
    zcHacchuten
End Enum

Public Enum RoundMode
    rmFloor = 0
    rmCeil
    rmHalfUp
End Enum

' 旧版の区分（未使用）
Public Enum OldKubun
    okGenkin = 1
    okKake = 2
End Enum

Public Type TTokui
    strCode As String
    strName As String
    strJusho As String
    strTel As String
    dblKakeritsu As Double
End Type

Public Type TInsatsu
    strTitle As String
    lngPages As Long
End Type

' 旧版の伝票見出し（未使用）
Private Type TOldHeader
    strNo As String * 8
    lngGyo(1 To 6) As Long
End Type

Public g_objLog As clsLogger
Public g_strFolder As String
Public g_lngInterval As Long, g_blnAutoSave As Boolean
Public g_dblZeiritsu As Double
Public g_blnBusy As Boolean
Public g_lngDebugFlag As Long

' 概要：状態の名前
Public Function StatusName(ByVal lngStatus As JuchuStatus) As String
    Select Case lngStatus
        Case jsMinyuryoku: StatusName = "未入力"
        Case jsToroku: StatusName = "登録"
        Case jsHikiate: StatusName = "引当済"
        Case jsShukka: StatusName = "出荷済"
        Case jsTorikeshi: StatusName = "取消"
        Case Else: StatusName = "？"
    End Select
End Function
