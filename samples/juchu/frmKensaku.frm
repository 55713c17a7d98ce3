VERSION 5.00
Begin {C62A69F0-16DC-11CE-9E98-00AA00574A4F} frmKensaku 
   Caption         =   "受注検索"
   ClientHeight    =   5400
   ClientLeft      =   45
   ClientTop       =   390
   ClientWidth     =   6900
   OleObjectBlob   =   "frmKensaku.frx":0000
   StartUpPosition =   1  'オーナー フォームの中央
   Begin MSForms.Frame fraJoken 
      Caption         =   "検索条件"
      Height          =   1200
      Left            =   120
      Top             =   120
      Width           =   6600
      Begin MSForms.OptionButton optTokui 
         Caption         =   "得意先(&T)"
         Height          =   270
         Left            =   120
         Top             =   300
         Width           =   1500
      End
      Begin MSForms.OptionButton optShohin 
         Caption         =   "商品(&S)"
         Height          =   270
         Left            =   1740
         Top             =   300
         Width           =   1500
      End
      Begin MSForms.TextBox txtKeyword 
         Height          =   300
         Left            =   120
         Tag             =   "検索語"
         Text            =   ""
         Top             =   720
         Width           =   4200
      End
      Begin MSForms.CommandButton cmdKensaku 
         Caption         =   "検索(&F)"
         Height          =   330
         Left            =   4500
         Top             =   705
         Width           =   1500
      End
   End
   Begin MSForms.ListBox lstKekka 
      Height          =   3000
      Left            =   120
      Top             =   1440
      Width           =   6600
   End
   Begin MSForms.Label lblKensu 
      Caption         =   ""
      Height          =   240
      Left            =   120
      Top             =   4560
      Width           =   3000
   End
   Begin MSForms.CommandButton cmdOK 
      Caption         =   "OK"
      Height          =   360
      Left            =   3840
      Top             =   4860
      Width           =   1380
   End
   Begin MSForms.CommandButton cmdCancel 
      Caption         =   "キャンセル"
      Height          =   360
      Left            =   5340
      Tag             =   "取消"
      Top             =   4860
      Width           =   1380
   End
End
Attribute VB_Name = "frmKensaku"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
Option Explicit
' 受注検索フォーム

Private Const MAX_KEKKA As Long = 200
Private m_strSelected As String
Private m_lngKensu As Long

Private Sub UserForm_Activate()
    txtKeyword.SetFocus
    If Len(txtKeyword.Text) > 0 Then Call cmdKensaku_Click
End Sub

' 概要：呼び出し側から条件を渡す
Public Sub SetJoken(ByVal strTokui As String, ByVal strShohin As String)
    If Len(strShohin) > 0 Then
        optShohin.Value = True
        txtKeyword.Text = strShohin
    Else
        optTokui.Value = True
        txtKeyword.Text = strTokui
    End If
End Sub

' 概要：フォームを開き、選ばれた受注番号を返す
Public Function AskNo() As String
    m_strSelected = ""
    Me.Show vbModal
    AskNo = m_strSelected
End Function

Public Property Get Kensu() As Long
    Kensu = m_lngKensu
End Property

' 処理内容：条件に合う受注を一覧に出す
'           同じ番号は一度だけ出す
Private Sub cmdKensaku_Click()
    Dim objDic As Object
    Dim lngRow As Long
    Dim strNo As String

    Set objDic = CreateObject("Scripting.Dictionary")
    lstKekka.Clear: m_lngKensu = 0
    For lngRow = ROW_TOP To GetLastRow(shtJuchu, jcJuchuNo)
        strNo = NzStr(shtJuchu.Cells(lngRow, jcJuchuNo).Value)
        If IsMatch(lngRow) And Not objDic.Exists(strNo) Then
            objDic.Add strNo, lngRow
            lstKekka.AddItem strNo
            m_lngKensu = m_lngKensu + 1
            If m_lngKensu >= MAX_KEKKA Then Exit For
        End If
    Next lngRow
    lblKensu.Caption = m_lngKensu & " 件"
End Sub

' 概要：行が条件に合うか
Private Function IsMatch(ByVal lngRow As Long) As Boolean
    Dim strTarget As String

    If optTokui.Value Then
        strTarget = NzStr(shtJuchu.Cells(lngRow, jcTokuiCode).Value)
    Else
        strTarget = NzStr(shtJuchu.Cells(lngRow, jcShohinCode).Value)
    End If
    IsMatch = InStr(1, ToHankaku(strTarget), ToHankaku(txtKeyword.Text), vbTextCompare) > 0
End Function

Private Sub txtKeyword_KeyDown(ByVal KeyCode As MSForms.ReturnInteger, ByVal Shift As Integer)
    If KeyCode = 13 Then cmdKensaku_Click: KeyCode = 0
End Sub

Private Sub lstKekka_DblClick(ByVal Cancel As MSForms.ReturnBoolean)
    cmdOK_Click
End Sub

Private Sub cmdOK_Click()
    If lstKekka.ListIndex >= 0 Then m_strSelected = lstKekka.List(lstKekka.ListIndex)
    Me.Hide
End Sub

Private Sub cmdCancel_Click()
    m_strSelected = ""
    Me.Hide
End Sub

Private Sub ClearKekka()
    lstKekka.Clear
    m_lngKensu = 0
End Sub
