Attribute VB_Name = "modLog"
' ログの窓口
Option Explicit

Private Const LOG_NAME As String = "juchu.log"
Private Const LOG_MAXSIZE As Long = 1048576

' 概要：ログを使えるようにする
Public Sub InitLog()
    Set g_objLog = New clsLogger
    g_objLog.FilePath = LogPath()
    RotateLog
    GetLogger.WriteInfo "ログ開始 " & GetLoginName()
End Sub

Public Sub CloseLog()
    Set g_objLog = Nothing
End Sub

' 概要：ログの実体を返す。まだなければ作る
Public Function GetLogger() As clsLogger
    If g_objLog Is Nothing Then
        Set g_objLog = New clsLogger
        g_objLog.FilePath = LogPath
    End If
    Set GetLogger = g_objLog
End Function

' 概要：水準を指定して記録する
Public Sub WriteLog(ByVal lngLevel As Long, ByVal strMsg As String)
    With GetLogger
        Select Case lngLevel
            Case LOG_ERROR: .WriteErr "", 0, strMsg
            Case LOG_WARN: .WriteWarn strMsg
            Case Else: .WriteInfo strMsg
        End Select
    End With
End Sub

' 概要：今のエラーを記録する
Public Sub LogError(ByVal strProc As String)
    Dim lngNo As Long, strMsg As String

    lngNo = Err.Number: strMsg = Err.Description
    GetLogger().WriteErr strProc, lngNo, strMsg
End Sub

Private Function LogPath() As String
    LogPath = JoinPath(ThisWorkbook.Path, LOG_NAME)
End Function

' 処理内容：大きくなったログを日付の名前に変える
Private Sub RotateLog()
    Dim strPath As String

    On Error GoTo ErrHandler
    strPath = LogPath()
    If Not IsFileExist(strPath) Then Exit Sub
    If FileLen(strPath) > LOG_MAXSIZE Then Name strPath As strPath & Format$(Date, ".yyyymmdd")
    On Error GoTo 0
    g_objLog.WriteInfo "ログの大きさ " & FileLen(strPath)
    Exit Sub

ErrHandler:
    g_objLog.WriteWarn "ログの名前を変えられません"
    Debug.Print LogPath()
End Sub

Private Function LastErrorText() As String
    LastErrorText = Err.Number & ": " & Err.Description
End Function
