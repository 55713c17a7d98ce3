// SPDX-License-Identifier: MIT
// `oru format`, `oru align`, `oru swap`, `oru number` and `oru trace`: what rewrites code. Each does
// its work in the editor in memory; what came of it is shown, checked, or written into the files.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <map>
#include <optional>

#include "app/cli/cli.h"
#include "app/cli/commands.h"
#include "app/cli/edit_output.h"
#include "app/cli/line_diff.h"
#include "host/derived.h"
#include "provider/line_match.h"
#include "service/codec.h"
#include "service/errors.h"
#include "service/files.h"
#include "service/text.h"
#include "transform/line_numbers.h"
#include "transform/line_tools.h"
#include "transform/rev_indent.h"
#include "transform/trace.h"

namespace oru::app {

namespace {

using Views = std::vector<std::string_view>;

std::string Text_Of(const host::CodeModule& code) {
  return code.CountOfLines() == 0 ? std::string() : code.Lines(1, code.CountOfLines());
}

// A module with the procedures of it that are meant.
struct Chosen_Module {
  std::string name;
  host::CodeModule* code = nullptr;
  std::vector<host::Member_Place> places;
};

// The texts that modules had before an edit.
class Texts_Before {
 public:
  void Keep(const std::string& module, host::CodeModule& code) {
    if (!texts_.contains(module)) texts_.emplace(module, Kept{&code, Text_Of(code)});
  }
  // Calls `changed(name, old lines, new lines, code)` for each module that has another text now.
  template <class Changed>
  void For_Each_Change(Changed changed) const {
    for (const auto& [module, kept] : texts_) {
      const std::string now = Text_Of(*kept.code);
      if (now != kept.text)
        changed(module, service::Split(kept.text, "\r\n"), service::Split(now, "\r\n"), *kept.code);
    }
  }

 private:
  struct Kept {
    host::CodeModule* code;
    std::string text;
  };
  std::map<std::string, Kept> texts_;
};

// The procedures with changed lines, of one module: line of the first one, and how many.
class Changed_Places {
 public:
  Changed_Places(const Work& work, Out_Table& table) : work_(work), table_(table) {
    table_.columns = {{.title = "ファイル", .key = "file", .shrinks = true},
                      {"モジュール", "module"},
                      {"プロシージャ", "procedure"},
                      {"行", "line", Cell_Type::Number},
                      {"変更行数", "changed", Cell_Type::Number}};
  }

  void Take(const std::string& module, const Views& old, const Views& now,
            const host::CodeModule& code) {
    const std::vector<std::size_t> pairs = provider::Match_Lines(old, now);
    std::size_t expected = 0;  // the old line that comes next
    for (std::size_t i = 0; i <= now.size(); ++i) {
      const bool changed = i < now.size() && pairs[i] == provider::kNo_Line;
      const bool gone = i == now.size() ? expected < old.size() : !changed && pairs[i] > expected;
      if (i < now.size() && !changed) expected = pairs[i] + 1;
      if (changed && expected < old.size()) ++expected;
      if (changed || gone) Count(module, static_cast<int>(std::min(i + 1, now.size())), code);
    }
  }

 private:
  void Count(const std::string& module, int line, const host::CodeModule& code) {
    const std::string member = host::Get_CML_Inf(code, line).Nam;
    if (!table_.rows.empty() && table_.rows.back()[1] == module &&
        table_.rows.back()[2] == member) {
      table_.rows.back()[4] = std::to_string(std::stoi(table_.rows.back()[4]) + 1);
      return;
    }
    table_.rows.push_back(
        {work_.project.File_Of(module), module, member, std::to_string(line), "1"});
  }
  const Work& work_;
  Out_Table& table_;
};

// One run of an editing command.
class Edit {
 public:
  Edit(const Work& work, const Output& output, const Edit_Options& options)
      : work_(work), output_(output), options_(options) {}

  [[nodiscard]] const transform::Transform_Ctx& Ctx() const { return ctx_; }
  [[nodiscard]] const Edit_Options& Options() const { return options_; }

  // The modules and procedures that the names mean, all for none. An exit code, or 0.
  int Choose(std::vector<Chosen_Module>& chosen) {
    host::VBProject* project = work_.session.VBInst->ActiveVBProject();
    std::vector<Chosen_Module> all;
    for (int i = 1; project != nullptr && i <= project->VBComponents().Count(); ++i) {
      host::VBComponent* component = project->VBComponents().Item(i);
      if (component->CodeModule() == nullptr) continue;
      all.push_back({component->Name(), component->CodeModule(),
                     host::Get_Procedures(*component->CodeModule())});
    }
    if (options_.Names.empty()) {
      chosen = std::move(all);
    } else {
      for (const std::string& name : options_.Names)
        if (const int exit = Choose_One(all, name, chosen); exit != kExit_Ok) return exit;
    }
    for (const Chosen_Module& module : chosen) before_.Keep(module.name, *module.code);
    return kExit_Ok;
  }

  // The lines of "Module:FROM-TO". An exit code, or 0.
  int Choose_Lines(Chosen_Module& chosen, int& first, int& last) {
    const std::size_t colon = options_.Range.rfind(':');
    const std::string_view numbers = std::string_view(options_.Range).substr(colon + 1);
    const std::size_t dash = numbers.find('-');
    if (colon == std::string::npos || !Read_Number(numbers.substr(0, dash), first) ||
        !Read_Number(dash == std::string_view::npos ? numbers : numbers.substr(dash + 1), last) ||
        first > last) {
      Tell(
          output_.err,
          fmt::format(
              "「{}」は行の範囲ではありません。「モジュール:開始行-終了行」(例 modMain:12-20) の形で指定してください。",
              options_.Range));
      return kExit_Usage;
    }
    chosen.name = options_.Range.substr(0, colon);
    host::VBProject* project = work_.session.VBInst->ActiveVBProject();
    host::VBComponent* component =
        project == nullptr ? nullptr : project->VBComponents().Item(chosen.name);
    if (component == nullptr || component->CodeModule() == nullptr) return No_Such(chosen.name);
    chosen.name = component->Name();
    chosen.code = component->CodeModule();
    if (last > chosen.code->CountOfLines()) {
      Tell(output_.err,
           fmt::format("「{}」は {} 行までです。", chosen.name, chosen.code->CountOfLines()));
      return kExit_Usage;
    }
    before_.Keep(chosen.name, *chosen.code);
    return kExit_Ok;
  }

  void Take(const host::Change_Result& result) {
    if (result.Ok()) return;
    Tell(output_.err, result.Error);
    refused_ = true;
    damaged_ = damaged_ || result.Changed;
  }

  // Shows, checks or writes what was changed. `what` names the change: "コード整形".
  int Finish(std::string_view what) {
    // What could not be put back in the editor does not get into a file.
    if (damaged_) {
      Tell(output_.err, "ファイルは書き換えていません。");
      return kExit_Output;
    }
    Out_Table places;
    Changed_Places counter(work_, places);
    std::size_t modules = 0;
    const bool as_diff = !options_.Write && !options_.Check && output_.format == Format::Columns;
    before_.For_Each_Change([&](const std::string& module, const Views& old, const Views& now,
                                const host::CodeModule& code) {
      ++modules;
      counter.Take(module, old, now, code);
      const Diff_For reader = output_.colours     ? Diff_For::Coloured_Terminal
                              : output_.width > 0 ? Diff_For::Terminal
                                                  : Diff_For::Patch;
      if (as_diff) output_.out << Unified_Diff(old, now, Shown_Name(module), reader);
    });
    if (options_.Check || output_.format != Format::Columns) {
      if (!places.rows.empty() || output_.format != Format::Columns)
        Print_Table(output_.out, places, output_.format, output_.width);
    }
    if (options_.Check)
      return modules > 0 ? kExit_Would_Change : refused_ ? kExit_Output : kExit_Ok;
    const std::string extent =
        fmt::format("{} 個のモジュール、{} 個のプロシージャ", modules, places.rows.size());
    if (options_.Write) {
      const Edits_Written written = Write_Edits(work_, output_, what, options_.Signed);
      if (written.files > 0) {
        output_.out.flush();
        output_.err << fmt::format(
            "{}: {}を書き換えました ({} 個のファイル)。「oru undo」で取り消せます。\n", what,
            extent, written.files);
      } else if (modules == 0 && !refused_) {
        output_.err << fmt::format("{}: 変更するところはありません。\n", what);
      }
      return written.exit != kExit_Ok ? written.exit : refused_ ? kExit_Output : kExit_Ok;
    }
    output_.out.flush();
    if (modules > 0) {
      output_.err << fmt::format("{}: {}が変わります。--write で書き込みます。\n", what, extent);
    } else if (!refused_) {
      output_.err << fmt::format("{}: 変更するところはありません。\n", what);
    }
    return refused_ ? kExit_Output : kExit_Ok;
  }

 private:
  static bool Read_Number(std::string_view text, int& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && number >= 1;
  }

  int No_Such(std::string_view name) {
    Tell(
        output_.err,
        fmt::format(
            "「{}」というモジュールやプロシージャはプロジェクトにありません。「oru list procedures」で名前を確認してください。",
            name));
    return kExit_Not_Found;
  }

  // A module, "Module.Member", or a member of one module only; a property's name means all of it.
  int Choose_One(const std::vector<Chosen_Module>& all, std::string_view name,
                 std::vector<Chosen_Module>& chosen) {
    const std::size_t dot = name.find('.');
    const std::string_view member = dot == std::string_view::npos ? name : name.substr(dot + 1);
    std::vector<Chosen_Module> found;
    for (const Chosen_Module& module : all) {
      if (dot == std::string_view::npos && service::Equal_No_Case(module.name, name)) {
        Add(chosen, module);
        return kExit_Ok;
      }
      if (dot != std::string_view::npos &&
          !service::Equal_No_Case(module.name, name.substr(0, dot)))
        continue;
      Chosen_Module part{module.name, module.code, {}};
      std::copy_if(module.places.begin(), module.places.end(), std::back_inserter(part.places),
                   [&](const host::Member_Place& place) {
                     return service::Equal_No_Case(place.Nam, member) ||
                            service::Equal_No_Case(place.Prc_Nam, member);
                   });
      if (!part.places.empty()) found.push_back(std::move(part));
    }
    if (found.empty()) return No_Such(name);
    if (found.size() > 1) {
      std::string names;
      for (const Chosen_Module& module : found)
        names += fmt::format(" {}.{}", module.name, module.places.front().Nam);
      Tell(output_.err, fmt::format("「{}」は１つに決まりません:{}", name, names));
      return kExit_Usage;
    }
    Add(chosen, found.front());
    return kExit_Ok;
  }

  static void Add(std::vector<Chosen_Module>& chosen, const Chosen_Module& module) {
    const auto at = std::find_if(chosen.begin(), chosen.end(), [&](const Chosen_Module& known) {
      return known.code == module.code;
    });
    if (at == chosen.end()) {
      chosen.push_back(module);
      return;
    }
    for (const host::Member_Place& place : module.places)
      if (std::none_of(at->places.begin(), at->places.end(),
                       [&](const host::Member_Place& known) { return known.Top == place.Top; }))
        at->places.push_back(place);
  }

  // The file's name, and the module's where one file holds several.
  [[nodiscard]] std::string Shown_Name(const std::string& module) const {
    const std::string file = work_.project.File_Of(module);
    const auto same =
        std::count_if(work_.project.Files.begin(), work_.project.Files.end(),
                      [&](const provider::Module_File& known) { return known.relative == file; });
    return same > 1 ? file + ":" + module : file;
  }

  const Work& work_;
  const Output& output_;
  const Edit_Options& options_;
  transform::Transform_Ctx ctx_{work_.session.Srv, *work_.session.VBInst, work_.session.Tbl};
  Texts_Before before_;
  bool refused_ = false;
  bool damaged_ = false;  // a change was neither made nor taken back
};

// Runs a routine as one event.
template <class Routine>
bool As_Event(const Work& work, const char* name, Routine routine) {
  return service::Run_Evt(work.session.Srv, "oru", name, routine);
}

void Add_Writing(CLI::App& command, Edit_Options& options) {
  auto* write = command.add_flag("--write", options.Write,
                                 "ファイルに書き込む (指定しなければ差分を表示するだけ)");
  command
      .add_flag("--check", options.Check, "変わるところがあれば一覧を表示し、終了コード 1 で終わる")
      ->excludes(write);
  command.add_flag("--signed", options.Signed, "マクロの署名が無効になっても書き込む");
}

void Add_Names(CLI::App& command, Edit_Options& options) {
  command.add_option("NAMES", options.Names,
                     "モジュール、または Module.Member (指定しなければプロジェクト全体)");
}

}  // namespace

void Add_Format_Options(CLI::App& command, Edit_Options& options) {
  Add_Names(command, options);
  command.add_option("--indent", options.Indent, "インデント数 (省略時は設定の値、通常 4)")
      ->check(CLI::Range(1, 32));
  command.add_flag("--keep-declarations", options.Keep_Declarations,
                   "プロシージャ先頭の変数・定数の宣言文は整形しない");
  command.add_flag("--labels-left", options.Labels_Left,
                   "行頭にある行ラベル (Err_Shori: など) は行頭のままにする");
  Add_Writing(command, options);
}

void Add_Lines_Options(CLI::App& command, Edit_Options& options) {
  command
      .add_option("LINES", options.Range, "行の範囲: モジュール:開始行-終了行 (例 modMain:12-20)")
      ->required();
  Add_Writing(command, options);
}

void Add_Number_Options(CLI::App& command, Edit_Options& options) {
  Add_Names(command, options);
  Add_Writing(command, options);
}

void Add_Trace_Options(CLI::App& command, Edit_Options& options) {
  Add_Names(command, options);
  command.add_option("--statement", options.Statement,
                     "トレース文。%MN はモジュール名、%PN はプロシージャ名 (省略時は設定の文)");
  command.add_flag("--public-only", options.Public_Only, "Public のプロシージャだけを対象にする");
  command.add_flag("--no-sub", options.No_Sub, "Sub を対象にしない");
  command.add_flag("--no-function", options.No_Function, "Function を対象にしない");
  command.add_flag("--no-property", options.No_Property, "Property を対象にしない");
  Add_Writing(command, options);
}

void Add_Trace_Table_Options(CLI::App& command, Edit_Options& options) {
  command
      .add_option("FILE", options.Statistics,
                  "実行統計ファイル (１行目が「モジュール名,プロシージャ名,…」の CSV)")
      ->required();
}

int Cmd_Format(const Work& work, const Output& output, const Edit_Options& options) {
  service::Settings& settings = work.session.Srv.Opt;
  const service::Number_For_Now indent(
      settings, "FTx_IdtCn", options.Indent > 0 ? options.Indent : settings.Number("FTx_IdtCn"));
  const service::Number_For_Now declarations(
      settings, "FCk_RevDS", options.Keep_Declarations ? 0 : settings.Number("FCk_RevDS"));
  Edit edit(work, output, options);
  std::vector<Chosen_Module> chosen;
  if (const int exit = edit.Choose(chosen); exit != kExit_Ok) return exit;
  if (!As_Event(work, "Cmd_Format", [&] {
        for (const Chosen_Module& module : chosen)
          for (const host::Member_Place& place : module.places)
            edit.Take(transform::Format_Procedure(edit.Ctx(), {*module.code, module.name, place},
                                                  options.Labels_Left
                                                      ? transform::Label_Lines::Stay
                                                      : transform::Label_Lines::Indented));
      }))
    return kExit_Stopped;
  return edit.Finish("コード整形");
}

int Cmd_Number(const Work& work, const Output& output, const Edit_Options& options,
               transform::Label_Mode mode) {
  Edit edit(work, output, options);
  std::vector<Chosen_Module> chosen;
  if (const int exit = edit.Choose(chosen); exit != kExit_Ok) return exit;
  if (!As_Event(work, "Cmd_Number", [&] {
        for (const Chosen_Module& module : chosen)
          for (const host::Member_Place& place : module.places)
            edit.Take(transform::Set_LNo_Lop(edit.Ctx(), {*module.code, module.name, place}, mode));
      }))
    return kExit_Stopped;
  return edit.Finish(mode == transform::Label_Mode::Set ? "行ラベルの設定" : "行ラベルの解除");
}

int Cmd_Lines(const Work& work, const Output& output, const Edit_Options& options,
              transform::Line_Tool tool) {
  Edit edit(work, output, options);
  Chosen_Module chosen;
  int first = 0, last = 0;
  if (const int exit = edit.Choose_Lines(chosen, first, last); exit != kExit_Ok) return exit;
  if (!As_Event(work, "Cmd_Lines", [&] {
        edit.Take(
            transform::Change_Lines(edit.Ctx(), *chosen.code, chosen.name, first, last, tool));
      }))
    return kExit_Stopped;
  return edit.Finish(tool == transform::Line_Tool::Swap_Sides ? "代入文の反転"
                     : tool == transform::Line_Tool::Align_As ? "As句の整列"
                                                              : "行内コメントの整列");
}

int Cmd_Trace(const Work& work, const Output& output, const Edit_Options& options,
              transform::Trace_Mode mode) {
  Edit edit(work, output, options);
  std::vector<Chosen_Module> chosen;
  if (const int exit = edit.Choose(chosen); exit != kExit_Ok) return exit;
  transform::Frm_Trace form;
  form.Lod_State(work.session.Srv.Opt);
  // The form would cut it, and half a statement is none.
  if (service::To_Int(service::Len_Chr(options.Statement)) > transform::kMost_Statement) {
    Tell(output.err, fmt::format("トレース文が {} 文字を超えています。短くしてください。",
                                 transform::kMost_Statement));
    return kExit_Usage;
  }
  if (!options.Statement.empty()) form.Sta = options.Statement;
  form.Pub_Onl = form.Pub_Onl || options.Public_Only;
  form.Sub = form.Sub && !options.No_Sub;
  form.Fnc = form.Fnc && !options.No_Function;
  form.Prp = form.Prp && !options.No_Property;
  for (const Chosen_Module& module : chosen)
    for (const host::Member_Place& place : module.places)
      form.Prc.push_back({module.name, place.Nam});
  bool done = false;
  if (!As_Event(work, "Cmd_Trace", [&] { done = form.FBt_Start_Click(edit.Ctx(), mode); }))
    return kExit_Stopped;
  if (!done) return kExit_Output;
  return edit.Finish(mode == transform::Trace_Mode::Set ? "トレース文の設定" : "トレース文の解除");
}

int Cmd_Trace_Table(const Work& work, const Output& output, const Edit_Options& options) {
  const service::Read_Result read = service::Read_File(options.Statistics);
  if (!read.Ok()) {
    Tell(output.err, read.error);
    return kExit_Project;
  }
  const auto page = service::Code_Page::Open(work.project.Code_Page);
  const std::string text =
      service::Decode(read.bytes, service::Detect_Encoding(read.bytes), *page).text;
  const std::string table = transform::Trace_Statistics(work.session.Tbl, text);
  if (table.empty()) {
    Tell(output.err, transform::kNo_Statistics);
    return kExit_Usage;
  }
  output.out << service::Replace_All(table, "\r\n", "\n");
  return kExit_Ok;
}

}  // namespace oru::app
