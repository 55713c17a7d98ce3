# SPDX-License-Identifier: MIT
"""The vocabulary of the generated projects: names as Japanese macro authors choose them."""

VERBS = """Get Set Chk Upd Del Add Ins Cnv Fmt Put Mak Rev Srt Cpy Clr Opn Cls Sel Dsp Prt Exp Imp
Calc Load Save Find Init Open Close Read Write Make Sum Count Join Split Check Show Lock Merge
""".split()

NOUNS = """Order Item Stock Price Sales Cust Bill Tax Rate Date Month Year Staff Dept Area Plan
Shipment Invoice Ledger Budget Cost Total Detail Header Footer Table Column Row Cell Sheet Book File
Folder Path Name Code Kana Zip Tel Addr List Tree Graph Report Label Barcode Master Log Error Msg
Param Flag Key Index Range Value Text Line Page Group Rank Limit Term Holiday Shift Payment Deposit
Refund Return Supplier Maker Brand Lot Serial Box Shelf Route Truck Driver Port Contract Estimate
""".split()

TAILS = """All One Old New Tmp Max Min Sub Main Days Top Last Next Prev Data Info Num Str Ary Col
""".split()

CONTROLS = [("CommandButton", "Cmd"), ("TextBox", "Txt"), ("Label", "Lbl"), ("ComboBox", "Cmb"),
            ("CheckBox", "Chk"), ("ListBox", "Lst"), ("OptionButton", "Opt")]

CAPTIONS = ["実行", "閉じる", "検索", "登録", "削除", "印刷", "得意先", "商品コード", "数量", "単価",
            "納期", "担当者", "備考", "合計", "前月", "翌月", "全選択", "再表示"]

SHEETS = ["受注一覧", "売上明細", "在庫", "得意先マスタ", "商品マスタ", "設定", "集計", "作業", "請求書"]

PARTS = ["得意先", "受注明細", "在庫数", "単価", "消費税", "納期", "担当者", "行番号", "最終行",
         "シート名", "ファイル", "エラー", "件数", "合計金額", "棚番", "ロット", "前回値", "出力先"]

DEEDS = ["を取得する", "を更新する", "を確認する", "を計算する", "を初期化", "の書式を整える", "を一覧に出す",
         "が空なら終了", "を並べ替える", "を保存する", "の重複を除く", "は税込み", "を次の行へ送る"]

ASIDES = ["※ここは変更しないこと", "2019/04/01 仕様変更", "TODO: 高速化", "念のため", "旧処理",
          "strWork = \"\"", "Debug.Print lngRow", "画面更新を止める", "後で消す", "★要確認"]

MESSAGES = ["データがありません。", "処理が完了しました。", "入力内容を確認してください。", "件を更新しました。",
            "ファイルが見つかりません。", "よろしいですか？", "を選択してください。", "単位：円"]

NUMBERS = ["lngRow", "lngCol", "lngCnt", "lngMax", "lngIdx", "lngNo", "curSum", "dblRate", "intKbn"]
TEXTS = ["strName", "strCode", "strBuf", "strMsg", "strKey", "strPath", "strSql", "strWork"]
JAPANESE = ["行", "列", "件数", "合計", "品名", "単価"]
