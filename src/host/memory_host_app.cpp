// SPDX-License-Identifier: MIT
#include "host/memory_host_app.h"

#include <algorithm>
#include <utility>

#include "service/text.h"

namespace oru::host {
namespace {

constexpr int kErr_Application = 1004;  // the host's "application-defined error"

void Refuse_If(bool fails) {
  if (fails) throw Host_Error(kErr_Application, "アプリケーションのオブジェクトを参照できません。");
}

template <class Items>
auto& At(Items& items, int position) {
  if (position < 1 || position > static_cast<int>(items.size()))
    throw Host_Error(kErr_Subscript, "インデックスが有効範囲にありません。");
  return items[static_cast<std::size_t>(position) - 1];
}

class Memory_OLEObject final : public OLEObject {
 public:
  explicit Memory_OLEObject(OLEObject_Data data) : data_(std::move(data)) {}
  [[nodiscard]] int OLEType() const override {
    Refuse_If(data_.fails);
    return data_.type;
  }
  [[nodiscard]] std::string Name() const override {
    Refuse_If(data_.fails);
    return data_.name;
  }

 private:
  OLEObject_Data data_;
};

class Memory_Shape final : public Shape {
 public:
  explicit Memory_Shape(Shape_Data data) : data_(std::move(data)) {}
  [[nodiscard]] std::string OnAction() const override {
    Refuse_If(data_.fails);
    return data_.on_action;
  }

 private:
  Shape_Data data_;
};

/// A collection of the host over its items.
template <class Base, class Item_Base, class Item_Type>
class List final : public Base {
 public:
  template <class Data>
  explicit List(const std::vector<Data>& data) {
    for (const Data& each : data) items_.emplace_back(each);
  }
  [[nodiscard]] int Count() const override { return static_cast<int>(items_.size()); }
  [[nodiscard]] Item_Base& Item(int position) override { return At(items_, position); }

 private:
  std::vector<Item_Type> items_;
};

class Memory_Sheet final : public Sheet {
 public:
  explicit Memory_Sheet(const Sheet_Data& data)
      : data_(data), ole_objects_(data.ole_objects), shapes_(data.shapes) {}
  [[nodiscard]] std::string Name() const override {
    Refuse_If(data_.fails);
    return data_.name;
  }
  [[nodiscard]] std::string CodeName() const override {
    Refuse_If(data_.fails);
    return data_.code_name;
  }
  [[nodiscard]] class OLEObjects& OLEObjects() override {
    Refuse_If(data_.ole_objects_fail);
    return ole_objects_;
  }
  [[nodiscard]] class Shapes& Shapes() override {
    Refuse_If(data_.shapes_fail);
    return shapes_;
  }

 private:
  Sheet_Data data_;
  List<host::OLEObjects, OLEObject, Memory_OLEObject> ole_objects_;
  List<host::Shapes, Shape, Memory_Shape> shapes_;
};

}  // namespace

class Memory_Host_App::Memory_Workbook final : public Workbook {
 public:
  explicit Memory_Workbook(const Workbook_Data& data) : data_(data), sheets_(data.sheets) {}
  [[nodiscard]] std::string Name() const override {
    Refuse_If(data_.fails);
    return data_.name;
  }
  [[nodiscard]] std::string CodeName() const override {
    Refuse_If(data_.fails);
    return data_.code_name;
  }
  [[nodiscard]] class Sheets& Sheets() override {
    Refuse_If(data_.sheets_fail);
    return sheets_;
  }
  [[nodiscard]] bool Is(std::string_view name) const {
    return service::Equal_No_Case(data_.name, name);
  }

 private:
  Workbook_Data data_;
  List<host::Sheets, Sheet, Memory_Sheet> sheets_;
};

Memory_Host_App::Memory_Host_App(std::string name, std::string version)
    : name_(std::move(name)), version_(std::move(version)) {}

Memory_Host_App::~Memory_Host_App() = default;

void Memory_Host_App::Add_Workbook(const Workbook_Data& data) {
  Close_Workbook(data.name);
  workbooks_.push_back(std::make_unique<Memory_Workbook>(data));
}

void Memory_Host_App::Close_Workbook(std::string_view name) {
  std::erase_if(workbooks_, [&](const auto& each) { return each->Is(name); });
}

Workbook& Memory_Host_App::Workbooks(std::string_view file) {
  const auto book = std::ranges::find_if(workbooks_, [&](const auto& e) { return e->Is(file); });
  if (book == workbooks_.end())
    throw Host_Error(kErr_Subscript, "インデックスが有効範囲にありません。");
  return **book;
}

}  // namespace oru::host
