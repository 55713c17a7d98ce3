Attribute VB_Name = "modTimer"
' 自動保存と時計
Option Explicit

Private Const CLOCK_MS As Long = 1000

#If VBA7 Then
    Private Declare PtrSafe Function SetTimer Lib "user32" (ByVal hwnd As LongPtr, ByVal nIDEvent As LongPtr, ByVal uElapse As Long, ByVal lpTimerFunc As LongPtr) As LongPtr
    Private Declare PtrSafe Function KillTimer Lib "user32" (ByVal hwnd As LongPtr, ByVal nIDEvent As LongPtr) As Long
    Private m_hTimer As LongPtr
#Else
    Private Declare Function SetTimer Lib "user32" (ByVal hwnd As Long, ByVal nIDEvent As Long, ByVal uElapse As Long, ByVal lpTimerFunc As Long) As Long
    Private Declare Function KillTimer Lib "user32" (ByVal hwnd As Long, ByVal nIDEvent As Long) As Long
    Private m_hTimer As Long
#End If
Private m_dtmNext As Date

' 概要：自動保存を予約する
Public Sub StartAutoSave()
    Call StopAutoSave
    m_dtmNext = Now + TimeSerial(0, g_lngInterval, 0)
    Application.OnTime m_dtmNext, "modTimer.AutoSaveTick"
End Sub

Public Sub StopAutoSave()
    On Error Resume Next
    If m_dtmNext > 0 Then Application.OnTime m_dtmNext, "modTimer.AutoSaveTick", , False
    m_dtmNext = 0
End Sub

' 概要：予約の時刻に呼ばれる
Public Sub AutoSaveTick()
    On Error GoTo ErrHandler
    If Not g_blnBusy Then ThisWorkbook.Save
    StartAutoSave
    Exit Sub

ErrHandler:
    LogError "AutoSaveTick"
    StartAutoSave
End Sub

' 概要：時計を動かす
Public Sub StartClock()
    If m_hTimer <> 0 Then StopClock
    m_hTimer = SetTimer(0, 0, CLOCK_MS, AddressOf ClockProc)
End Sub

Public Sub StopClock()
    If m_hTimer = 0 Then Exit Sub
    KillTimer 0, m_hTimer
    m_hTimer = 0
End Sub

' 概要：一秒ごとに呼ばれる
#If VBA7 Then
Private Sub ClockProc(ByVal hwnd As LongPtr, ByVal uMsg As Long, ByVal nIDEvent As LongPtr, ByVal dwTime As Long)
    On Error Resume Next
    Application.StatusBar = APP_TITLE & " " & Format$(Now, "hh:nn:ss")
End Sub
#Else

' 概要：一秒ごとに呼ばれる（旧環境）
Private Sub ClockProc(ByVal hwnd As Long, ByVal uMsg As Long, ByVal nIDEvent As Long, ByVal dwTime As Long)
    On Error Resume Next
    Application.StatusBar = APP_TITLE & " " & Time$
End Sub
#End If
