// SPDX-License-Identifier: MIT
#include "analyser/controls.h"

#include <fmt/format.h>

#include <array>

#include "analyser/kinds.h"

namespace oru::analyser {

namespace {

using service::Add_Col_Itm;

// Types with a designer, and the word that stands for the form itself.
struct Form_Word {
  std::string_view type, word;
};
constexpr std::array kForm_Words{Form_Word{"5", "Form"}, Form_Word{"3", "UserForm"},
                                 Form_Word{"8", "UserControl"}, Form_Word{"9", "UserDocument"}};

constexpr std::string_view kNo_Designer =
    "プロジェクト情報を正しく参照できません。    |次の操作で回避できないときは開発元にお問い合せください。   |(1)ＩＤＥを一旦閉じて再起動します。    |(2)ＩＤＥの「ツール(T)」＞「{} 機能メニュー(F)」から「プロジェクト情報取得」を実行します。    |(Code={})";

// A late-bound member that the control may not have. A text box may hold many lines, and a caption
// too: in a row, which is one line of fields, they become one.
template <class Member>
std::string Late(const host::Control& control, Member member) {
  try {
    std::string text = (control.*member)();
    for (char& c : text)
      if (c == '\t' || c == '\r' || c == '\n') c = ' ';
    return text;
  } catch (const host::Host_Error&) {
    return {};
  }
}

void Mark(Mdl_Entry& entry, std::string_view word) {
  Add_Col_Itm(entry.Ctl, word, std::string());
}

// The designer, and the window that had to be opened for it.
struct Open_Designer {
  host::Designer* designer = nullptr;
  host::Window* opened = nullptr;
};

// A refusal is the system's own error: the editor is in a state in which nothing of the project can
// be relied on.
Open_Designer Get_Designer(Mdl_Ctx& ctx, host::VBComponent& component) {
  Open_Designer open;
  try {
    open.designer = component.Designer();
    if (open.designer != nullptr) return open;
    open.opened = component.DesignerWindow();
    if (open.opened != nullptr) open.opened->Set_Visible(true);
  } catch (const host::Host_Error& error) {
    throw service::Sys_Error(service::kOwn_Error,
                             fmt::format(kNo_Designer, ctx.Srv.Product.Title, error.number));
  }
  try {
    open.designer = component.Designer();
  } catch (const host::Host_Error&) {  // told as a control list that cannot be read
  }
  return open;
}

void Get_Designer_Controls(Mdl_Ctx& ctx, host::VBComponent& component, std::string_view word,
                           Mdl_Entry& entry) {
  const auto problem = [&](int number) {
    ctx.Control_Problem(component.Name(),
                        fmt::format("{} - コントロール情報を取得できません。 (Err.No={})",
                                    component.Name(), number));
  };
  const Open_Designer open = Get_Designer(ctx, component);
  if (open.designer == nullptr) {
    problem(91);  // "object variable not set"
    return;
  }
  Mark(entry, word);
  if (word == "Form") Mark(entry, "MDIForm");
  try {
    host::Controls& controls = open.designer->Controls();
    for (int i = 1; i <= controls.Count(); ++i) {
      const host::Control* control = controls.Item(i);
      if (control == nullptr) continue;
      Ctl_Row row;
      row.Ctl_Nam = control->Name();
      row.Ctl_Typ = control->TypeName();
      row.Ctl_Txt = Late(*control, &host::Control::Text);
      row.Ctl_Cap = Late(*control, &host::Control::Caption);
      row.Ctl_Tag = Late(*control, &host::Control::Tag);
      Add_Col_Itm(entry.Ctl, row.Ctl_Nam, service::Srv_Str_Row(row));
    }
  } catch (const host::Host_Error& error) {
    problem(error.number);
  }
  Mark(entry, "|");
  if (open.opened != nullptr) open.opened->Close();
}

void Get_Sheet_Controls(Mdl_Ctx& ctx, const Mdl_Row& row, Mdl_Entry& entry) {
  Mark(entry, "WorkSheet");
  try {
    host::Sheets& sheets = ctx.App->Workbooks(ctx.HFl_Nam).Sheets();
    for (int i = 1; i <= sheets.Count(); ++i) {
      host::Sheet& sheet = sheets.Item(i);
      if (sheet.CodeName() != row.Mdl_Nam) continue;
      host::OLEObjects& objects = sheet.OLEObjects();
      for (int j = 1; j <= objects.Count(); ++j) {
        const host::OLEObject& object = objects.Item(j);
        if (object.OLEType() == 2) Mark(entry, object.Name());
      }
      return;
    }
  } catch (const host::Host_Error&) {
    Add_Col_Itm(ctx.Tbl.Rty_Mdl, row.Mdl_Nam, std::string());
  }
}

}  // namespace

void Get_Controls(Mdl_Ctx& ctx, host::VBComponent& component, const Mdl_Row& row,
                  Mdl_Entry& entry) {
  for (const auto& [type, word] : kForm_Words)
    if (row.Mdl_Typ == type) Get_Designer_Controls(ctx, component, word, entry);
  if (row.Mdl_Typ == "11") {
    Mark(entry, "AddinInstance");
    Mark(entry, "DataReport");
  } else if (row.Mdl_Typ == kTyp_Workbook) {
    Mark(entry, "WorkBook");
  } else if (row.Mdl_Typ == kTyp_Sheet) {
    Get_Sheet_Controls(ctx, row, entry);
  }
}

}  // namespace oru::analyser
