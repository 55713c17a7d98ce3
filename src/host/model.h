// SPDX-License-Identifier: MIT
// The editor's object model, as far as the system needs it, under the model's own names. Everything
// that the system knows of a project comes through these interfaces and everything that it changes
// goes back through them; behind them stands the in-memory editor or the real one.
// Lines and columns are 1-based; columns count characters of the editor. A null pointer is the
// model's "nothing". A member that the host refuses throws `Host_Error`.
#pragma once

#include <string>
#include <string_view>

#include "host/command_bars.h"
#include "service/errors.h"

namespace oru::host {

class CodeModule;
class CodePane;
class VBProject;

/// The host refused; `number` is its error number.
class Host_Error : public service::Sys_Error {
 public:
  using Sys_Error::Sys_Error;
};

constexpr int kErr_Bad_Call = 5;       ///< arguments that do not go together
constexpr int kErr_Memory = 7;         ///< a text too large to hold
constexpr int kErr_Subscript = 9;      ///< no such line or item
constexpr int kErr_No_Procedure = 35;  ///< "Sub or Function not defined"
constexpr int kErr_No_Property = 438;  ///< the object has no such member
constexpr int kErr_Duplicate = 457;    ///< the name is taken
constexpr int kErr_Protected = 50289;  ///< the project is locked

/// What the editor takes at most: lines in a module, characters in a line, continuation marks in a
/// statement.
constexpr int kMost_Lines = 65'534;
constexpr int kMost_Characters = 1'023;
constexpr int kMost_Continuations = 24;

/// Kind of a procedure.
enum class ProcKind { Proc = 0, Let = 1, Set = 2, Get = 3 };

/// Type number of a component, as the host gives it.
enum ComponentType {
  kType_Module = 1,
  kType_Class = 2,
  kType_Form = 3,
  kType_Designer = 11,
  kType_Document = 100
};

/// A range of text: from (start_line, start_column) to before (end_line, end_column).
struct Selection {
  int start_line = 1, start_column = 1, end_line = 1, end_column = 1;
  bool operator==(const Selection&) const = default;
};

struct ProcAtLine {
  std::string name;  ///< empty for a line of the declaration section
  ProcKind kind = ProcKind::Proc;
};

class Window {
 public:
  virtual ~Window() = default;
  [[nodiscard]] virtual std::string Caption() const = 0;
  [[nodiscard]] virtual bool Visible() const = 0;
  virtual void Set_Visible(bool visible) = 0;
  [[nodiscard]] virtual int WindowState() const = 0;  ///< 0 normal, 1 minimised, 2 maximised
  virtual void Set_WindowState(int state) = 0;
  [[nodiscard]] virtual int Type() const = 0;  ///< 0 code, 1 designer, 12 main window
  virtual void Close() = 0;
  virtual void SetFocus() = 0;
};

class CodePane {
 public:
  virtual ~CodePane() = default;
  [[nodiscard]] virtual class CodeModule& CodeModule() = 0;
  [[nodiscard]] virtual class Window& Window() = 0;
  [[nodiscard]] virtual Selection GetSelection() const = 0;
  /// Lines and columns outside the text are moved to its nearest place.
  virtual void SetSelection(const Selection& selection) = 0;
  [[nodiscard]] virtual int TopLine() const = 0;
  virtual void Set_TopLine(int line) = 0;
  [[nodiscard]] virtual int CountOfVisibleLines() const = 0;
  virtual void Show() = 0;
};

class CodeModule {
 public:
  virtual ~CodeModule() = default;
  [[nodiscard]] virtual int CountOfLines() const = 0;
  /// Number of the last line of the declaration section; 0 if there is none.
  [[nodiscard]] virtual int CountOfDeclarationLines() const = 0;
  /// `count` lines from `start`, joined by CR LF, no final one; empty for a count of 0. Throws
  /// kErr_Subscript outside 1..CountOfLines.
  [[nodiscard]] virtual std::string Lines(int start, int count) const = 0;
  /// The procedure that holds the line; an empty name for the declaration section.
  [[nodiscard]] virtual ProcAtLine ProcOfLine(int line) const = 0;
  /// First line of the procedure, the comment block above it included. These three throw
  /// kErr_No_Procedure if there is none of that name and kind; the first one stands for a name
  /// that comes twice. Names are found without regard to letter case.
  [[nodiscard]] virtual int ProcStartLine(std::string_view name, ProcKind kind) const = 0;
  /// The line of the procedure's header statement.
  [[nodiscard]] virtual int ProcBodyLine(std::string_view name, ProcKind kind) const = 0;
  /// Lines from the start line to the line before the next procedure's start.
  [[nodiscard]] virtual int ProcCountLines(std::string_view name, ProcKind kind) const = 0;
  /// Searches `range`; -1 as end line or end column means to the end. On a hit `range` is the found
  /// place. A pattern knows * ? # and [list]; it excludes `match_case`.
  [[nodiscard]] virtual bool Find(std::string_view target, Selection& range, bool whole_word,
                                  bool match_case, bool pattern) const = 0;
  /// Inserts before `line` (CountOfLines + 1 appends); CR LF in the text makes several lines.
  virtual void InsertLines(int line, std::string_view text) = 0;
  virtual void DeleteLines(int line, int count = 1) = 0;
  virtual void ReplaceLine(int line, std::string_view text) = 0;
  /// Inserts before the first procedure, at the end if there is none.
  virtual void AddFromString(std::string_view text) = 0;
  /// The pane of the module, opened if need be.
  [[nodiscard]] virtual class CodePane& CodePane() = 0;
};

class Property {
 public:
  virtual ~Property() = default;
  [[nodiscard]] virtual std::string Name() const = 0;
  [[nodiscard]] virtual std::string Value() const = 0;
  virtual void Set_Value(std::string_view value) = 0;
};

class Properties {
 public:
  virtual ~Properties() = default;
  [[nodiscard]] virtual int Count() const = 0;
  /// By 1-based position or by name (letter case aside); null if there is none.
  [[nodiscard]] virtual Property* Item(int position) = 0;
  [[nodiscard]] virtual Property* Item(std::string_view name) = 0;
};

/// A control of a designer. The late-bound members throw when the control has no such property.
class Control {
 public:
  virtual ~Control() = default;
  [[nodiscard]] virtual std::string Name() const = 0;
  [[nodiscard]] virtual std::string TypeName() const = 0;
  [[nodiscard]] virtual std::string Text() const = 0;
  [[nodiscard]] virtual std::string Caption() const = 0;
  [[nodiscard]] virtual std::string Tag() const = 0;
  /// Any other property by its name (letter case aside), as the text that the host would show:
  /// "TabIndex", "TabStop", "Left", "Top", "Width", "Height" (in points), "Container" and so on.
  [[nodiscard]] virtual std::string Property(std::string_view name) const = 0;
};

class Controls {
 public:
  virtual ~Controls() = default;
  [[nodiscard]] virtual int Count() const = 0;
  [[nodiscard]] virtual Control* Item(int position) = 0;  ///< 1-based; null outside
  [[nodiscard]] virtual Control* Item(std::string_view name) = 0;
};

class Designer {
 public:
  virtual ~Designer() = default;
  [[nodiscard]] virtual class Controls& Controls() = 0;
};

class VBComponent {
 public:
  virtual ~VBComponent() = default;
  [[nodiscard]] virtual std::string Name() const = 0;
  [[nodiscard]] virtual int Type() const = 0;
  [[nodiscard]] virtual class CodeModule* CodeModule() = 0;  ///< null for one without code
  [[nodiscard]] virtual class Designer* Designer() = 0;      ///< null if closed or absent
  [[nodiscard]] virtual bool HasOpenDesigner() const = 0;
  [[nodiscard]] virtual class Properties& Properties() = 0;
  [[nodiscard]] virtual Window* DesignerWindow() = 0;
  virtual void Activate() = 0;
};

class VBComponents {
 public:
  virtual ~VBComponents() = default;
  [[nodiscard]] virtual int Count() const = 0;
  [[nodiscard]] virtual VBComponent* Item(int position) = 0;  ///< 1-based; null outside
  [[nodiscard]] virtual VBComponent* Item(std::string_view name) = 0;
};

class Reference {
 public:
  virtual ~Reference() = default;
  [[nodiscard]] virtual std::string Name() const = 0;
  [[nodiscard]] virtual std::string Description() const = 0;
  [[nodiscard]] virtual bool IsBroken() const = 0;
};

class References {
 public:
  virtual ~References() = default;
  [[nodiscard]] virtual int Count() const = 0;
  [[nodiscard]] virtual Reference* Item(int position) = 0;
};

/// State of a project's protection.
enum class Protection { None = 0, Locked = 1 };

class VBProject {
 public:
  virtual ~VBProject() = default;
  [[nodiscard]] virtual class VBComponents& VBComponents() = 0;
  [[nodiscard]] virtual enum Protection Protection() const = 0;
  [[nodiscard]] virtual std::string Name() const = 0;
  [[nodiscard]] virtual std::string Description() const = 0;
  /// Path of the file that holds the project; empty for one never saved.
  [[nodiscard]] virtual std::string FileName() const = 0;
  [[nodiscard]] virtual class References& References() = 0;
};

class VBProjects {
 public:
  virtual ~VBProjects() = default;
  [[nodiscard]] virtual int Count() const = 0;
  [[nodiscard]] virtual VBProject* Item(int position) = 0;
};

class CodePanes {
 public:
  virtual ~CodePanes() = default;
  [[nodiscard]] virtual int Count() const = 0;
  [[nodiscard]] virtual CodePane* Item(int position) = 0;
};

class Windows {
 public:
  virtual ~Windows() = default;
  [[nodiscard]] virtual int Count() const = 0;
  [[nodiscard]] virtual Window* Item(int position) = 0;
};

/// The editor's root object.
class VBE {
 public:
  virtual ~VBE() = default;
  [[nodiscard]] virtual VBProject* ActiveVBProject() = 0;
  [[nodiscard]] virtual class VBProjects& VBProjects() = 0;
  [[nodiscard]] virtual CodePane* ActiveCodePane() = 0;
  [[nodiscard]] virtual class CodePanes& CodePanes() = 0;
  [[nodiscard]] virtual class Windows& Windows() = 0;
  [[nodiscard]] virtual Window* ActiveWindow() = 0;
  [[nodiscard]] virtual Window& MainWindow() = 0;
  [[nodiscard]] virtual class CommandBars& CommandBars() = 0;
  [[nodiscard]] virtual class Events& Events() = 0;
};

}  // namespace oru::host
