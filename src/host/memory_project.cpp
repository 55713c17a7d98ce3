// SPDX-License-Identifier: MIT
#include "host/memory_project.h"

#include <algorithm>

#include "service/collection.h"
#include "service/text.h"

namespace oru::host {
namespace {

/// The item at a 1-based position, or null.
template <class Items>
auto* At(Items& items, int position) {
  return position >= 1 && position <= static_cast<int>(items.size())
             ? &items[static_cast<std::size_t>(position) - 1]
             : nullptr;
}

/// The item whose `Name()` is `name`, letter case aside, or null.
template <class Items>
auto* Named(Items& items, std::string_view name) {
  const auto item = std::ranges::find_if(
      items, [&](const auto& each) { return service::Equal_No_Case(each.Name(), name); });
  return item == items.end() ? nullptr : &*item;
}

std::string Value_Or_Refuse(const std::optional<std::string>& value) {
  if (!value) throw Host_Error(kErr_No_Property, "コントロールにそのプロパティはありません。");
  return *value;
}

class Memory_Control final : public Control {
 public:
  explicit Memory_Control(Control_Data data) : data_(std::move(data)) {}
  [[nodiscard]] std::string Name() const override { return data_.name; }
  [[nodiscard]] std::string TypeName() const override { return data_.type_name; }
  [[nodiscard]] std::string Text() const override { return Value_Or_Refuse(data_.text); }
  [[nodiscard]] std::string Caption() const override { return Value_Or_Refuse(data_.caption); }
  [[nodiscard]] std::string Tag() const override { return Value_Or_Refuse(data_.tag); }
  [[nodiscard]] std::string Property(std::string_view name) const override {
    for (const auto& [property, value] : data_.properties)
      if (service::Equal_No_Case(property, name)) return value;
    return Value_Or_Refuse(std::nullopt);
  }

 private:
  Control_Data data_;
};

class Memory_Property final : public Property {
 public:
  Memory_Property(std::string name, std::string value, Memory_Component* renamed)
      : name_(std::move(name)), value_(std::move(value)), renamed_(renamed) {}
  [[nodiscard]] std::string Name() const override { return name_; }
  [[nodiscard]] std::string Value() const override {
    return renamed_ != nullptr ? renamed_->Name() : value_;
  }
  void Set_Value(std::string_view value) override {
    if (renamed_ != nullptr)
      renamed_->Set_Name(std::string(value));
    else
      value_ = value;
  }

 private:
  std::string name_, value_;
  Memory_Component* renamed_;  ///< set for "Name"
};

class Memory_Reference final : public Reference {
 public:
  explicit Memory_Reference(Reference_Data data) : data_(std::move(data)) {}
  [[nodiscard]] std::string Name() const override { return data_.name; }
  [[nodiscard]] std::string Description() const override { return data_.description; }
  [[nodiscard]] bool IsBroken() const override { return data_.is_broken; }

 private:
  Reference_Data data_;
};

std::string File_Of(std::string_view path) {
  return std::string(path.substr(path.find_last_of("/\\") + 1));
}

}  // namespace

struct Memory_Component::Designer_Parts final : Designer, Controls {
  Designer_Parts(Window_Desk& desk, std::function<std::string()> caption)
      : window(desk, kWindow_Designer, nullptr, std::move(caption)) {}

  [[nodiscard]] class Controls& Controls() override { return *this; }
  [[nodiscard]] int Count() const override { return static_cast<int>(controls.size()); }
  [[nodiscard]] Control* Item(int position) override { return At(controls, position); }
  [[nodiscard]] Control* Item(std::string_view name) override { return Named(controls, name); }

  std::vector<Memory_Control> controls;
  Memory_Window window;
  bool open = true;
};

struct Memory_Component::Property_Parts final : host::Properties {
  [[nodiscard]] int Count() const override { return static_cast<int>(list.size()); }
  [[nodiscard]] Property* Item(int position) override { return At(list, position); }
  [[nodiscard]] Property* Item(std::string_view name) override { return Named(list, name); }

  std::vector<Memory_Property> list;
};

Memory_Component::Memory_Component(Memory_Project& project, Window_Desk& desk, Component_Data data)
    : project_(project),
      name_(std::move(data.name)),
      type_(data.type),
      properties_(std::make_unique<Property_Parts>()) {
  if (data.has_code)
    module_ = std::make_unique<Memory_Module>(desk, std::move(data.text), [this] {
      return project_.Host_File() + " - " + name_ + " (コード)";
    });
  if (data.has_designer) {
    designer_ = std::make_unique<Designer_Parts>(
        desk, [this] { return project_.Host_File() + " - " + name_ + " (UserForm)"; });
    for (Control_Data& control : data.controls)
      designer_->controls.emplace_back(std::move(control));
  }
  properties_->list.emplace_back("Name", std::string(), this);
  for (auto& [name, value] : data.properties)
    properties_->list.emplace_back(std::move(name), std::move(value), nullptr);
}

Memory_Component::~Memory_Component() = default;

Designer* Memory_Component::Designer() {
  return HasOpenDesigner() ? designer_.get() : nullptr;
}

bool Memory_Component::HasOpenDesigner() const {
  return designer_ && designer_->open;
}

Properties& Memory_Component::Properties() {
  return *properties_;
}

Window* Memory_Component::DesignerWindow() {
  if (!designer_) return nullptr;
  designer_->open = true;
  designer_->window.Set_Visible(true);
  return &designer_->window;
}

void Memory_Component::Activate() {
  if (Window* window = DesignerWindow())
    window->SetFocus();
  else if (module_)
    module_->CodePane().Show();
}

std::string Memory_Component::Text() const {
  return module_ ? module_->Lines(1, module_->CountOfLines()) : std::string();
}

void Memory_Component::Load_Text(std::string text) {
  if (module_) module_->Load(std::move(text));
  Mark_Saved();
}

std::uint64_t Memory_Component::Edit_Count() const {
  return module_ ? module_->Edit_Count() : 0;
}

void Memory_Component::Set_Designer_Open(bool open) {
  if (!designer_) return;
  designer_->open = open;
  if (!open) designer_->window.Close();
}

struct Memory_Project::Component_List final : host::VBComponents {
  [[nodiscard]] int Count() const override { return static_cast<int>(list.size()); }
  [[nodiscard]] VBComponent* Item(int position) override {
    const auto* item = At(list, position);
    return item == nullptr ? nullptr : item->get();
  }
  [[nodiscard]] VBComponent* Item(std::string_view name) override { return Find(name); }

  [[nodiscard]] Memory_Component* Find(std::string_view name) {
    if (!indexed) {
      index.clear();
      for (const auto& component : list)
        index.try_emplace(service::To_Lower(component->Name()), component.get());
      indexed = true;
    }
    const auto at = index.find(service::To_Lower(name));
    return at == index.end() ? nullptr : at->second;
  }

  std::vector<std::unique_ptr<Memory_Component>> list;
  service::Text_Map<Memory_Component*> index;  ///< by folded name
  bool indexed = true;                         ///< false once a name has changed or gone
};

struct Memory_Project::Reference_List final : host::References {
  [[nodiscard]] int Count() const override { return static_cast<int>(list.size()); }
  [[nodiscard]] Reference* Item(int position) override { return At(list, position); }

  std::vector<Memory_Reference> list;
};

Memory_Project::Memory_Project(Window_Desk& desk, std::string name, std::string host_file)
    : desk_(desk),
      name_(std::move(name)),
      file_name_(std::move(host_file)),
      host_file_(File_Of(file_name_)),
      components_(std::make_unique<Component_List>()),
      references_(std::make_unique<Reference_List>()) {}

Memory_Project::~Memory_Project() = default;

VBComponents& Memory_Project::VBComponents() {
  if (protection_ == Protection::Locked)
    throw Host_Error(kErr_Protected, "プロジェクトは保護されています。");
  return *components_;
}

References& Memory_Project::References() {
  return *references_;
}

Memory_Component& Memory_Project::Add_Component(Component_Data data) {
  if (Find_Component(data.name) != nullptr)
    throw Host_Error(kErr_Duplicate, "同じ名前のモジュールがあります: " + data.name);
  auto& added = components_->list.emplace_back(
      std::make_unique<Memory_Component>(*this, desk_, std::move(data)));
  components_->index.emplace(service::To_Lower(added->Name()), added.get());
  return *added;
}

void Memory_Component::Set_Name(std::string name) {
  name_ = std::move(name);
  project_.Names_Changed();
}

void Memory_Project::Names_Changed() {
  components_->indexed = false;
}

void Memory_Project::Remove_Component(const Memory_Component& component) {
  Names_Changed();
  std::erase_if(components_->list, [&](const auto& each) { return each.get() == &component; });
}

Memory_Component* Memory_Project::Find_Component(std::string_view name) const {
  return components_->Find(name);
}

const std::vector<std::unique_ptr<Memory_Component>>& Memory_Project::Components() const {
  return components_->list;
}

void Memory_Project::Add_Reference(Reference_Data data) {
  references_->list.emplace_back(std::move(data));
}

}  // namespace oru::host
