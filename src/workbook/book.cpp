// SPDX-License-Identifier: MIT
#include "workbook/book.h"

#include <fmt/format.h>

#include <utility>

#include "workbook/package.h"
#include "workbook/property_set.h"

namespace oru::workbook {
namespace {

constexpr std::string_view kNo_Macros = "マクロ（VBA プロジェクト）がありません。";

}  // namespace

std::string Book::Open(std::string bytes) {
  if (bytes.empty()) return "空のファイルです。";
  if (container::Is_Archive(bytes)) return Open_Archive(std::move(bytes));
  if (container::Is_Compound(bytes)) return Open_Compound(bytes);
  return "ブックの形式（xlsm、xlsb、xls など）ではありません。";
}

std::string Book::Open_Archive(std::string bytes) {
  container::Archive archive;
  if (std::string error = archive.Open(std::move(bytes)); !error.empty()) return error;
  const auto part = Vba_Part(archive);
  if (!part) return std::string(kNo_Macros);
  const container::Archive::Part read = archive.Read(*part);
  if (!read.Ok()) return read.error;
  container::Compound_File compound = container::Read_Compound(read.bytes);
  if (!compound.Ok()) return fmt::format("部品「{}」の{}", *part, compound.error);
  compound_ = std::move(compound.root);
  if (Find_Project(compound_) == nullptr) return fmt::format("部品「{}」に{}", *part, kNo_Macros);
  vba_part_ = *part;
  signed_ = Has_Signature(archive, *part);
  archive_ = std::move(archive);
  return {};
}

std::string Book::Open_Compound(std::string_view bytes) {
  container::Compound_File compound = container::Read_Compound(bytes);
  if (!compound.Ok()) return compound.error;
  compound_ = std::move(compound.root);
  if (compound_.Find_Stream("EncryptedPackage") != nullptr)
    return "パスワードで暗号化されています。パスワードを解除して保存したものを指定してください。";
  if (Find_Project(compound_) == nullptr) {
    if (compound_.Find_Stream("Book") != nullptr && compound_.Find_Stream("Workbook") == nullptr)
      return "Excel 5.0/95 形式のブックのため、マクロを読めません。新しい形式で保存し直してください。";
    return std::string(kNo_Macros);
  }
  signed_ = Has_Signature(compound_);
  return {};
}

std::optional<Workbook_Parts> Book::Parts() const {
  if (archive_) return Read_Parts(*archive_);
  if (const auto* stream = compound_.Find_Stream("Workbook"); stream != nullptr)
    return Read_Parts_Xls(stream->bytes);
  return std::nullopt;
}

bool Book::Same_Elsewhere(const Book& other) const {
  if (archive_.has_value() != other.archive_.has_value()) return false;
  if (archive_ && !archive_->Same_Parts(*other.archive_, vba_part_)) return false;
  return Same_But_Sources(compound_, other.compound_);
}

Book::Rewritten Book::With_Sources(const std::vector<Changed_Module>& changed) const {
  container::Storage compound = compound_;
  if (std::string error = Write_Vba(*Find_Project(compound), changed); !error.empty())
    return {std::move(error), {}};
  std::string bytes = container::Write_Compound(compound);
  if (bytes.empty()) return {"複合ファイルを作成できません。", {}};
  if (!archive_) return {{}, std::move(bytes)};
  container::Archive::Part whole = archive_->With_Part(vba_part_, bytes);
  return {std::move(whole.error), std::move(whole.bytes)};
}

}  // namespace oru::workbook
