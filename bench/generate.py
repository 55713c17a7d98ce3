#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes a project of exported files for the benchmarks: code page 932, CR LF, the statement mix of
a grown macro project. The same arguments always give the same bytes; each module draws from its
own random numbers, so that a module does not depend on how many others there are.

  generate.py --lines N --modules M --seed S --out DIR [--shape SHAPE]

SHAPE is `mixed` (standard modules, classes, forms, sheets) or one of the extremes, of which every
module is then an example: `comments` (all comment lines but for one procedure), `one-procedure`,
`many-procedures` (a class of procedures of 30 lines), `continuations` (24 in each statement).
The lines are those of the files, headers included."""

import argparse
import pathlib
import random

from words import (ASIDES, CAPTIONS, CONTROLS, DEEDS, JAPANESE, MESSAGES, NOUNS, NUMBERS, PARTS,
                   SHEETS, TAILS, TEXTS, VERBS)

SHAPES = ["mixed", "comments", "one-procedure", "many-procedures", "continuations"]
EXTENSION = {"standard": ".bas", "class": ".cls", "sheet": ".cls", "form": ".frm"}
PREFIX = {"standard": "Mod", "class": "Cls", "sheet": "Sheet", "form": "Frm"}
SMALLEST_PROCEDURE = 14
MOST_CONTINUATIONS = 24
CALL = ["{}", "{}", "{}", "Call {}"]


class Procedure:
    """What the plan fixes before any body is written, so that others can call it."""

    def __init__(self, name, word, arity, result):
        self.name, self.word, self.arity, self.result = name, word, arity, result


class Module:
    def __init__(self, name, kind, lines):
        self.name, self.kind, self.lines = name, kind, lines
        self.procedures, self.controls = [], []

    def callable(self):
        return [p for p in self.procedures if not p.word.startswith("Property") and "_" not in p.name]


def sizes(rng, lines, modules, even):
    """Line counts of the modules: a few large ones, many small ones; the sum is exact."""
    smallest = min(100, lines // modules)
    weights = [1.0 if even else rng.lognormvariate(0, 0.7) for _ in range(modules)]
    spare = lines - smallest * modules
    total = sum(weights)
    result = [smallest + int(spare * w / total) for w in weights]
    for i in range(lines - sum(result)):
        result[i % modules] += 1
    return result


def plan(args):
    rng = random.Random(args.seed)
    modules = []
    for i, lines in enumerate(sizes(rng, args.lines, args.modules, args.shape != "mixed")):
        kind = "standard"
        if args.shape == "many-procedures":
            kind = "class"
        elif args.shape == "mixed":
            kind = rng.choices(list(PREFIX), [60, 20, 10, 10])[0]
        name = f"{PREFIX[kind]}{rng.choice(NOUNS)}{i + 1:04d}" if kind != "sheet" else f"Sheet{i + 1}"
        modules.append(Module(name, kind, lines))
    public = set()
    for module in modules:
        plan_procedures(rng, module, args.shape, public)
    return modules


def plan_procedures(rng, module, shape, public):
    body = module.lines - 30
    count = {"comments": 1, "one-procedure": 1, "many-procedures": max(1, module.lines // 30),
             "continuations": max(1, body // 400)}.get(shape, max(1, body // 33))
    names = set()
    if module.kind == "form":
        module.controls = [(t, f"{p}{rng.choice(NOUNS)}{n}")
                           for n, (t, p) in enumerate(rng.choices(CONTROLS, k=rng.randint(4, 14)), 1)]
        for event in ["UserForm_Initialize"] + [f"{c}_Click" for t, c in module.controls
                                                if t == "CommandButton"]:
            module.procedures.append(Procedure(event, "Private Sub", 0, ""))
    if module.kind == "sheet":
        module.procedures.append(Procedure("Worksheet_Activate", "Private Sub", 0, ""))
    del module.procedures[count:]
    while len(module.procedures) < count:
        name = rng.choice(VERBS) + rng.choice(NOUNS)
        private = rng.random() < 0.35
        # Private helpers have the same names everywhere; public ones mostly do not.
        if not private and rng.random() < 0.95:
            name += rng.choice(NOUNS) + (rng.choice(TAILS) if rng.random() < 0.5 else "")
        while name in names or (not private and name in public and rng.random() < 0.95):
            name += rng.choice(TAILS)
        names.add(name)
        scope = "Private" if private else rng.choice(["Public", "Public", ""])
        if not private:
            public.add(name)
        if module.kind == "class" and rng.random() < 0.4:
            module.procedures.append(Procedure(name, f"{scope} Property Get".strip(), 0, "Long"))
            if len(module.procedures) < count:
                module.procedures.append(Procedure(name, f"{scope} Property Let".strip(), 1, ""))
            continue
        result = rng.choice(["Long", "String", "Boolean", "Currency"]) if rng.random() < 0.4 else ""
        word = f"{scope} {'Function' if result else 'Sub'}".strip()
        module.procedures.append(Procedure(name, word, rng.choice([0, 0, 1, 1, 2, 2, 3, 4]), result))


class Writer:
    """Writes one module. Every `..._lines` routine fills exactly the number of lines it is given."""

    def __init__(self, args, module, modules, classes):
        self.rng = random.Random(f"{args.seed}:{module.name}")
        self.shape, self.module, self.out = args.shape, module, []
        self.classes = self.rng.sample(classes, min(3, len(classes)))
        self.object = None  # the variable that holds an instance, and its class
        own = module.callable()
        # (what to write in front of the arguments, procedure)
        self.targets = [(p.name, p) for p in own if p.word != "Sub" or self.rng.random() < 0.9]
        for other in self.rng.sample(modules, min(8, len(modules))):
            if other.kind != "standard" or other is module:
                continue
            for p in other.callable()[:40]:
                if not p.word.startswith("Private"):
                    qualified = self.rng.random() < 0.4
                    self.targets.append((f"{other.name}.{p.name}" if qualified else p.name, p))
        self.subs = [t for t in self.targets if not t[1].result] or [("Beep", Procedure("Beep", "", 0, ""))]
        self.functions = [t for t in self.targets if t[1].result] or [("Timer", Procedure("Timer", "", 0, "x"))]
        self.makers = [self.number, self.number, self.number, self.text, self.text, self.text,
                       self.sub_call, self.sub_call, self.function_call, self.function_call,
                       self.cell, self.cell, self.cell, self.instance, self.instance, self.short_if,
                       self.short_if, self.library, self.library, self.message]

    # --- words -------------------------------------------------------------------------------

    def one(self, items):
        return items[int(self.rng.random() * len(items))]

    def digits(self, top):
        return int(self.rng.random() * top)

    def num(self):
        return self.one(JAPANESE) if self.rng.random() < 0.02 else self.one(NUMBERS)

    def value(self):
        r = self.rng.random()
        if r < 0.35:
            return self.num()
        if r < 0.6:
            return self.one(TEXTS)
        return str(self.digits(100)) if r < 0.85 else f'"{self.one(MESSAGES)}"'

    def values(self, count):
        return ", ".join(self.value() for _ in range(count))

    def note(self):
        r = self.rng.random()
        if r < 0.7:
            return "'" + self.one(PARTS) + self.one(DEEDS)
        return "' " + (self.one(ASIDES) if r < 0.9 else self.one(PARTS) + "(" + self.one(TEXTS) + ")")

    # --- statements of one line --------------------------------------------------------------

    def number(self):
        a, r = self.num(), self.rng.random()
        if r < 0.4:
            return f"{a} = {a} + {self.digits(9) + 1}"
        if r < 0.6:
            return f"{a} = {self.digits(1000)}"
        if r < 0.8:
            return f"{a} = ({self.num()} - {self.num()}) * {self.digits(90) + 2}"
        return f"{a} = Int({self.num()} / {self.digits(90) + 2}): {self.num()} = 0" if r < 0.84 else \
            f"{a} = Val(Mid({self.one(TEXTS)}, {self.digits(9) + 1}, 4))"

    def text(self):
        a, r = self.one(TEXTS), self.rng.random()
        if r < 0.3:
            return f'{a} = "{self.one(MESSAGES)}"'
        if r < 0.5:
            return f'{a} = Trim({self.one(TEXTS)}) & "-" & Format({self.num()}, "0000")'
        if r < 0.7:
            return f'{a} = {a} & ", " & {self.one(TEXTS)}'
        return f'{a} = ""' if r < 0.85 else f'{a} = Left({self.one(TEXTS)}, {self.digits(20) + 1})'

    def sub_call(self):
        name, p = self.one(self.subs)
        if p.arity == 0:
            return self.one(CALL).format(name)
        args = self.values(p.arity)
        return f"Call {name}({args})" if self.rng.random() < 0.3 else f"{name} {args}"

    def function_call(self):
        name, p = self.one(self.functions)
        call = f"{name}({self.values(p.arity)})" if p.arity else name
        if self.rng.random() < 0.7:
            return f"{self.num()} = {call}"
        return f"{self.one(TEXTS)} = {self.one(TEXTS)} & {call}"

    def cell(self):
        r, row, col = self.rng.random(), self.num(), self.digits(30) + 1
        if r < 0.35:
            return f"Cells({row}, {col}).Value = {self.value()}"
        if r < 0.6:
            return f"{self.num()} = Cells({row}, {col}).Value"
        if r < 0.8:
            return f'Sheets("{self.one(SHEETS)}").Range("B{col}").Value = {self.value()}'
        return f'Range(Cells({row}, 1), Cells({row}, {col})).ClearContents'

    def instance(self):
        if self.object is None:
            return self.text()
        target, of = self.object
        r = self.rng.random()
        if r < 0.1:
            return f"Set {target} = New {of.name}"
        if r < 0.15:
            return f"Set {target} = Nothing"
        p = self.one(of.procedures)
        if p.word.endswith("Let"):
            return f"{target}.{p.name} = {self.value()}"
        args = self.values(p.arity)
        if p.result:
            return f"{self.num()} = {target}.{p.name}({args})" if args else f"{self.num()} = {target}.{p.name}"
        return f"{target}.{p.name} {args}".rstrip()

    def short_if(self):
        then = self.one([self.number, self.text, self.sub_call])()
        return f"If {self.condition()} Then {then}"

    def condition(self):
        r = self.rng.random()
        if r < 0.4:
            return f"{self.num()} {self.one(['>', '<', '=', '<>', '>='])} {self.digits(100)}"
        if r < 0.7:
            return f'{self.one(TEXTS)} {self.one(["=", "<>"])} ""'
        return f"{self.num()} > {self.num()} And {self.one(TEXTS)} <> {self.one(TEXTS)}"

    def library(self):
        r = self.rng.random()
        if r < 0.25:
            return "DoEvents"
        if r < 0.5:
            return f"Debug.Print {self.value()}"
        if r < 0.75:
            return f"Application.ScreenUpdating = {self.one(['True', 'False'])}"
        return f"varList({self.num()}) = {self.value()}"

    def message(self):
        return f'MsgBox "{self.one(MESSAGES)}", vbExclamation'

    # --- runs of lines -----------------------------------------------------------------------

    def continued(self, count, pad):
        """One statement over `count` physical lines."""
        out, more = self.out, pad + "        "
        if self.rng.random() < 0.6:
            out.append(f'{pad}strSql = "SELECT " & _')
            for _ in range(count - 2):
                out.append(f'{more}"{self.one(NOUNS)}.{self.one(NOUNS)}, " & _')
            out.append(f'{more}"{self.one(NOUNS)}"')
        else:
            out.append(f"{pad}Call {self.one(self.subs)[0]}( _")
            for _ in range(count - 2):
                out.append(f"{more}{self.value()}, _")
            out.append(f"{more}{self.value()})")

    def block_lines(self, count, pad):
        """`count` lines of statements, comments, blank lines and blocks."""
        out, rand, end = self.out, self.rng.random, len(self.out) + count
        while len(out) < end:
            left, r = end - len(out), rand()
            if r < 0.078 and left >= 4 and len(pad) < 24:
                self.compound(min(left, 4 + self.digits(11)), pad)
            elif r < 0.225 and left > 1:
                out.append(pad + self.note())
            elif r < 0.33 and left > 1:
                out.append("")
            elif r < 0.34 and left >= 4:
                self.continued(2 + self.digits(3), pad)
            else:
                statement = self.one(self.makers)()
                if r > 0.97:
                    statement += "  " + self.note()
                elif r > 0.968:
                    statement = f"{self.digits(90) * 10 + 10} {statement}"
                out.append(pad + statement)

    def compound(self, count, pad):
        """A block of `count` lines, at least four."""
        out, inner, r = self.out, pad + "    ", self.rng.random()
        if r < 0.4:
            out.append(f"{pad}If {self.condition()} Then")
            if count > 5:
                half = (count - 3) // 2
                self.block_lines(half, inner)
                out.append(pad + ("Else" if self.rng.random() < 0.7 else f"ElseIf {self.condition()} Then"))
                self.block_lines(count - 3 - half, inner)
            else:
                self.block_lines(count - 2, inner)
            out.append(pad + "End If")
        elif r < 0.6:
            v = self.num()
            out.append(f"{pad}For {v} = 1 To {self.value()}")
            self.block_lines(count - 2, inner)
            out.append(f"{pad}Next {v}" if self.rng.random() < 0.5 else pad + "Next")
        elif r < 0.72:
            out.append(f"{pad}Do While {self.condition()}")
            self.block_lines(count - 2, inner)
            out.append(pad + "Loop")
        elif r < 0.86:
            out.append(f"{pad}Select Case {self.num()}")
            first = max(1, (count - 4) // 2)
            out.append(f"{pad}Case {self.digits(10)}, {self.digits(10) + 10}")
            self.block_lines(first if count > 4 else 1, inner)
            if count > 4:
                out.append(pad + "Case Else")
                self.block_lines(count - 4 - first, inner)
            out.append(pad + "End Select")
        else:
            out.append(f'{pad}With Sheets("{self.one(SHEETS)}")')
            for _ in range(count - 2):
                column = self.digits(20) + 1
                out.append(f"{inner}.Cells({self.num()}, {column}).Value = {self.value()}"
                           if self.rng.random() < 0.6 else f'{inner}.Range("A{column}").Font.Bold = True')
            out.append(pad + "End With")

    def continuation_lines(self, count):
        while count > MOST_CONTINUATIONS + 1:
            self.continued(MOST_CONTINUATIONS + 1, "    ")
            count -= MOST_CONTINUATIONS + 1
        if count == 1:
            self.out.append("    " + self.number())
        elif count > 1:
            self.continued(count, "    ")

    # --- parts of a module -------------------------------------------------------------------

    def header(self):
        m, out = self.module, self.out
        if m.kind == "form":
            out += ["VERSION 5.00", f"Begin VB.Form {m.name}",
                    f'   Caption         =   "{self.one(CAPTIONS)}"', "   ClientHeight    =   6000"]
            for at, (kind, name) in enumerate(m.controls):
                out += [f"   Begin VB.{kind} {name}",
                        f'      {"Text" if kind == "TextBox" else "Caption":16}=   "{self.one(CAPTIONS)}"',
                        f"      Height          =   {self.digits(40) * 15 + 300}",
                        f"      TabIndex        =   {at}", "   End"]
            out.append("End")
        elif m.kind != "standard":
            out += ["VERSION 1.0 CLASS", "BEGIN", "  MultiUse = -1  'True", "END"]
        out.append(f'Attribute VB_Name = "{m.name}"')
        if m.kind != "standard":
            shown = "True" if m.kind in ("sheet", "form") else "False"
            out += ["Attribute VB_GlobalNameSpace = False", "Attribute VB_Creatable = False",
                    f"Attribute VB_PredeclaredId = {shown}",
                    f"Attribute VB_Exposed = {'True' if m.kind == 'sheet' else 'False'}"]
        out += ["Option Explicit", ""]

    def declarations(self, room):
        """Declarations of at most `room` lines."""
        out, m, rng = self.out, self.module, self.rng
        parts = [[f"'モジュール : {m.name}", f"'{self.one(PARTS)}{self.one(DEEDS)}", ""]]
        scope = "Private" if m.kind != "standard" else self.one(["Private", "Public"])
        parts.append([f"Private m_{self.one(NOUNS)}{n} As {self.one(['Long', 'String', 'Variant', 'Currency'])}"
                      for n in range(rng.randint(1, 5))] +
                     [f"Private m_objMain As {c.name}" for c in self.classes[:1]])
        parts.append([f"{scope} Const {self.one(NOUNS).upper()}_{n} As Long = {self.digits(100)}  {self.note()}"
                      for n in range(rng.randint(1, 5))] + [f'Private Const SHEET_NAME = "{self.one(SHEETS)}"'])
        if rng.random() < 0.3:
            parts.append([f"Private Type {self.one(NOUNS)}_Rec"] +
                         [f"    {noun} As {self.one(['Long', 'String * 10', 'Date'])}"
                          for noun in rng.sample(NOUNS, 4)] + ["End Type", ""])
        if rng.random() < 0.3:
            parts.append([f"{scope} Enum {self.one(NOUNS)}_Kbn"] +
                         [f"    e{noun}{' = 1' if n == 0 else ''}" for n, noun in enumerate(rng.sample(NOUNS, 4))] +
                         ["End Enum", ""])
        if m.kind == "standard" and rng.random() < 0.1:
            parts.append(['Private Declare PtrSafe Function GetTickCount Lib "kernel32" () As Long'])
        for part in parts:
            if len(part) <= room:
                out += part
                room -= len(part)

    def procedure(self, p, count, last):
        """One procedure with its comment block and, unless it is the last one, a blank line."""
        out, rng, end = self.out, self.rng, len(self.out) + count
        if rng.random() < 0.85:
            rule = "'" + "-" * 40
            out += [rule, f"' 機能 : {self.one(PARTS)}{self.one(DEEDS)}"]
            if p.arity:
                out.append(f"' 引数 : {self.one(PARTS)}")
            out += [f"' 戻値 : {self.one(PARTS)}", rule] if p.result else [rule]
        kinds = ["ByVal pNo As Long", "ByRef pText As String", "Optional pMode As Integer = 0",
                 "Optional pValue As Variant"]
        params = "vNew As Long" if p.word.endswith("Let") else ", ".join(kinds[:p.arity])
        out.append(f"{p.word} {p.name}({params})" + (f" As {p.result}" if p.result else ""))
        numbers = rng.sample(NUMBERS, 2)
        tail = ["End " + p.word.split()[-2 if "Property" in p.word else -1]]
        if not last:
            tail.append("")
        if count >= 30 and rng.random() < 0.5:
            out.append("    On Error GoTo ErrHandler")
            leave = "Exit " + tail[0][4:]
            tail = [f"    {leave}", "ErrHandler:", '    MsgBox Err.Description, vbCritical'] + tail
        self.object = ("m_objMain", self.classes[0]) if self.classes else None
        room = end - len(out) - len(tail)
        if room > 7:
            out.append(f"    Dim {numbers[0]} As Long, {numbers[1]} As Long")
            for name in rng.sample(TEXTS, 1 + self.digits(3)):
                out.append(f"    Dim {name} As String")
            if self.classes and rng.random() < 0.5:
                self.object = ("objItem", self.one(self.classes))
                new = "New " if rng.random() < 0.3 else ""
                out.append(f"    Dim objItem As {new}{self.object[1].name}")
            if rng.random() < 0.5:
                out.append("")
        body = end - len(out) - len(tail)
        if p.result and body > 1:
            tail.insert(0, f"    {p.name} = {self.num()}")
            body -= 1
        if self.shape == "continuations":
            self.continuation_lines(body)
        else:
            self.block_lines(body, "    ")
        out += tail

    def write(self):
        m, out, rng = self.module, self.out, self.rng
        self.header()
        if self.shape == "comments":
            while len(out) < m.lines - SMALLEST_PROCEDURE:
                out.append(self.note())
        elif self.shape == "mixed":
            self.declarations(m.lines - len(out) - SMALLEST_PROCEDURE)
        left = len(m.procedures)
        for at, p in enumerate(m.procedures):
            room = m.lines - len(out)
            if room < SMALLEST_PROCEDURE:
                break
            mean, last = room / left, at == len(m.procedures) - 1
            count = room if last else max(SMALLEST_PROCEDURE, int(mean * rng.uniform(0.78, 1.22)))
            if room - count < SMALLEST_PROCEDURE:
                count, last = room, True
            self.procedure(p, count, last)
            left -= 1
        out += [""] * (m.lines - len(out))
        return "\r\n".join(out) + "\r\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("--lines", type=int, required=True)
    parser.add_argument("--modules", type=int, required=True)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--out", type=pathlib.Path, required=True)
    parser.add_argument("--shape", choices=SHAPES, default="mixed")
    args = parser.parse_args()
    if args.modules < 1 or args.lines < 50 * args.modules:
        parser.error("a module takes 50 lines at least")
    args.out.mkdir(parents=True)  # an old project must not mix with the new one
    modules = plan(args)
    classes = [m for m in modules if m.kind == "class"]
    for m in modules:
        text = Writer(args, m, modules, classes).write()
        (args.out / (m.name + EXTENSION[m.kind])).write_bytes(text.encode("cp932"))


if __name__ == "__main__":
    main()
