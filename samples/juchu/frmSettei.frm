VERSION 5.00
Begin {C62A69F0-16DC-11CE-9E98-00AA00574A4F} frmSettei 
   Caption         =   "環境設定"
   ClientHeight    =   3600
   ClientLeft      =   45
   ClientTop       =   390
   ClientWidth     =   6000
   OleObjectBlob   =   "frmSettei.frx":0000
   StartUpPosition =   2  '画面の中央
   Begin MSForms.Label lblFolder 
      Caption         =   "保存先フォルダ(&P)"
      Height          =   240
      Left            =   120
      Top             =   150
      Width           =   1500
   End
   Begin MSForms.TextBox txtFolder 
      Height          =   300
      Left            =   1740
      Tag             =   "Folder"
      Text            =   "C:\JUCHU"
      Top             =   120
      Width           =   3300
   End
   Begin MSForms.CommandButton cmdSansho 
      Caption         =   "参照(&B)..."
      Height          =   300
      Left            =   5100
      Top             =   120
      Width           =   780
   End
   Begin MSForms.CheckBox chkAutoSave 
      Caption         =   "自動保存する(&A)"
      Height          =   270
      Left            =   120
      Top             =   600
      Width           =   2100
   End
   Begin MSForms.TextBox txtInterval 
      Height          =   300
      Left            =   2400
      Tag             =   "Interval"
      Text            =   "10"
      Top             =   585
      Width           =   600
   End
   Begin MSForms.TextBox txtZeiritsu 
      Height          =   300
      Left            =   2400
      Tag             =   "Zeiritsu"
      Text            =   "10"
      Top             =   1020
      Width           =   600
   End
   Begin MSForms.CommandButton cmdOK 
      Caption         =   "OK"
      Height          =   360
      Left            =   3000
      Top             =   3060
      Width           =   1380
   End
   Begin MSForms.CommandButton cmdCancel 
      Caption         =   "キャンセル"
      Height          =   360
      Left            =   4500
      Top             =   3060
      Width           =   1380
   End
End
Attribute VB_Name = "frmSettei"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
' 環境設定フォーム
Option Explicit

Private m_blnOK As Boolean

Private Sub UserForm_Initialize()
    Call InitControls
End Sub

Private Sub InitControls()
    txtFolder.Text = g_strFolder
    txtInterval.Text = CStr(g_lngInterval)
    txtZeiritsu.Text = CStr(g_dblZeiritsu * 100)
    chkAutoSave.Value = g_blnAutoSave
End Sub

' 概要：入力の検査
' 戻り値：誤りのある項目名。なければ空文字列
Private Function FindBadItem() As String
    Dim objCtl As Object

    For Each objCtl In Me.Controls
        Select Case objCtl.Tag
            Case "Folder"
                If Not IsFolderExist(objCtl.Text) Then FindBadItem = "保存先フォルダ": Exit Function
            Case "Interval", "Zeiritsu"
                If Not IsNumeric(objCtl.Text) Then FindBadItem = objCtl.Tag: Exit Function
        End Select
    Next objCtl
End Function

Private Sub cmdOK_Click()
    Dim strBad As String

    strBad = FindBadItem()
    If Len(strBad) > 0 Then
        MsgBox strBad & " の値が正しくありません。", vbExclamation, APP_TITLE
        Exit Sub
    End If
    g_strFolder = txtFolder.Text
    g_lngInterval = CLng(txtInterval.Text)
    g_dblZeiritsu = CDbl(txtZeiritsu.Text) / 100
    g_blnAutoSave = chkAutoSave.Value
    modSettei.SaveSettei
    If g_blnAutoSave Then Call StartAutoSave Else Call StopAutoSave
    m_blnOK = True
    Unload Me
End Sub

Private Sub cmdCancel_Click()
    Unload Me
End Sub

Private Sub cmdSansho_Click()
    Dim strFolder As String

    strFolder = AskFolder(txtFolder.Text)
    If Len(strFolder) > 0 Then txtFolder.Text = strFolder
End Sub

' 概要：自動保存の欄の使用可否をそろえる
Private Sub chkAutoSave_Click()
    txtInterval.Enabled = chkAutoSave.Value
End Sub
