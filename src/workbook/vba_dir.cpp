// SPDX-License-Identifier: MIT
#include "workbook/vba_dir.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <utility>

#include "container/byte_reader.h"
#include "service/codec.h"

namespace oru::workbook {
namespace {

constexpr std::size_t kMost_Modules = 10'000;  // no host makes as many

using container::Byte_Reader;

// The records' numbers, as the format's description names them.
enum Record : std::uint16_t {
  kSys_Kind = 0x0001,
  kLcid = 0x0002,
  kCode_Page = 0x0003,
  kName = 0x0004,
  kDoc_String = 0x0005,
  kHelp_File = 0x0006,
  kHelp_Context = 0x0007,
  kLib_Flags = 0x0008,
  kVersion = 0x0009,
  kConstants = 0x000C,
  kReference_Registered = 0x000D,
  kReference_Project = 0x000E,
  kModules = 0x000F,
  kEnd = 0x0010,
  kCookie = 0x0013,
  kLcid_Invoke = 0x0014,
  kReference_Name = 0x0016,
  kModule_Name = 0x0019,
  kModule_Stream = 0x001A,
  kModule_Doc_String = 0x001C,
  kModule_Help_Context = 0x001E,
  kModule_Procedural = 0x0021,
  kModule_Other = 0x0022,
  kModule_Read_Only = 0x0025,
  kModule_Private = 0x0028,
  kModule_End = 0x002B,
  kModule_Cookie = 0x002C,
  kReference_Control = 0x002F,
  kReference_Extended = 0x0030,
  kModule_Offset = 0x0031,
  kModule_Stream_Unicode = 0x0032,
  kReference_Original = 0x0033,
  kConstants_Unicode = 0x003C,
  kHelp_File_2 = 0x003D,
  kReference_Name_Unicode = 0x003E,
  kDoc_String_Unicode = 0x0040,
  kModule_Name_Unicode = 0x0047,
  kModule_Doc_String_Unicode = 0x0048,
  kCompat_Version = 0x004A,
};

constexpr std::array<std::uint16_t, 39> kKnown = {kSys_Kind,
                                                  kLcid,
                                                  kCode_Page,
                                                  kName,
                                                  kDoc_String,
                                                  kHelp_File,
                                                  kHelp_Context,
                                                  kLib_Flags,
                                                  kVersion,
                                                  kConstants,
                                                  kReference_Registered,
                                                  kReference_Project,
                                                  kModules,
                                                  kEnd,
                                                  kCookie,
                                                  kLcid_Invoke,
                                                  kReference_Name,
                                                  kModule_Name,
                                                  kModule_Stream,
                                                  kModule_Doc_String,
                                                  kModule_Help_Context,
                                                  kModule_Procedural,
                                                  kModule_Other,
                                                  kModule_Read_Only,
                                                  kModule_Private,
                                                  kModule_End,
                                                  kModule_Cookie,
                                                  kReference_Control,
                                                  kReference_Extended,
                                                  kModule_Offset,
                                                  kModule_Stream_Unicode,
                                                  kReference_Original,
                                                  kConstants_Unicode,
                                                  kHelp_File_2,
                                                  kReference_Name_Unicode,
                                                  kDoc_String_Unicode,
                                                  kModule_Name_Unicode,
                                                  kModule_Doc_String_Unicode,
                                                  kCompat_Version};

constexpr std::size_t kVersion_Size = 6;  // although the record says 4

bool Is_Known(std::uint16_t id) {
  return std::find(kKnown.begin(), kKnown.end(), id) != kKnown.end();
}

// What a reference's record really takes, by the lengths within it; nothing for other records and
// where those lengths lead outside. Some writers put a wrong total into the record.
std::optional<std::size_t> Inner_Size(std::uint16_t id, std::string_view rest) {
  Byte_Reader reader(rest);
  switch (id) {
    case kReference_Registered:
    case kReference_Control:
      reader.Skip(reader.U32());
      reader.Skip(6);
      break;
    case kReference_Extended:
      reader.Skip(reader.U32());
      reader.Skip(26);
      break;
    case kReference_Project:
      reader.Skip(reader.U32());
      reader.Skip(reader.U32());
      reader.Skip(6);
      break;
    default:
      return std::nullopt;
  }
  if (!reader.Ok()) return std::nullopt;
  const std::size_t size = reader.At();
  const bool led_on = reader.At_End() || Is_Known(reader.U16());
  return led_on ? std::optional(size) : std::nullopt;
}

// The text of the first counted string of a reference's record.
std::string_view Counted(std::string_view payload) {
  Byte_Reader reader(payload);
  return reader.Bytes(reader.U32());
}

class Dir_Reader {
 public:
  explicit Dir_Reader(std::string_view bytes) : bytes_(bytes), reader_(bytes) {}

  Vba_Dir Read() {
    while (!done_ && !reader_.At_End()) {
      const std::uint16_t id = reader_.U16();
      std::size_t size = reader_.U32();
      if (id == kVersion) size = kVersion_Size;
      if (const auto inner = Inner_Size(id, bytes_.substr(reader_.At()))) size = *inner;
      const std::size_t at = reader_.At();
      const std::string_view payload = reader_.Bytes(size);
      if (!reader_.Ok() || !Is_Known(id)) return Fail(at);
      Take(id, payload, at);
    }
    if (page_ == nullptr) Set_Page();
    const std::size_t expected = done_ ? announced_ : std::max<std::size_t>(announced_, 1);
    if (dir_.modules.size() < expected) return Fail(bytes_.size());
    if (dir_.modules.size() > kMost_Modules) {
      Vba_Dir failed;
      failed.error =
          fmt::format("モジュールが多すぎるため、読み込みません（上限 {} 個）。", kMost_Modules);
      return failed;
    }
    if (page_->Number() == dir_.code_page) dir_.page = page_;
    for (Dir_Module& module : dir_.modules)
      if (module.stream.empty()) module.stream = module.name;
    return std::move(dir_);
  }

 private:
  [[nodiscard]] Vba_Dir Fail(std::size_t at) const {
    Vba_Dir failed;
    failed.error =
        fmt::format("マクロの一覧（dir ストリーム）が {} バイト目の近くで破損しています。", at);
    return failed;
  }

  void Set_Page() {
    if (dir_.code_page == 0) dir_.code_page = 1252;
    page_ = service::Code_Page::Open(dir_.code_page);
    if (page_ == nullptr) page_ = service::Code_Page::Open(1252);
  }

  std::string Text(std::string_view bytes) {
    if (page_ == nullptr) Set_Page();
    std::string text = page_->Decode(bytes).text;
    return text.substr(0, text.find('\0'));
  }

  static std::string Wide(std::string_view bytes) {
    std::string text = service::Text_Of_Utf16(bytes);
    return text.substr(0, text.find('\0'));
  }

  static void Prefer(std::string& name, std::string wide) {
    if (!wide.empty()) name = std::move(wide);
  }

  void Take(std::uint16_t id, std::string_view payload, std::size_t at) {
    Byte_Reader value(payload);
    switch (id) {
      case kCode_Page:
        dir_.code_page = value.U16();
        break;
      case kName:
        dir_.name = Text(payload);
        break;
      case kDoc_String:
        dir_.description = Text(payload);
        break;
      case kDoc_String_Unicode:
        Prefer(dir_.description, Wide(payload));
        break;
      case kReference_Name:
        // The name of the library that a control's twiddled one stands for comes within its record.
        if (!in_control_) reference_ = Text(payload);
        break;
      case kReference_Name_Unicode:
        if (!in_control_) Prefer(reference_, Wide(payload));
        break;
      case kReference_Original:
        original_ = Text(payload);
        break;
      case kReference_Control:
        in_control_ = true;
        break;
      case kReference_Extended:
        Add_Reference(original_.empty() ? Text(Counted(payload)) : original_);
        break;
      case kReference_Registered:
      case kReference_Project:
        Add_Reference(Text(Counted(payload)));
        break;
      case kModules:
        announced_ = value.U16();
        break;
      case kEnd:
        done_ = true;
        break;
      default:
        Take_Module(id, payload, at);
    }
  }

  void Take_Module(std::uint16_t id, std::string_view payload, std::size_t at) {
    if (dir_.modules.size() > kMost_Modules) return;
    if (id == kModule_Name) {
      dir_.modules.emplace_back().name = Text(payload);
      return;
    }
    if (dir_.modules.empty()) return;
    Dir_Module& module = dir_.modules.back();
    Byte_Reader value(payload);
    switch (id) {
      case kModule_Name_Unicode:
        Prefer(module.name, Wide(payload));
        break;
      case kModule_Stream:
        module.stream = Text(payload);
        break;
      case kModule_Stream_Unicode:
        Prefer(module.stream, Wide(payload));
        break;
      case kModule_Offset:
        module.offset = value.U32();
        if (payload.size() == 4) module.offset_at = at;
        break;
      case kModule_Procedural:
        module.procedural = true;
        break;
      default:
        break;
    }
  }

  void Add_Reference(std::string library) {
    dir_.references.push_back({std::move(reference_), std::move(library)});
    reference_.clear();
    original_.clear();
    in_control_ = false;
  }

  std::string_view bytes_;
  Byte_Reader reader_;
  Vba_Dir dir_;
  std::shared_ptr<const service::Code_Page> page_;
  std::string reference_, original_;
  bool in_control_ = false, done_ = false;
  std::size_t announced_ = 0;
};

}  // namespace

Vba_Dir Read_Dir(std::string_view bytes) {
  return Dir_Reader(bytes).Read();
}

}  // namespace oru::workbook
