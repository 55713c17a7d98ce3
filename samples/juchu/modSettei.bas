Attribute VB_Name = "modSettei"
' 設定ファイルの読み書き
Option Explicit

Private Const INI_NAME As String = "juchu.ini"
Private Const INI_SECTION As String = "Juchu"
Private Const BUF_SIZE As Long = 512

#If VBA7 Then
    Private Declare PtrSafe Function GetPrivateProfileString Lib "kernel32" Alias "GetPrivateProfileStringA" _
        (ByVal lpAppName As String, ByVal lpKeyName As String, ByVal lpDefault As String, _
         ByVal lpReturned As String, ByVal nSize As Long, ByVal lpFileName As String) As Long
    Private Declare PtrSafe Function WritePrivateProfileString Lib "kernel32" Alias "WritePrivateProfileStringA" _
        (ByVal lpAppName As String, ByVal lpKeyName As String, ByVal lpString As String, _
         ByVal lpFileName As String) As Long
#Else
    Private Declare Function GetPrivateProfileString Lib "kernel32" Alias "GetPrivateProfileStringA" _
        (ByVal lpAppName As String, ByVal lpKeyName As String, ByVal lpDefault As String, _
         ByVal lpReturned As String, ByVal nSize As Long, ByVal lpFileName As String) As Long
    Private Declare Function WritePrivateProfileString Lib "kernel32" Alias "WritePrivateProfileStringA" _
        (ByVal lpAppName As String, ByVal lpKeyName As String, ByVal lpString As String, _
         ByVal lpFileName As String) As Long
#End If

' 概要：設定を変数へ読み込む
Public Sub LoadSettei()
    g_strFolder = GetSettei("Folder", ThisWorkbook.Path)
    g_lngInterval = NzLng(GetSettei("Interval", "10"))
    g_dblZeiritsu = Val(GetSettei("Zeiritsu", "0.1"))
    g_blnAutoSave = (GetSettei("AutoSave", "0") = "1")
End Sub

' 概要：変数を設定へ書き出す
Public Sub SaveSettei()
    SetSettei "Folder", g_strFolder
    SetSettei "Interval", CStr(g_lngInterval)
    SetSettei "Zeiritsu", Trim$(Str$(g_dblZeiritsu))
    SetSettei "AutoSave", IIf(g_blnAutoSave, "1", "0")
End Sub

' 概要：設定を一つ読む
Public Function GetSettei(ByVal strKey As String, ByVal strDefault As String) As String
    Dim strBuf As String
    Dim lngLen As Long

    strBuf = String$(BUF_SIZE, vbNullChar)
    lngLen = GetPrivateProfileString(INI_SECTION, strKey, strDefault, _
                                     strBuf, BUF_SIZE, IniPath())
    strBuf = StrConv(LeftB(StrConv(strBuf, vbFromUnicode), lngLen), vbUnicode)
    GetSettei = strBuf
End Function

' 概要：設定を一つ書く
Public Sub SetSettei(ByVal strKey As String, ByVal strValue As String)
    If WritePrivateProfileString(INI_SECTION, strKey, strValue, IniPath) = 0 Then
        modLog.WriteLog LOG_WARN, "設定を書けません: " & strKey
    End If
End Sub

Private Function IniPath() As String
    Static strPath As String

    If strPath = "" Then strPath = JoinPath(ThisWorkbook.Path, INI_NAME)
    IniPath = strPath
End Function

Public Property Get SetteiVersion() As String
    SetteiVersion = GetSettei("Version", APP_VERSION)
End Property

Public Property Let SetteiVersion(ByVal strNew As String)
    SetSettei "Version", strNew
End Property
