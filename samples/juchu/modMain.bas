Attribute VB_Name = "modMain"
' 起動とメニューから呼ばれるマクロ
Option Explicit

Private Const MENU_NAME As String = "受注管理(&J)"

' 概要：旧式の起動マクロ
Public Sub Auto_Open()
    Call BuildMenu
    StartClock
End Sub

Public Sub Auto_Close()
    RemoveMenu
End Sub

' 概要：メニューを作る
Private Sub BuildMenu()
    Dim objMenu As Object
    Dim objButton As Object

    RemoveMenu
    Set objMenu = Application.CommandBars("Worksheet Menu Bar").Controls.Add(Type:=10, Temporary:=True)
    objMenu.Caption = MENU_NAME
    Set objButton = objMenu.Controls.Add(Type:=1)
    With objButton
        .Caption = "受注入力(&N)"
        .OnAction = "modMain.OpenJuchu"
    End With
    Set objButton = objMenu.Controls.Add(Type:=1)
    With objButton
        .Caption = "環境設定(&S)"
        .OnAction = "modMain.OpenSettei"
        .BeginGroup = True
    End With
End Sub

Private Sub RemoveMenu()
    On Error Resume Next
    Application.CommandBars("Worksheet Menu Bar").Controls(MENU_NAME).Delete
    On Error GoTo 0
End Sub

' 概要：受注入力画面を開く
Public Sub OpenJuchu()
    On Error GoTo ErrHandler
    If g_objLog Is Nothing Then InitLog
    frmJuchu.Show vbModeless
    Exit Sub

ErrHandler:
    ShowError "OpenJuchu"
End Sub

Public Sub OpenSettei()
    frmSettei.Show
End Sub

' 概要：CSV 取り込みのマクロ
Public Sub TorikomiCsv()
    Dim vntPath As Variant
    Dim lngCount As Long

    vntPath = Application.GetOpenFilename("CSV (*.csv),*.csv")
    If VarType(vntPath) = vbBoolean Then Exit Sub
    lngCount = ImportJuchu(CStr(vntPath))
    MsgBox lngCount & " 件取り込みました。", vbInformation, APP_TITLE
    Application.Run "modMain.KakidashiCsv"
End Sub

Public Sub KakidashiCsv()
    Dim vntPath As Variant

    vntPath = Application.GetSaveAsFilename("juchu.csv", "CSV (*.csv),*.csv")
    If VarType(vntPath) <> vbBoolean Then ExportJuchu CStr(vntPath)
End Sub

' 概要：商品マスタ取り込みのマクロ
Public Sub TorikomiShohin()
    Dim vntPath As Variant

    vntPath = Application.GetOpenFilename("CSV (*.csv),*.csv")
    If VarType(vntPath) = vbBoolean Then Exit Sub
    modCsv.ImportShohin vntPath
    shtShohin.SetShoshiki
End Sub

' 概要：選んだ受注を取り消す
Public Sub TorikeshiSentaku()
    Dim strNo As String

    strNo = shtJuchu.SentakuNo()
    If Len(strNo) = 0 Then Exit Sub
    If Confirm(strNo & " を取り消しますか？") Then
        If TorikeshiJuchu(strNo) Then MsgBox "取り消しました。", vbInformation, APP_TITLE
    End If
End Sub

' 概要：選んだ受注を出荷済みにする
Public Sub ShukkaSentaku()
    Dim strNo As String

    strNo = shtJuchu.SentakuNo
    If Len(strNo) > 0 Then modJuchu.ShukkaJuchu strNo
End Sub

Public Sub FukushaSentaku()
    Dim strNo As String

    strNo = FukushaJuchu(IIf(shtJuchu.SentakuNo = "", LastRireki, shtJuchu.SentakuNo))
    If Len(strNo) > 0 Then frmJuchu.ShowJuchu strNo: frmJuchu.Show
End Sub

' 概要：バックアップを取って保存先を開く
Public Sub BackupJikko()
    Dim objFso As Object
    Dim strPath As String
    Dim Confirm As Boolean

    strPath = ThisWorkbook.BackupBook(g_strFolder)
    Set objFso = CreateObject("Scripting.FileSystemObject")
    Confirm = (CountFiles(objFso.GetFolder(g_strFolder)) > 100)
    If Confirm Then MsgBox "バックアップが増えています。", vbExclamation, APP_TITLE
    OpenFolder g_strFolder
    WaitMs 200
    Debug.Print strPath, ThisWorkbook.UpMinutes
End Sub

' 概要：外部の連携ツールから呼ばれる入口
Public Sub Evt_Renkei()
    If ImportJuchu(JoinPath(g_strFolder, "renkei.csv")) > 0 Then 受注一覧印刷 False
End Sub
