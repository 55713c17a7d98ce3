// SPDX-License-Identifier: MIT
// A project built from texts: modules are given as the editor would show them (any line ends), and
// analysed by the real driver over the in-memory editor. All the state that a run needs is owned
// here, with recording stand-ins for the user and the clock.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "analyser/driver.h"
#include "host/memory_editor.h"
#include "support/fakes.h"

namespace oru::test {

class Project {
 public:
  explicit Project(const std::string& host_file = "Book1.xlsm");

  /// Adds a module (a form gets no designer); a leading line break in `text` is left out, so that a raw literal may begin on
  /// its own line.
  Project& Add(const std::string& name, std::string_view text, int type = host::kType_Module);
  /// Adds a form with controls ("Name:TypeName").
  Project& Add_Form(const std::string& name, std::string_view text,
                    const std::vector<std::string>& controls);

  Project& Add_Component(host::Component_Data data);
  void Remove(std::string_view name);
  void Add_Reference(const std::string& name, bool is_broken);

  /// Runs the driver; what it returned.
  bool Analyse();
  /// Runs the driver as after a key stroke in the editor.
  bool Analyse_After_Edit();

  [[nodiscard]] host::CodeModule& Code(std::string_view module);
  [[nodiscard]] analyser::Anl_Ctx Ctx();

  /// All rows of a kind of a module, in order; tabs shown as "|".
  [[nodiscard]] std::vector<std::string> Mem(std::string_view module) const;
  [[nodiscard]] std::vector<std::string> Def(std::string_view module) const;
  [[nodiscard]] std::vector<std::string> InV(std::string_view module) const;
  /// Keys of the module's controls and event markers.
  [[nodiscard]] std::vector<std::string> Ctl(std::string_view module) const;
  /// One field of a member's row; "(none)" if there is no such member.
  [[nodiscard]] std::string Field(std::string_view module, std::string_view member,
                                  std::size_t index) const;
  /// The reference records of a module, split: "Caller>Module.Member 00002 00005 N".
  [[nodiscard]] std::vector<std::string> Refs(std::string_view module) const;
  /// Whether `caller` refers to `target`, by the records.
  [[nodiscard]] bool Refers(std::string_view caller, std::string_view target) const;

  Fake_User_Interface Ui;
  Fixed_Clock Clk;
  service::Services Srv;
  host::Memory_Editor Editor;
  host::HostApp* App = nullptr;
  analyser::Tables Tbl;
  analyser::Anl_State Sta;
  analyser::Kept_Lists Lst;

 private:
  host::Memory_Project* project_;
};

}  // namespace oru::test
