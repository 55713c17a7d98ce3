VERSION 5.00
Begin {C62A69F0-16DC-11CE-9E98-00AA00574A4F} frmOrder 
   Caption         =   "受注入力"
   ClientHeight    =   3000
   Begin MSForms.Frame fraMain 
      Caption         =   "明細"
      Begin MSForms.CommandButton cmdOk 
         Caption         =   "登録(&R)"
         Tag             =   "main"
      End
   End
End
Attribute VB_Name = "frmOrder"
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
Option Explicit

Private Sub cmdOk_Click()
    modMain.RunDaily
End Sub

Private Sub cmdGone_Click()
    Unload Me
End Sub

Private Sub UserForm_Initialize()
End Sub
