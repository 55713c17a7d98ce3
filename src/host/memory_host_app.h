// SPDX-License-Identifier: MIT
// The spreadsheet host in memory: workbooks as plain data, filled by whoever has read them. Each
// part can be marked as failing, as a late-bound member of the real host may fail: then its members
// throw `Host_Error`.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/host_app.h"

namespace oru::host {

struct OLEObject_Data {
  std::string name = {};
  int type = 2;        ///< 2 for a control
  bool fails = false;  ///< name and type
};

struct Shape_Data {
  std::string on_action = {};
  bool fails = false;
};

struct Sheet_Data {
  std::string name = {};  ///< tab name
  std::string code_name = {};
  std::vector<OLEObject_Data> ole_objects = {};
  std::vector<Shape_Data> shapes = {};
  bool fails = false;             ///< name and code name
  bool ole_objects_fail = false;  ///< the collection
  bool shapes_fail = false;
};

struct Workbook_Data {
  std::string name = {};  ///< file name without folder
  std::string code_name = {};
  std::vector<Sheet_Data> sheets = {};
  bool fails = false;  ///< name and code name
  bool sheets_fail = false;
};

class Memory_Host_App final : public HostApp {
 public:
  explicit Memory_Host_App(std::string name = "Excel", std::string version = "16.0");
  ~Memory_Host_App() override;

  /// Opens a workbook, in the place of one of the same name (letter case aside).
  void Add_Workbook(const Workbook_Data& data);
  void Close_Workbook(std::string_view name);

  [[nodiscard]] std::string Name() const override { return name_; }
  [[nodiscard]] std::string Version() const override { return version_; }
  /// Names are compared without regard to letter case.
  [[nodiscard]] Workbook& Workbooks(std::string_view file) override;

 private:
  class Memory_Workbook;
  std::string name_, version_;
  std::vector<std::unique_ptr<Memory_Workbook>> workbooks_;
};

}  // namespace oru::host
