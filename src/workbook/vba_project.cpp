// SPDX-License-Identifier: MIT
#include "workbook/vba_project.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "host/model.h"
#include "service/codec.h"
#include "service/collection.h"
#include "service/text.h"
#include "workbook/project_stream.h"
#include "workbook/vba_compression.h"

namespace oru::workbook {
namespace {

using container::Storage;
using container::Stream;

constexpr std::string_view kVba = "VBA", kDir = "dir", kCache = "_VBA_PROJECT";
constexpr std::string_view kCompiled = "__SRP_";  // what the host compiled, by the number behind
// A cache without content, of a version that no host has: it then reads the sources.
constexpr std::string_view kEmpty_Cache{"\xCC\x61\xFF\xFF\x00\x00\x00", 7};

bool Is_Compiled(const Stream& stream) {
  return service::Match_No_Case(stream.name, kCompiled) != std::string_view::npos;
}

// The value of `Attribute VB_Base` in the head of a source; it is ASCII in every code page.
std::string_view Base_Of(std::string_view source) {
  constexpr std::string_view kKey = "Attribute VB_Base = \"";
  const std::size_t at = source.find(kKey);
  if (at == source.npos || (at > 0 && source[at - 1] != '\n' && source[at - 1] != '\r')) return {};
  const std::string_view value = source.substr(at + kKey.size());
  return value.substr(0, value.find('"'));
}

Document_Kind Document_Of(std::string_view base) {
  constexpr struct {
    std::string_view id;
    Document_Kind kind;
  } kBases[] = {
      {"0{00020819", Document_Kind::Workbook},
      {"0{00020820", Document_Kind::Worksheet},
      {"0{00020821", Document_Kind::Chart},
  };
  for (const auto& entry : kBases)
    if (base.starts_with(entry.id)) return entry.kind;
  return Document_Kind::Other;
}

Item_Kind Kind_By_Source(const Storage& project, const Dir_Module& module, std::string_view base) {
  if (module.procedural) return Item_Kind::Module;
  if (project.Find_Storage(module.name) != nullptr) return Item_Kind::Form;
  return Document_Of(base) != Document_Kind::Other ? Item_Kind::Document : Item_Kind::Class;
}

int Type_Of(Item_Kind kind) {
  switch (kind) {
    case Item_Kind::Document:
      return host::kType_Document;
    case Item_Kind::Module:
      return host::kType_Module;
    case Item_Kind::Class:
      return host::kType_Class;
    case Item_Kind::Form:
      return host::kType_Form;
  }
  return host::kType_Module;
}

// What the sources may unpack to, by what the whole project takes packed: more than any text needs.
constexpr std::size_t kMost_Ratio = 8;
constexpr std::size_t kFree_Of_Ratio = std::size_t{1} << 20;

std::size_t Packed_Size(const Storage& storage) {
  std::size_t size = 0;
  for (const Stream& stream : storage.streams) size += stream.bytes.size();
  return size;
}

// The source of a module, or nothing with `error` set. `budget` is what all sources together may
// still unpack to.
std::string Source_Of(const Storage& vba, const Dir_Module& module, std::size_t& budget,
                      std::string& error) {
  const Stream* stream = vba.Find_Stream(module.stream);
  if (stream == nullptr) {
    error =
        fmt::format("モジュール「{}」のストリーム「{}」がありません。", module.name, module.stream);
    return {};
  }
  if (module.offset > stream->bytes.size()) {
    error = fmt::format("モジュール「{}」のソースの位置が、ストリームの外を指しています。",
                        module.name);
    return {};
  }
  auto source = Decompress(std::string_view(stream->bytes).substr(module.offset), budget);
  if (!source) {
    error = fmt::format("モジュール「{}」のソースが破損しています。", module.name);
    return {};
  }
  budget -= source->size();
  // What a chunk is filled up with belongs to no source.
  source->resize(source->find_last_not_of('\0') + 1);
  return std::move(*source);
}

struct Read_Directory {
  Vba_Dir dir;
  std::string bytes;
};

Read_Directory Directory_Of(const Storage& project) {
  Read_Directory read;
  const Storage* vba = project.Find_Storage(kVba);
  const Stream* stream = vba == nullptr ? nullptr : vba->Find_Stream(kDir);
  if (stream == nullptr) {
    read.dir.error = "マクロの一覧（dir ストリーム）がありません。";
    return read;
  }
  auto bytes = Decompress(stream->bytes, kFree_Of_Ratio + kMost_Ratio * stream->bytes.size());
  if (!bytes) {
    read.dir.error = "マクロの一覧（dir ストリーム）を展開できません。破損しています。";
    return read;
  }
  read.bytes = std::move(*bytes);
  read.dir = Read_Dir(read.bytes);
  return read;
}

// True if a module is the only one of its name and of its stream, and the stream nothing else.
bool Stands_Alone(const Vba_Dir& dir, const Dir_Module& module, const Stream& stream) {
  const auto alike =
      std::count_if(dir.modules.begin(), dir.modules.end(), [&](const Dir_Module& other) {
        return service::Equal_No_Case(other.stream, module.stream) ||
               service::Equal_No_Case(other.name, module.name);
      });
  return alike == 1 && !Is_Compiled(stream) && !service::Equal_No_Case(stream.name, kDir) &&
         !service::Equal_No_Case(stream.name, kCache);
}

template <class S>
S* Find_Project_In(S& root) {
  if (root.Find_Storage(kVba) != nullptr) return &root;
  for (const std::string_view name : {"_VBA_PROJECT_CUR", "Macros"}) {
    S* inner = root.Find_Storage(name);
    if (inner != nullptr && inner->Find_Storage(kVba) != nullptr) return inner;
  }
  return nullptr;
}

}  // namespace

const Storage* Find_Project(const Storage& root) {
  return Find_Project_In(root);
}
Storage* Find_Project(Storage& root) {
  return Find_Project_In(root);
}

Vba_Project Read_Vba(const Storage& project) {
  Vba_Project read;
  Vba_Dir dir = Directory_Of(project).dir;
  if (!dir.Ok()) {
    read.error = std::move(dir.error);
    return read;
  }
  read.name = std::move(dir.name);
  read.description = std::move(dir.description);
  read.code_page = dir.code_page;
  read.references = std::move(dir.references);
  read.page = dir.page;
  if (read.page == nullptr) {
    read.error = fmt::format("プロジェクトのコードページ {} は使えません。", dir.code_page);
    return read;
  }
  Project_Stream told;
  if (const Stream* stream = project.Find_Stream("PROJECT"); stream != nullptr)
    told = Read_Project_Stream(stream->bytes, *read.page);
  read.locked = told.locked;

  const Storage& vba = *project.Find_Storage(kVba);
  std::size_t budget = kFree_Of_Ratio + kMost_Ratio * Packed_Size(vba);
  service::Text_Map<Item_Kind> kinds;
  for (const Project_Item& item : told.items)
    kinds.emplace(service::To_Lower(item.name), item.kind);
  for (const Dir_Module& from : dir.modules) {
    Vba_Module module;
    module.name = from.name;
    module.source = Source_Of(vba, from, budget, module.error);
    const std::string_view base = Base_Of(module.source);
    const auto told_kind = kinds.find(service::To_Lower(from.name));
    const Item_Kind kind =
        told_kind == kinds.end() ? Kind_By_Source(project, from, base) : told_kind->second;
    module.type = Type_Of(kind);
    if (kind == Item_Kind::Document) module.document = Document_Of(base);
    read.modules.push_back(std::move(module));
  }
  return read;
}

std::string Write_Vba(Storage& project, const std::vector<Changed_Module>& changed) {
  Read_Directory read = Directory_Of(project);
  if (!read.dir.Ok()) return read.dir.error;
  Storage vba = *project.Find_Storage(kVba);
  for (const Changed_Module& change : changed) {
    const auto module = std::find_if(
        read.dir.modules.begin(), read.dir.modules.end(),
        [&](const Dir_Module& m) { return service::Equal_No_Case(m.name, change.name); });
    Stream* stream = module == read.dir.modules.end() ? nullptr : vba.Find_Stream(module->stream);
    if (stream == nullptr || module->offset_at == 0 || !Stands_Alone(read.dir, *module, *stream))
      return fmt::format(
          "モジュール「{}」のソースの置き場所が、ファイルに正しく記録されていません。",
          change.name);
    stream->bytes = Compress(change.source);
    read.bytes.replace(module->offset_at, 4, 4, '\0');
  }
  vba.Find_Stream(kDir)->bytes = Compress(read.bytes);
  if (Stream* cache = vba.Find_Stream(kCache); cache != nullptr) cache->bytes = kEmpty_Cache;
  std::erase_if(vba.streams, Is_Compiled);
  *project.Find_Storage(kVba) = std::move(vba);
  return {};
}

namespace {

// With `sources`, the streams of the storage are not compared, only those in the storages within.
bool Same_Storage(const Storage& a, const Storage& b, bool sources) {
  if (a.class_id != b.class_id || a.storages.size() != b.storages.size()) return false;
  const auto kept = [](const Storage& s) {
    return std::count_if(s.streams.begin(), s.streams.end(),
                         [](const Stream& stream) { return !Is_Compiled(stream); });
  };
  if (kept(a) != kept(b)) return false;
  for (const Stream& stream : a.streams) {
    if (Is_Compiled(stream)) continue;
    const Stream* other = b.Find_Stream(stream.name);
    if (other == nullptr || (!sources && other->bytes != stream.bytes)) return false;
  }
  return std::all_of(a.storages.begin(), a.storages.end(), [&](const Storage& storage) {
    const Storage* other = b.Find_Storage(storage.name);
    return other != nullptr &&
           Same_Storage(storage, *other, service::Equal_No_Case(storage.name, kVba));
  });
}

}  // namespace

bool Same_But_Sources(const Storage& a, const Storage& b) {
  return Same_Storage(a, b, false);
}

}  // namespace oru::workbook
