// SPDX-License-Identifier: MIT
// The commands of the program: each takes a session, analysed where it needs the tables, and its
// options, asks the views, and prints. The options are plain values, filled by the command line.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "app/cli/output.h"
#include "app/file_project.h"
#include "app/session.h"
#include "query/rich_text.h"
#include "transform/line_numbers.h"
#include "transform/line_tools.h"
#include "transform/trace.h"
#include "views/references.h"

namespace CLI {
class App;
}

namespace oru::app {

/// Where and how a command prints.
struct Output {
  std::ostream& out;
  std::ostream& err;
  Format format = Format::Columns;
  std::size_t width = 0;  ///< of the terminal, 0 for none
  bool colours = false;   ///< the terminal shows colours, and the user wants them
};

/// What a command works on.
struct Work {
  Session& session;
  File_Project& project;
  double seconds = 0;  ///< reading and analysing
};

/// What `oru list` was asked for.
struct List_Options {
  std::string Filter;         ///< a filter row's text, or its English word; empty for all
  std::string Sort = "name";  ///< see the help
  std::string Module;         ///< only this module's procedures
  bool Grouped = false;       ///< by module first
  bool Copy = false;          ///< the text for the clipboard
};

/// What `oru history` was asked for.
struct History_Options {
  std::string Filter;  ///< names, in the shorthand of the view
};
void Add_History_Options(CLI::App& command, History_Options& options);

/// What `oru extract` and `oru import` were asked for.
struct Exchange_Options {
  std::string Book, Folder;
  bool Overwrite = false;  ///< extract: replace files that have other content
  bool Signed = false;     ///< import: write although a signature becomes invalid
};
void Add_Extract_Options(CLI::App& command, Exchange_Options& options);
void Add_Import_Options(CLI::App& command, Exchange_Options& options);

/// Files into which a coloured text is written beside or instead of the terminal.
struct Text_Files {
  std::string Rtf, Html;
  [[nodiscard]] bool Empty() const { return Rtf.empty() && Html.empty(); }
};
void Add_Text_Files(CLI::App& command, Text_Files& files);
/// Writes them. False, and told, if one cannot be written, or is named like a module or a workbook.
[[nodiscard]] bool Save_Text(const Output& output, const query::Rich_Text& text,
                             const Text_Files& files, std::string_view title);
/// Writes one such file. False, and told, as above.
[[nodiscard]] bool Save_Bytes(const Output& output, const std::string& path,
                              std::string_view bytes);
/// Prints a coloured text as the terminal can show it.
void Print_Text(const Output& output, const query::Rich_Text& text);

/// The one member of that name. Another exit code, and told, if there is none or more than one.
[[nodiscard]] int Find_One(const Work& work, const Output& output, const std::string& name,
                           views::Member_Name& found);

/// What `oru search` and `oru replace` were asked for.
struct Search_Options {
  std::string Kind = "text";
  std::vector<std::string> Words;  ///< of a replacement: old and new by turns
  bool Exact = false, Assigned = false, Any = false, Binary = false;
  bool No_Comments = false, No_Commented_Out = false, No_Literals = false;
  std::string Module, Procedure;  ///< the scope; both empty: the project
  bool By_Name = false;           ///< procedures sorted by name
  bool Relative = false;          ///< line numbers count from the procedure
  Text_Files Files;
  bool Write = false;   ///< replace: change the files
  bool Signed = false;  ///< replace: write although a signature becomes invalid
};
void Add_Search_Options(CLI::App& command, Search_Options& options);
void Add_Replace_Options(CLI::App& command, Search_Options& options);

/// What `oru outline` was asked for.
struct Outline_Options {
  std::string Name;              ///< "Module.Member", a member, or a module
  std::string Show = "control";  ///< see the help
  std::vector<std::string> Comments;
  int Levels = 0, From = 0;
  bool Blank = false, No_Calls = false, Call_Comments = false, Commented_Out = false;
  bool No_Jumps = false, No_Directives = false, Relative = false;
  std::string Element;  ///< a word that statements have to hold
  bool Mark = false;    ///< others are shown too
  Text_Files Files;
};
void Add_Outline_Options(CLI::App& command, Outline_Options& options);

/// What `oru chart` was asked for.
struct Chart_Options {
  std::string Name;  ///< "Module.Member", a member; of the unreferenced a module
  bool Callees = false, Callers = false, Unreferenced = false;  ///< the first if none is set
  bool Compact = false, Full = false, No_Error_Handlers = false;
  bool Copy = false;  ///< the text for the clipboard
  int Levels = 0;
  std::string Dot, Svg;  ///< files; "-" is the standard output
  Text_Files Files;
};
void Add_Chart_Options(CLI::App& command, Chart_Options& options);

/// What a command that rewrites code was asked for.
struct Edit_Options {
  std::vector<std::string> Names;  ///< modules, procedures; none: the project
  std::string Range;               ///< "Module:FROM-TO"
  bool Write = false, Check = false;
  bool Signed = false;  ///< write although a signature becomes invalid
  int Indent = 0;       ///< 0: as the options say
  bool Keep_Declarations = false, Labels_Left = false;
  std::string Statement, Statistics;
  bool Public_Only = false, No_Sub = false, No_Function = false, No_Property = false;
};
void Add_Format_Options(CLI::App& command, Edit_Options& options);
void Add_Lines_Options(CLI::App& command, Edit_Options& options);
void Add_Number_Options(CLI::App& command, Edit_Options& options);
void Add_Trace_Options(CLI::App& command, Edit_Options& options);
void Add_Trace_Table_Options(CLI::App& command, Edit_Options& options);

/// Adds the options of the two lists to their commands.
void Add_Module_List_Options(CLI::App& command, List_Options& options);
void Add_Procedure_List_Options(CLI::App& command, List_Options& options);

[[nodiscard]] int Cmd_Analyse(const Work& work, const Output& output);
[[nodiscard]] int Cmd_List_Modules(const Work& work, const Output& output,
                                   const List_Options& options);
[[nodiscard]] int Cmd_List_Procedures(const Work& work, const Output& output,
                                      const List_Options& options);
[[nodiscard]] int Cmd_Refs(const Work& work, const Output& output, const std::string& member);
[[nodiscard]] int Cmd_Unused(const Work& work, const Output& output);
[[nodiscard]] int Cmd_Tables(const Work& work, const Output& output);
/// The members edited, newest first.
[[nodiscard]] int Cmd_History(const Work& work, const Output& output,
                              const History_Options& options);
/// The commands of the menus, as they stand there.
[[nodiscard]] int Cmd_Commands(const Work& work, const Output& output);

/// The statements of a kind that match, as coloured lines, rows, or files.
[[nodiscard]] int Cmd_Search(const Work& work, const Output& output, const Search_Options& options);
/// The control structure of a procedure, or of all procedures of a module.
[[nodiscard]] int Cmd_Outline(const Work& work, const Output& output,
                              const Outline_Options& options);
/// Who calls whom around a procedure.
[[nodiscard]] int Cmd_Chart(const Work& work, const Output& output, const Chart_Options& options);
/// Shows what a replacement changes, and does it if asked to.
[[nodiscard]] int Cmd_Replace(const Work& work, const Output& output,
                              const Search_Options& options);
/// Each shows what it would change as a difference, lists it (`Check`), or writes it.
[[nodiscard]] int Cmd_Format(const Work& work, const Output& output, const Edit_Options& options);
[[nodiscard]] int Cmd_Number(const Work& work, const Output& output, const Edit_Options& options,
                             transform::Label_Mode mode);
[[nodiscard]] int Cmd_Lines(const Work& work, const Output& output, const Edit_Options& options,
                            transform::Line_Tool tool);
[[nodiscard]] int Cmd_Trace(const Work& work, const Output& output, const Edit_Options& options,
                            transform::Trace_Mode mode);
/// The table of a traced run, for a spreadsheet.
[[nodiscard]] int Cmd_Trace_Table(const Work& work, const Output& output,
                                  const Edit_Options& options);
/// Takes the last change of a project's code back. Needs no session.
[[nodiscard]] int Cmd_Undo(const Output& output, const std::string& project, int code_page);

/// The modules of a workbook into files, and back. They need no session.
[[nodiscard]] int Cmd_Extract(const Output& output, const Exchange_Options& options);
[[nodiscard]] int Cmd_Import(const Output& output, const Exchange_Options& options);

}  // namespace oru::app
