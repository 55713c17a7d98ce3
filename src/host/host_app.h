// SPDX-License-Identifier: MIT
// The few objects of the spreadsheet host that the system asks for, all late-bound: each member
// may throw `Host_Error`, and the caller then goes on with nothing.
#pragma once

#include <string>
#include <string_view>

#include "host/model.h"

namespace oru::host {

class OLEObject {
 public:
  virtual ~OLEObject() = default;
  [[nodiscard]] virtual int OLEType() const = 0;  ///< 2 for a control
  [[nodiscard]] virtual std::string Name() const = 0;
};

class OLEObjects {
 public:
  virtual ~OLEObjects() = default;
  [[nodiscard]] virtual int Count() const = 0;
  [[nodiscard]] virtual OLEObject& Item(int position) = 0;  ///< 1-based
};

class Shape {
 public:
  virtual ~Shape() = default;
  [[nodiscard]] virtual std::string OnAction() const = 0;
};

class Shapes {
 public:
  virtual ~Shapes() = default;
  [[nodiscard]] virtual int Count() const = 0;
  [[nodiscard]] virtual Shape& Item(int position) = 0;
};

class Sheet {
 public:
  virtual ~Sheet() = default;
  [[nodiscard]] virtual std::string Name() const = 0;  ///< tab name
  [[nodiscard]] virtual std::string CodeName() const = 0;
  [[nodiscard]] virtual class OLEObjects& OLEObjects() = 0;
  [[nodiscard]] virtual class Shapes& Shapes() = 0;
};

class Sheets {
 public:
  virtual ~Sheets() = default;
  [[nodiscard]] virtual int Count() const = 0;
  [[nodiscard]] virtual Sheet& Item(int position) = 0;
};

class Workbook {
 public:
  virtual ~Workbook() = default;
  [[nodiscard]] virtual std::string Name() const = 0;
  [[nodiscard]] virtual std::string CodeName() const = 0;
  [[nodiscard]] virtual class Sheets& Sheets() = 0;
};

class HostApp {
 public:
  virtual ~HostApp() = default;
  [[nodiscard]] virtual std::string Name() const = 0;
  [[nodiscard]] virtual std::string Version() const = 0;
  /// The open workbook of that file name; throws kErr_Subscript if there is none.
  [[nodiscard]] virtual Workbook& Workbooks(std::string_view file) = 0;
};

}  // namespace oru::host
