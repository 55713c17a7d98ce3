Attribute VB_Name = "modApi"
' Windows API の宣言とその包み
Option Explicit

Private Const SW_HIDE As Long = 0
Private Const SW_SHOWNORMAL As Long = 1
Private Const WAIT_STEP As Long = 20

#If VBA7 Then
    Public Declare PtrSafe Function GetTickCount Lib "kernel32" () As Long
    Public Declare PtrSafe Sub Sleep Lib "kernel32" (ByVal dwMilliseconds As Long)
    Private Declare PtrSafe Function ShellExecute Lib "shell32" Alias "ShellExecuteA" (ByVal hwnd As LongPtr, ByVal lpOperation As String, ByVal lpFile As String, ByVal lpParameters As String, ByVal lpDirectory As String, ByVal nShowCmd As Long) As LongPtr
    Private Declare PtrSafe Function GetUserName Lib "advapi32" Alias "GetUserNameA" (ByVal lpBuffer As String, nSize As Long) As Long
    Private Declare PtrSafe Function FindWindow Lib "user32" Alias "FindWindowA" (ByVal lpClassName As String, ByVal lpWindowName As String) As LongPtr
#Else
    Public Declare Function GetTickCount Lib "kernel32" () As Long
    Public Declare Sub Sleep Lib "kernel32" (ByVal dwMilliseconds As Long)
    Private Declare Function ShellExecute Lib "shell32" Alias "ShellExecuteA" (ByVal hwnd As Long, ByVal lpOperation As String, ByVal lpFile As String, ByVal lpParameters As String, ByVal lpDirectory As String, ByVal nShowCmd As Long) As Long
    Private Declare Function GetUserName Lib "advapi32" Alias "GetUserNameA" (ByVal lpBuffer As String, nSize As Long) As Long
    Private Declare Function FindWindow Lib "user32" Alias "FindWindowA" (ByVal lpClassName As String, ByVal lpWindowName As String) As Long
#End If

' 概要：指定のミリ秒だけ待つ
Public Sub WaitMs(ByVal lngMs As Long)
    Dim lngStart As Long

    lngStart = GetTickCount()
    Do While GetTickCount() - lngStart < lngMs
        DoEvents
        Sleep WAIT_STEP
    Loop
End Sub

' 概要：計測開始からの経過ミリ秒
#If VBA7 Then
Public Function ElapsedMs(ByVal dblStart As Double) As Double
    ElapsedMs = CDbl(GetTickCount()) - dblStart
End Function
#Else

' 概要：計測開始からの経過ミリ秒（旧環境）
Public Function ElapsedMs(ByVal dblStart As Double) As Double
    ElapsedMs = Timer * 1000 - dblStart
End Function
#End If

' 概要：フォルダをエクスプローラで開く
Public Sub OpenFolder(ByVal strFolder As String)
    If Not IsFolderExist(strFolder) Then Exit Sub
    ShellExecute 0, "open", strFolder, vbNullString, vbNullString, SW_SHOWNORMAL
End Sub

' 概要：ログイン名を得る
Public Function GetLoginName() As String
    Dim strBuf As String
    Dim lngSize As Long

    lngSize = 256
    strBuf = String$(lngSize, vbNullChar)
    If GetUserName(strBuf, lngSize) <> 0 Then
        GetLoginName = Left$(strBuf, lngSize - 1)
    Else
        GetLoginName = Environ$("USERNAME")
    End If
End Function
