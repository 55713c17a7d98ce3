// SPDX-License-Identifier: MIT
// Projects and components of the in-memory editor. A provider fills them from `Component_Data` and
// asks a component afterwards for its text and whether it was edited; the logic sees them only
// through the model. A project owns its components, a component its module, pane, windows, designer
// and properties.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/memory_module.h"
#include "host/memory_window.h"
#include "host/model.h"

namespace oru::host {

struct Control_Data {
  std::string name, type_name;
  std::optional<std::string> text, caption, tag;  ///< absent: the property is refused
  /// The other properties, by name.
  std::vector<std::pair<std::string, std::string>> properties = {};
};

/// What a provider knows of one component.
struct Component_Data {
  std::string name = {};
  int type = kType_Module;
  std::string text = {};  ///< any line ends; neither header nor `Attribute` lines
  bool has_designer = false;
  std::vector<Control_Data> controls = {};
  std::vector<std::pair<std::string, std::string>> properties = {};  ///< without "Name"
  bool has_code = true;
};

struct Reference_Data {
  std::string name, description;
  bool is_broken = false;
};

class Memory_Project;

class Memory_Component final : public VBComponent {
 public:
  Memory_Component(Memory_Project& project, Window_Desk& desk, Component_Data data);
  ~Memory_Component() override;

  [[nodiscard]] std::string Name() const override { return name_; }
  [[nodiscard]] int Type() const override { return type_; }
  [[nodiscard]] class CodeModule* CodeModule() override { return module_.get(); }
  /// Null for a component without designer and while the designer is closed.
  [[nodiscard]] class Designer* Designer() override;
  [[nodiscard]] bool HasOpenDesigner() const override;
  /// The component's properties, "Name" first; writing "Name" renames the component.
  [[nodiscard]] class Properties& Properties() override;
  /// The designer's window, opened if need be; null without designer.
  [[nodiscard]] Window* DesignerWindow() override;
  /// Brings the designer's window to the front, the code pane's without designer.
  void Activate() override;

  /// The whole text, lines joined by CR LF; `Load_Text` takes another one, which counts as
  /// unedited.
  [[nodiscard]] std::string Text() const;
  void Load_Text(std::string text);
  /// Number of writes to the code; grows with each.
  [[nodiscard]] std::uint64_t Edit_Count() const;
  /// True if the code was written to since it was loaded or marked as saved.
  [[nodiscard]] bool Is_Edited() const { return Edit_Count() != saved_at_; }
  void Mark_Saved() { saved_at_ = Edit_Count(); }
  void Set_Name(std::string name);
  /// The designer of a component that has one is open at first.
  void Set_Designer_Open(bool open);

 private:
  struct Designer_Parts;
  struct Property_Parts;

  Memory_Project& project_;
  std::string name_;
  int type_;
  std::unique_ptr<Memory_Module> module_;
  std::unique_ptr<Designer_Parts> designer_;
  std::unique_ptr<Property_Parts> properties_;
  std::uint64_t saved_at_ = 0;
};

class Memory_Project final : public VBProject {
 public:
  Memory_Project(Window_Desk& desk, std::string name, std::string host_file);
  ~Memory_Project() override;

  /// Throws kErr_Protected for a locked project.
  [[nodiscard]] class VBComponents& VBComponents() override;
  [[nodiscard]] enum Protection Protection() const override { return protection_; }
  [[nodiscard]] std::string Name() const override { return name_; }
  [[nodiscard]] std::string Description() const override { return description_; }
  [[nodiscard]] std::string FileName() const override { return file_name_; }
  [[nodiscard]] class References& References() override;

  /// Adds a component at the end; throws kErr_Duplicate if the name is taken (letter case aside).
  Memory_Component& Add_Component(Component_Data data);
  void Remove_Component(const Memory_Component& component);
  /// The component of that name (letter case aside) or null; locked or not.
  [[nodiscard]] Memory_Component* Find_Component(std::string_view name) const;
  /// A component has another name now.
  void Names_Changed();
  [[nodiscard]] const std::vector<std::unique_ptr<Memory_Component>>& Components() const;

  void Set_Protection(enum Protection protection) { protection_ = protection; }
  void Set_Description(std::string text) { description_ = std::move(text); }
  /// Path of the file, empty for a project never saved; the captions keep the file given first.
  void Set_FileName(std::string path) { file_name_ = std::move(path); }
  void Add_Reference(Reference_Data data);
  /// The host file's name without its folder, as captions show it.
  [[nodiscard]] const std::string& Host_File() const { return host_file_; }

 private:
  struct Component_List;
  struct Reference_List;

  Window_Desk& desk_;
  std::string name_, description_, file_name_, host_file_;
  enum Protection protection_ = Protection::None;
  std::unique_ptr<Component_List> components_;
  std::unique_ptr<Reference_List> references_;
};

}  // namespace oru::host
