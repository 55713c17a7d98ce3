VERSION 5.00
Begin {C62A69F0-16DC-11CE-9E98-00AA00574A4F} frmJuchu 
   Caption         =   "受注入力"
   ClientHeight    =   7215
   ClientLeft      =   45
   ClientTop       =   390
   ClientWidth     =   9150
   OleObjectBlob   =   "frmJuchu.frx":0000
   StartUpPosition =   1  'オーナー フォームの中央
   Tag             =   "入力画面"
   Begin MSForms.Label lblJuchuNo 
      Caption         =   "受注番号(&N)"
      Height          =   240
      Left            =   120
      Top             =   120
      Width           =   1200
   End
   Begin MSForms.TextBox txtJuchuNo 
      Height          =   300
      Left            =   1440
      Tag             =   "必須"
      Text            =   ""
      Top             =   90
      Width           =   1800
   End
   Begin MSForms.TextBox txtJuchuDate 
      Height          =   300
      Left            =   4800
      Tag             =   "日付"
      Text            =   ""
      Top             =   90
      Width           =   1500
   End
   Begin MSForms.ComboBox cboTokui 
      Height          =   300
      Left            =   1440
      Tag             =   "必須"
      Text            =   ""
      Top             =   510
      Width           =   1800
   End
   Begin MSForms.Label lblTokuiName 
      Caption         =   ""
      Height          =   240
      Left            =   3360
      Top             =   540
      Width           =   4200
   End
   Begin MSForms.Frame fraMeisai 
      Caption         =   "明細"
      Height          =   4200
      Left            =   120
      Top             =   960
      Width           =   8880
      Begin MSForms.ComboBox cboShohin 
         Height          =   300
         Left            =   120
         Text            =   ""
         Top             =   300
         Width           =   2400
      End
      Begin MSForms.TextBox txtSuryo 
         Height          =   300
         Left            =   2640
         Tag             =   "数値"
         Text            =   "1"
         Top             =   300
         Width           =   900
      End
      Begin MSForms.TextBox txtTanka 
         Height          =   300
         Left            =   3660
         Tag             =   "数値"
         Text            =   ""
         Top             =   300
         Width           =   1200
      End
      Begin MSForms.CommandButton cmdTsuika 
         Caption         =   "追加(&A)"
         Height          =   330
         Left            =   5040
         Top             =   285
         Width           =   1200
      End
      Begin MSForms.CommandButton cmdSakujo 
         Caption         =   "行削除(&D)"
         Height          =   330
         Left            =   6360
         Top             =   285
         Width           =   1200
      End
      Begin MSForms.ListBox lstMeisai 
         Height          =   3240
         Left            =   120
         Top             =   780
         Width           =   8640
      End
   End
   Begin MSForms.Label lblGoukei 
      Caption         =   "合計 0 円"
      Height          =   300
      Left            =   6000
      Tag             =   "合計"
      Top             =   5280
      Width           =   3000
   End
   Begin MSForms.TextBox txtBiko 
      Height          =   300
      Left            =   1440
      Text            =   ""
      Top             =   5280
      Width           =   4200
   End
   Begin MSForms.CommandButton cmdKensaku 
      Caption         =   "検索(&F)..."
      Height          =   420
      Left            =   120
      Top             =   6480
      Width           =   1500
   End
   Begin MSForms.CommandButton cmdToroku 
      Caption         =   "登録(&R)"
      Height          =   420
      Left            =   5760
      Top             =   6480
      Width           =   1500
   End
   Begin MSForms.CommandButton cmdTojiru 
      Caption         =   "閉じる(&C)"
      Height          =   420
      Left            =   7440
      Top             =   6480
      Width           =   1500
   End
End
Attribute VB_Name = "frmJuchu"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
' 受注入力フォーム
Option Explicit

Private WithEvents m_objJuchu As clsJuchu
Attribute m_objJuchu.VB_VarHelpID = -1
Private m_blnDirty As Boolean
Private m_blnLoading As Boolean
Private m_strLastNo As String

' 概要：フォームの初期化
Private Sub UserForm_Initialize()
    m_blnLoading = True
    Call InitControls
    Call NewJuchu
    m_blnLoading = False
End Sub

Private Sub UserForm_QueryClose(Cancel As Integer, CloseMode As Integer)
    If Not m_blnDirty Then Exit Sub
    If Confirm("入力中の内容は失われます。閉じますか？") Then Exit Sub
    Cancel = True
End Sub

Private Sub UserForm_Terminate()
    Set m_objJuchu = Nothing
End Sub

' 説明：コンボボックスに得意先と商品を並べる
Private Sub InitControls()
    Dim lngRow As Long

    With cboTokui
        .Clear
        .ColumnCount = 2
        For lngRow = ROW_TOP To GetLastRow(shtTokui, tcCode)
            .AddItem NzStr(shtTokui.Cells(lngRow, tcCode).Value)
            .List(.ListCount - 1, 1) = NzStr(shtTokui.Cells(lngRow, tcName).Value)
        Next lngRow
    End With
    With cboShohin
        .Clear
        For lngRow = ROW_TOP To GetLastRow(shtShohin, scCode)
            .AddItem NzStr(shtShohin.Cells(lngRow, scCode).Value)
        Next lngRow
        With .Font
            .Name = "ＭＳ ゴシック"
            .Size = 10
        End With
        .ListIndex = -1
    End With
    lstMeisai.ColumnCount = 4
End Sub

' 概要：新しい受注を用意する
Private Sub NewJuchu()
    Set m_objJuchu = New clsJuchu
    m_objJuchu.JuchuNo = NextJuchuNo()
    txtJuchuNo.Text = m_objJuchu.JuchuNo
    txtJuchuDate.Text = Format$(m_objJuchu.JuchuDate, FMT_DATE)
    cboTokui.Text = "": lblTokuiName.Caption = "": txtBiko.Text = ""
    Call ShowMeisai
    m_blnDirty = False
End Sub

' 概要：既存の受注を表示する
' 引数：strNo 受注番号
Public Sub ShowJuchu(ByVal strNo As String)
    Dim objFound As clsJuchu

    Set objFound = LoadJuchu(strNo)
    If objFound Is Nothing Then
        MsgBox "受注番号 " & strNo & " は見つかりません。", vbInformation, APP_TITLE
        Exit Sub
    End If
    m_blnLoading = True
    Set m_objJuchu = objFound
    With m_objJuchu
        txtJuchuNo.Text = .JuchuNo
        txtJuchuDate.Text = Format$(.JuchuDate, FMT_DATE)
        cboTokui.Text = .TokuiCode
        txtBiko.Text = .Biko
        lblGoukei.Caption = "合計 " & Format$(.Goukei(), FMT_KINGAKU) & " 円"
    End With
    m_strLastNo = strNo
    ShowMeisai
    m_blnLoading = False
End Sub

' 概要：明細の一覧を作り直す
Private Sub ShowMeisai()
    Dim objItem As clsMeisai

    lstMeisai.Clear
    For Each objItem In m_objJuchu.Meisai
        lstMeisai.AddItem objItem.ToListText()
    Next objItem
    lblGoukei.Caption = "合計 " & Format$(m_objJuchu.Goukei + m_objJuchu.Shouhizei, FMT_KINGAKU) & " 円"
End Sub

Private Sub cboTokui_Change()
    Dim udtTokui As TTokui

    If m_blnLoading Then Exit Sub
    If FindTokui(cboTokui.Text, udtTokui) Then
        lblTokuiName.Caption = udtTokui.strName
        m_objJuchu.TokuiCode = udtTokui.strCode
    Else
        lblTokuiName.Caption = ""
    End If
    m_blnDirty = True
End Sub

Private Sub cboShohin_Change()
    If Len(cboShohin.Text) = 0 Then Exit Sub
    txtTanka.Text = Format$(GetTanka(cboShohin.Text, cboTokui.Text), "0")
End Sub

Private Sub txtJuchuDate_AfterUpdate()
    If IsHizuke(txtJuchuDate.Text) Then m_objJuchu.JuchuDate = CDate(txtJuchuDate.Text) Else Beep
    m_blnDirty = True
End Sub

Private Sub txtSuryo_KeyPress(ByVal KeyAscii As MSForms.ReturnInteger)
    If Not IsSujiKey(KeyAscii) Then KeyAscii = 0
End Sub

Private Sub txtTanka_KeyPress(ByVal KeyAscii As MSForms.ReturnInteger)
    If IsSujiKey(KeyAscii) Then Exit Sub
    KeyAscii = 0
End Sub

Private Function IsSujiKey(ByVal intKey As Integer) As Boolean
    IsSujiKey = (intKey >= 48 And intKey <= 57) Or intKey = 8
End Function

' 概要：明細の追加
Private Sub cmdTsuika_Click()
    Dim lngSuryo As Long
    Dim curTanka As Currency

    On Error GoTo ErrHandler
    lngSuryo = NzLng(txtSuryo.Text)
    curTanka = NzCur(txtTanka.Text)
    If Not IsShohinExist(cboShohin.Text) Then
        MsgBox "商品コードが正しくありません。", vbExclamation, APP_TITLE
        cboShohin.SetFocus
        Exit Sub
    End If
    If YukoZaiko(cboShohin.Text) < lngSuryo Then
        If Not Confirm("在庫が足りません。追加しますか？") Then Exit Sub
    End If
    m_objJuchu.AddMeisai cboShohin.Text, lngSuryo, curTanka
    m_blnDirty = True
    Exit Sub

ErrHandler:
    LogError "cmdTsuika_Click"
    ShowError "明細の追加"
End Sub

Private Sub cmdSakujo_Click()
    Dim objList As clsMeisaiList

    If lstMeisai.ListIndex < 0 Then Exit Sub
    Set objList = m_objJuchu.Meisai
    objList.RemoveAt lstMeisai.ListIndex + 1
    Call ShowMeisai: m_blnDirty = True
End Sub

' 処理内容：検査して登録し、続けて入力できるようにする
Private Sub cmdToroku_Click()
    Dim strErr As String

    On Error GoTo ErrHandler
    m_objJuchu.Biko = txtBiko.Text
    strErr = m_objJuchu.CheckInput()
    If Len(strErr) > 0 Then
        MsgBox strErr, vbExclamation, APP_TITLE
        Exit Sub
    End If
    Call modJuchu.TorokuJuchu(m_objJuchu)
    If Confirm("受注伝票を印刷しますか？") Then 伝票印刷 m_objJuchu.JuchuNo
    NewJuchu

ExitHere:
    SetScreen True
    Exit Sub

ErrHandler:
    Call LogError("cmdToroku_Click")
    Call ShowError("登録")
    Resume ExitHere
End Sub

Private Sub cmdKensaku_Click()
    Dim strNo As String

    With frmKensaku
        .SetJoken cboTokui.Text, ""
        strNo = .AskNo()
    End With
    If Len(strNo) > 0 Then ShowJuchu strNo
End Sub

Private Sub cmdTojiru_Click()
    Unload Me
End Sub

Private Sub cmdPreview_Click()
    受注一覧印刷 True
End Sub

' 概要：明細が加わったときの表示更新
Private Sub m_objJuchu_MeisaiAdded(ByVal lngGyoNo As Long)
    ShowMeisai
    lstMeisai.ListIndex = lngGyoNo - 1
End Sub

Private Sub m_objJuchu_StatusChanged(ByVal lngOld As Long, ByVal lngNew As Long)
    g_objLog.WriteInfo "状態 " & lngOld & " -> " & lngNew & " " & modConst.StatusName(lngNew)
End Sub
