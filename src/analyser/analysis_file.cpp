// SPDX-License-Identifier: MIT
#include "analyser/analysis_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <utility>

#include "analyser/analysis_lines.h"
#include "host/places.h"
#include "service/codec.h"
#include "service/text.h"

namespace oru::analyser {

namespace {

constexpr std::string_view kExtension = ".VMH";
constexpr std::uint64_t kMost_Bytes = std::uint64_t{1} << 30;
constexpr std::size_t kMoment = 12;  // "YYMMDDHHMMSS"

constexpr bool Is_Separator(char c) {
  return c == '\\' || c == '/';
}

std::size_t Name_Start(std::string_view path) {
  const std::size_t last = path.find_last_of("\\/");
  return last == std::string_view::npos ? 0 : last + 1;
}

std::string Join_Path(std::string_view folder, std::string_view name) {
  std::string path(folder);
  // The path's own kind of separator; a folder without any gets the platform's.
  const bool windows = path.find('\\') != std::string::npos && path.find('/') == std::string::npos;
  if (!path.empty() && !Is_Separator(path.back())) path += windows ? '\\' : '/';
  return path.append(name);
}

void Trace_Paths(Anl_Ctx& ctx, const Anl_Paths& paths) {
  service::Srv_Trc_Log(ctx.Srv, fmt::format("MSI_UpdFP=|{}|", paths.Upd_FP));
  service::Srv_Trc_Log(ctx.Srv, fmt::format("my_UpdWP =|{}|", paths.Upd_WP));
}

Anl_Paths Paths_Of(Anl_Ctx& ctx) {
  return Get_Anl_Paths(*ctx.Fil, ctx.Srv.Opt.Text("MSI_UpdFP"), ctx.Sta.Prj_FP, ctx.Srv.Prj_Nam,
                       service::Path_Text(ctx.Srv.Data_Folder));
}

std::string Time_Text(const std::optional<service::File_Store::Seen>& seen) {
  if (!seen) return {};
  const service::Date_Time& d = seen->date;
  return fmt::format("{:04}{:02}{:02} {:02}{:02}{:02}", d.year, d.month, d.day, d.hour, d.minute,
                     d.second);
}

// The folder that the team shares, asked for once; "NF" switches the feature off.
const std::string& Common_Folder(Anl_Ctx& ctx) {
  std::string& folder = ctx.Sta.Com_AFl;
  if (!folder.empty()) return folder;
  folder = "NF";
  constexpr std::size_t kMost = 1 << 16;
  std::string bytes;
  const std::string file = Join_Path(service::Path_Text(ctx.Srv.Data_Folder), "CommonAFL.txt");
  const bool read = !ctx.Srv.Data_Folder.empty() && ctx.Fil->Look(file) &&
                    ctx.Fil
                        ->Read(file,
                               [&](std::string_view block) {
                                 bytes += block;
                                 return bytes.size() < kMost;
                               })
                        .Ok();
  const auto page = read ? service::Code_Page::Open(932) : nullptr;
  if (page == nullptr) return folder;
  const std::string text = service::Decode(bytes, service::Detect_Encoding(bytes), *page).text;
  std::string_view line = std::string_view(text).substr(0, text.find('\n'));
  line = service::Trim(line.substr(0, line.find('\r')));
  if (!line.empty() && ctx.Fil->Folder_Exists(std::string(line))) folder = line;
  return folder;
}

// A failure ends here: it goes to the central handler under this procedure's name.
bool Save_Failed(Anl_Ctx& ctx, const std::string& why) {
  const std::string text =
      "解析情報を保存できませんでした。次回は今回変更された分をもう一度解析します。    |" + why;
  ctx.Srv.Errors.Add({"Mod_Anl", "Sav_UpdInf ", {}, 0});
  service::Sys_Err_Prc(ctx.Srv, service::kOwn_Error, text, false, false);
  ctx.Srv.Errors.Clear();
  return false;
}

// Writes the working file. Empty, or why it could not be written.
std::string Write_Lines(Anl_Ctx& ctx, const Anl_Paths& paths, Anl_Progress& progress) {
  const std::unique_ptr<service::New_File> file = ctx.Fil->Create(paths.Upd_WP);
  Line_Writer writer(*file);
  const Line_Sink put = [&](std::string_view tag, std::string_view payload) {
    writer.Put(tag, payload);
  };
  const auto step = [&](std::string_view module) {
    progress.Dsp_Anl_Res({}, module, 0, 0, ctx.Sta.Lin_Sec);
  };
  put(kFile_Version, {});
  Put_Lists(ctx.Lst, put);
  step({});
  for (const auto& item : ctx.Tbl.Mdl_Tbl) {
    Put_Module_Block(ctx.Tbl, *item.value, put);
    step(item.key);
  }
  Put_Ref_Marks(ctx.Tbl, put);
  if (!writer.End(ctx.Tbl)) return "解析情報に改行を含む行があるため、保存できません。";
  // A work copy belongs to this run alone; of the real file only the one that was read is replaced.
  const auto outcome = file->Commit(paths.Remote ? std::nullopt : std::optional(ctx.Sta.Fil_Mrk));
  step({});
  if (outcome.Ok() && !paths.Remote) ctx.Sta.Fil_Mrk = outcome.mark;
  return outcome.error;
}

// Brings the work copy to the share. Empty, or what went wrong.
std::string Send_Work_Copy(Anl_Ctx& ctx, const Anl_Paths& paths) {
  service::Srv_Trc_Log(ctx.Srv, "|----一時ファイルをサーバにCopy/Delete ");
  const auto there = ctx.Fil->Look(paths.Upd_FP);
  const bool changed = (there ? there->mark : service::File_Mark()) != ctx.Sta.Fil_Mrk;
  if (!changed && ctx.Fil->CopyFile(paths.Upd_WP, paths.Upd_FP)) {
    const auto now = ctx.Fil->Look(paths.Upd_FP);
    ctx.Sta.Fil_Mrk = now ? now->mark : service::File_Mark();
    ctx.Fil->DeleteFile(paths.Upd_WP);
    return {};
  }
  service::Srv_Trc_Log(ctx.Srv, "Error");
  return fmt::format(
      "解析ファイルをサーバの「{}」に保存できません（{}）。    |今回の解析情報は「{}」に残してあります。    ",
      paths.Upd_FP, changed ? service::kChanged_Meanwhile : "コピーできません", paths.Upd_WP);
}

// Traces how long something took, and gives the milliseconds.
std::int64_t Trace_End(Anl_Ctx& ctx, std::string_view text, std::int64_t start) {
  const std::int64_t elapsed = ctx.Srv.Clk.Milliseconds() - start;
  service::Srv_Trc_Log(ctx.Srv, fmt::format("{}{}Ms", text, elapsed));
  return elapsed;
}

// A row of the control history stays only as long as its member does.
void Drop_Gone_Controls(Anl_Ctx& ctx) {
  std::erase_if(ctx.Lst.Ctl, [&](const std::string& row) {
    const std::string_view name = service::Row_Field(row, 0);
    const std::size_t dot = name.find('.');
    return dot == std::string_view::npos ||
           !host::Chk_Prc_Exs(ctx.VBInst, name.substr(0, dot), name.substr(dot + 1));
  });
}

}  // namespace

Anl_Paths Get_Anl_Paths(service::File_Store& files, const std::string& option,
                        const std::string& project, const std::string& prj_nam,
                        const std::string& data_folder) {
  if (project.empty() || prj_nam.empty()) return {};
  const std::string name = prj_nam + std::string(kExtension);
  Anl_Paths paths;
  if (option.empty()) {
    paths.Upd_FP = project.substr(0, Name_Start(project)) + name;
  } else {
    const bool folder = Is_Separator(option.back()) || files.Folder_Exists(option);
    paths.Upd_FP = folder ? Join_Path(option, name) : option;
  }
  paths.Remote = paths.Upd_FP.starts_with("\\\\");
  paths.Upd_WP = paths.Remote ? Join_Path(data_folder, name) : paths.Upd_FP;
  return paths;
}

bool Is_System_Path(std::string_view path) {
  const std::string folded = service::To_Lower(service::Replace_All(path, "/", "\\"));
  constexpr std::array<std::string_view, 3> kFolders{"\\xlstart", "\\program files", "\\microsoft"};
  return std::any_of(kFolders.begin(), kFolders.end(), [&](std::string_view folder) {
    return folded.find(folder) != std::string::npos;
  });
}

void Ctl_Com_AFl(Anl_Ctx& ctx, const Anl_Paths& paths, char mode) {
  const std::string& folder = Common_Folder(ctx);
  if (folder == "NF" || paths.Upd_WP.empty()) return;
  const std::string shared = Join_Path(folder, paths.Upd_WP.substr(Name_Start(paths.Upd_WP)));
  const std::string own_date = Time_Text(ctx.Fil->Look(paths.Upd_WP));
  const std::string shared_date = Time_Text(ctx.Fil->Look(shared));
  if (mode == 'G') {
    if (shared_date <= own_date) return;
    service::Srv_Trc_Log(ctx.Srv, "|----共通解析ファイルをCopy");
    if (!ctx.Fil->CopyFile(shared, paths.Upd_WP)) service::Srv_Trc_Log(ctx.Srv, "Error");
  } else {
    if (own_date <= shared_date) return;
    service::Srv_Trc_Log(ctx.Srv, "|----共通解析ファイルをSave");
    if (!ctx.Fil->CopyFile(paths.Upd_WP, shared)) service::Srv_Trc_Log(ctx.Srv, "Error");
  }
}

bool Sav_UpdInf(Anl_Ctx& ctx) {
  if (ctx.Fil == nullptr || !ctx.Sta.Anl_Chg) return true;
  const std::int64_t start = ctx.Srv.Clk.Milliseconds();
  const Anl_Paths paths = Paths_Of(ctx);
  if (paths.Upd_FP.empty()) return true;
  service::Srv_Trc_Log(ctx.Srv, "Sav_UpdInf IN  " + service::Rule_Line());
  Trace_Paths(ctx, paths);
  if (Is_System_Path(paths.Upd_FP)) {
    service::Srv_Trc_Log(ctx.Srv, "Error!! Path=" + paths.Upd_FP);
    if (!ctx.Srv.Opt.Flag("NoSysSv"))
      (void)service::Srv_Dsp_Msg(
          ctx.Srv,
          "システム関連フォルダに保存するプロジェクトの解析情報は保存されません。    \r\nプロジェクト名：" +
              ctx.Srv.Prj_Nam,
          service::Buttons::Ok, 1, service::Icon::Warning);
    return false;
  }
  Anl_Progress progress(ctx.Srv);
  // The lists, each module, and the end.
  progress.Dsp_Anl_Res("Sav", {}, static_cast<std::int64_t>(ctx.Tbl.Mdl_Tbl.Count()) + 2, 0,
                       ctx.Sta.Lin_Sec);
  std::string error = Write_Lines(ctx, paths, progress);
  if (error.empty() && paths.Remote) error = Send_Work_Copy(ctx, paths);
  Ctl_Com_AFl(ctx, paths, 'S');
  progress.Close();
  if (!error.empty()) return Save_Failed(ctx, error);
  ctx.Sta.Anl_Chg = false;
  ctx.Sta.Sav_Tim = Trace_End(ctx, "Sav_UpdInf Out | Save.Time=", start);
  return true;
}

void Lod_UpdInf(Anl_Ctx& ctx, Anl_Progress& progress) {
  ctx.Lst = {};
  ctx.Sta.Fil_Mrk.clear();
  ctx.Sta.Lod_Dat = service::Stamp(ctx.Srv.Clk.Now());
  if (ctx.Fil == nullptr) return;
  const std::int64_t start = ctx.Srv.Clk.Milliseconds();
  const Anl_Paths paths = Paths_Of(ctx);
  if (paths.Upd_FP.empty()) return;
  service::Srv_Trc_Log(ctx.Srv, "Lod_UpdInf IN  " + service::Rule_Line());
  Trace_Paths(ctx, paths);
  Ctl_Com_AFl(ctx, paths, 'G');
  const auto there = ctx.Fil->Look(paths.Upd_FP);
  if (there) ctx.Sta.Fil_Mrk = there->mark;
  if (paths.Remote && there) {
    service::Srv_Trc_Log(ctx.Srv, "|----一時ファイルにCopy");
    if (!ctx.Fil->CopyFile(paths.Upd_FP, paths.Upd_WP)) service::Srv_Trc_Log(ctx.Srv, "Error");
  }
  const auto seen = paths.Remote ? ctx.Fil->Look(paths.Upd_WP) : there;
  if (seen && seen->size > 0) {
    progress.Dsp_Anl_Res("Lod", {}, ctx.VBInst.ActiveVBProject()->VBComponents().Count(), 0,
                         ctx.Sta.Lin_Sec);
    Table_Reader reader;
    Line_Reader lines(reader, [&] { progress.Dsp_Anl_Res({}, {}, 0, 0, ctx.Sta.Lin_Sec); });
    const bool too_large = seen->size > kMost_Bytes;
    const service::File_Result read =
        too_large ? service::File_Result()
                  : ctx.Fil->Read(paths.Upd_WP,
                                  [&](std::string_view block) { return lines.Take(block); });
    const std::string why = !read.Ok() ? read.error : too_large ? "too large" : lines.Finish();
    if (why.empty()) {
      ctx.Tbl = std::move(reader.Tbl);
      ctx.Lst = std::move(reader.Lists);
      for (auto& item : ctx.Lst.His)
        if (const std::string* update = ctx.Lst.Mem_Upd.Get(item.key))
          item.value.Mom = update->substr(0, kMoment);
      ctx.Sta.Anl_Dat = ctx.Sta.Anl_New = service::Stamp(seen->date);
      // Edits that the editor does not see were made since the file was written.
      if (ctx.Out_Edt) ctx.Sta.Lod_Dat = ctx.Sta.Anl_Dat;
      Drop_Gone_Controls(ctx);
    } else {
      // What cannot be opened counts as not there; it is no reason to overwrite it as damaged.
      ctx.Sta.Fil_Bad = read.Ok();
      service::Srv_Trc_Log(ctx.Srv, fmt::format("Lod_UpdInf Error!! ({})", why));
      ctx.Sta.Fil_Why = why;
    }
  }
  if (paths.Remote && ctx.Fil->DeleteFile(paths.Upd_WP))
    service::Srv_Trc_Log(ctx.Srv, "|----一時ファイル削除(Read)");
  const std::int64_t elapsed = Trace_End(ctx, "Lod_UpdInf Out | Load.Time=", start);
  if (!ctx.Tbl.Mdl_Tbl.Empty()) ctx.Sta.Lod_Tim = elapsed;
}

}  // namespace oru::analyser
