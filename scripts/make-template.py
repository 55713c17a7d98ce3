#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes share/標準書式.doc, the document template that comes with the program, as rich text, which
every word processor opens under that extension. Run it after changing the sections below.

  scripts/make-template.py OUTPUT"""

import sys

FORMATS = [("R01", "モジュール一覧"), ("R02", "変数一覧"), ("R03", "定数一覧"),
           ("R04", "型・列挙・イベント一覧"), ("R05", "ユーザ定義型メンバ一覧"),
           ("R11", "プロシージャ一覧"), ("R21", "プロシージャ仕様書"), ("R70", "表紙")]
SECTIONS = {
    "RCMH": ["%SN"],
    "RCMF": ["%JN"],
    "R01H": ["%JN  モジュール一覧", ["項番", "種別", "モジュール名", "概要"]],
    "R01D": [["%NO", "%MT", "%MN", "%MX"]],
    "R02H": ["%MN  変数一覧", ["項番", "変数名", "公開", "型", "配列", "説明"]],
    "R02D": [["%NO", "%DN", "%DS", "%DT", "%DO", "%DX"]],
    "R03H": ["%MN  定数一覧", ["項番", "定数名", "公開", "型", "値", "説明"]],
    "R03D": [["%NO", "%DN", "%DS", "%DT", "%DC", "%DX"]],
    "R04H": ["%MN  型・列挙・イベント一覧", ["項番", "名前", "公開", "説明"]],
    "R04D": [["%NO", "%DN", "%DS", "%DX"]],
    "R05H": ["%DN  メンバ一覧", ["項番", "メンバ名", "型", "配列", "説明"]],
    "R05D": [["%NO", "%TN", "%TT", "%TO", "%TX"]],
    "R11H": ["%MN  プロシージャ一覧", ["項番", "種別", "公開", "プロシージャ名", "概要"]],
    "R11D": [["%NO", "%PT", "%PS", "%PN", "%PX"]],
    "R21H": ["%MN.%PN", ["種別", "%PT", "公開", "%PS"], ["概要", "%PX"]],
    "R211": ["引数", ["項番", "引数名", "型", "渡し方", "省略", "既定値", "説明"]],
    "R21A": [["%NO", "%AN", "%AT", "%AR", "%AO", "%AV", "%AX"]],
    "R21R": ["戻り値", ["%RT", "%RX"]],
    "R212": ["変数", ["項番", "変数名", "型", "配列", "説明"]],
    "R21V": [["%NO", "%DN", "%DT", "%DO", "%DX"]],
    "R213": ["定数", ["項番", "定数名", "型", "値", "説明"]],
    "R21S": [["%NO", "%DN", "%DT", "%DC", "%DX"]],
    "R214": ["参照", ["項番", "モジュール名", "プロシージャ名", "概要"]],
    "R21P": [["%NO", "%MN", "%PN", "%PX"]],
    "R70U": ["%SN", "%JN", "%JX"],
}
WIDTH = 9600  # of a table, twips


def text(words):
    out = []
    for char in words:
        code = ord(char)
        if char in "\\{}":
            out.append("\\" + char)
        elif code < 128:
            out.append(char)
        else:
            out.append(f"\\u{code - 65536 if code > 32767 else code}?")
    return "".join(out)


def paragraph(words):
    return f"\\pard\\plain\\f0\\fs21 {text(words)}\\par\n"


def table_row(cells):
    edges = "".join(f"\\clbrdrt\\brdrs\\clbrdrl\\brdrs\\clbrdrb\\brdrs\\clbrdrr\\brdrs\\cellx{WIDTH * (i + 1) // len(cells)}"
                    for i in range(len(cells)))
    inner = "".join(f"\\pard\\plain\\intbl\\f0\\fs21 {text(cell)}\\cell " for cell in cells)
    return f"\\trowd\\trgaph70{edges}\n{inner}\\row\n"


def main():
    body = paragraph("書式定義ドキュメント") + table_row(["【書式No】", "書式名"])
    body += "".join(table_row(row) for row in FORMATS)
    for name, pieces in SECTIONS.items():
        body += paragraph(f"#{name}S%")
        for piece in pieces:
            body += paragraph(piece) if isinstance(piece, str) else table_row(piece)
        body += paragraph(f"#{name}F%")
    document = ("{\\rtf1\\ansi\\ansicpg932\\uc1\\deff0{\\fonttbl{\\f0\\fmodern\\fcharset128 "
                + text("ＭＳ ゴシック") + ";}}\n\\paperw11906\\paperh16838\\margl1134\\margr1134\n" + body + "}\n")
    with open(sys.argv[1], "w", encoding="ascii", newline="\r\n") as file:
        file.write(document)


if __name__ == "__main__":
    main()
