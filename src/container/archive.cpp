// SPDX-License-Identifier: MIT
#include "container/archive.h"

#include <fmt/format.h>
#include <zip.h>

#include <algorithm>
#include <array>
#include <unordered_map>

#include "service/text.h"

namespace oru::container {
namespace {

constexpr std::uint64_t kFree_Of_Ratio = std::uint64_t{4} << 20;
constexpr std::uint64_t kFree_Of_Pieces = std::uint64_t{64} << 20;
constexpr std::size_t kPiece = std::size_t{1} << 16;

struct Close_Archive {
  void operator()(zip_t* zip) const { zip_discard(zip); }
};
struct Close_Part {
  void operator()(zip_file_t* file) const { zip_fclose(file); }
};
struct Free_Source {
  void operator()(zip_source_t* source) const { zip_source_free(source); }
};
using Zip = std::unique_ptr<zip_t, Close_Archive>;
using Zip_Part = std::unique_ptr<zip_file_t, Close_Part>;
using Zip_Source = std::unique_ptr<zip_source_t, Free_Source>;

// The library's error codes in the words of a user.
std::string Why(int code) {
  switch (code) {
    case ZIP_ER_NOPASSWD:
    case ZIP_ER_WRONGPASSWD:
      return "パスワードで暗号化されています。";
    case ZIP_ER_COMPNOTSUPP:
    case ZIP_ER_ENCRNOTSUPP:
      return "圧縮または暗号化の方式に対応していません。";
    case ZIP_ER_CRC:
      return "チェックサムが一致しません（破損しています）。";
    case ZIP_ER_MEMORY:
      return "メモリが不足しています。";
    default:
      return "破損しています。";
  }
}

// Writes bytes into an empty source of the library's own.
bool Fill(zip_source_t* source, std::string_view bytes) {
  if (zip_source_begin_write(source) != 0) return false;
  const zip_int64_t count = zip_source_write(source, bytes.data(), bytes.size());
  if (count >= 0 && static_cast<std::size_t>(count) == bytes.size())
    return zip_source_commit_write(source) == 0;
  zip_source_rollback_write(source);
  return false;
}

std::string Key_Of(std::string_view name) {
  while (name.starts_with('/')) name.remove_prefix(1);
  std::string key = service::To_Lower(name);
  std::replace(key.begin(), key.end(), '\\', '/');
  return key;
}

}  // namespace

bool Is_Archive(std::string_view bytes) {
  return bytes.starts_with("PK\x03\x04");
}

struct Archive::Opened {
  std::string bytes;
  Limits limits;
  Zip zip;
  std::vector<std::string> names;
  std::unordered_map<std::string, zip_uint64_t> places;  // by `Key_Of`
  std::uint64_t unpacked = 0;

  [[nodiscard]] std::optional<zip_uint64_t> Place(std::string_view name) const {
    const auto found = places.find(Key_Of(name));
    return found == places.end() ? std::nullopt : std::optional(found->second);
  }
  // What part `place` takes in the file; 0 if that is not known.
  [[nodiscard]] std::uint64_t Packed_Size(zip_uint64_t place) const {
    zip_stat_t stat;
    zip_stat_init(&stat);
    const bool known =
        zip_stat_index(zip.get(), place, 0, &stat) == 0 && (stat.valid & ZIP_STAT_COMP_SIZE) != 0;
    return known ? std::min<std::uint64_t>(stat.comp_size, bytes.size()) : 0;
  }
  // Unpacks part `place`, at most `most` bytes of it.
  std::string Unpack(std::string_view name, zip_uint64_t place, std::uint64_t most,
                     const std::function<bool(std::string_view)>& take);
};

std::string Archive::Opened::Unpack(std::string_view name, zip_uint64_t place, std::uint64_t most,
                                    const std::function<bool(std::string_view)>& take) {
  const Zip_Part part(zip_fopen_index(zip.get(), place, 0));
  if (!part)
    return fmt::format("部品「{}」は{}", name, Why(zip_error_code_zip(zip_get_error(zip.get()))));
  std::array<char, kPiece> piece{};
  for (std::uint64_t done = 0;;) {
    const zip_int64_t count = zip_fread(part.get(), piece.data(), piece.size());
    if (count < 0)
      return fmt::format("部品「{}」は{}", name,
                         Why(zip_error_code_zip(zip_file_get_error(part.get()))));
    if (count == 0) return {};
    done += static_cast<std::uint64_t>(count);
    unpacked += static_cast<std::uint64_t>(count);
    if (done > most || unpacked > limits.total)
      return fmt::format("部品「{}」は展開すると大きすぎるため、読み込みを中止しました。", name);
    if (!take({piece.data(), static_cast<std::size_t>(count)})) return {};
  }
}

Archive::Archive() = default;
Archive::~Archive() = default;
Archive::Archive(Archive&&) noexcept = default;
Archive& Archive::operator=(Archive&&) noexcept = default;

std::string Archive::Open(std::string bytes, const Limits& limits) {
  if (!Is_Archive(bytes)) return "ファイル（ＺＩＰ形式）が" + Why(ZIP_ER_NOZIP);
  auto opened = std::make_unique<Opened>();
  opened->bytes = std::move(bytes);
  opened->limits = limits;
  Zip_Source source(
      zip_source_buffer_create(opened->bytes.data(), opened->bytes.size(), 0, nullptr));
  if (!source) return Why(ZIP_ER_MEMORY);
  zip_error_t error;
  zip_error_init(&error);
  opened->zip.reset(zip_open_from_source(source.get(), ZIP_RDONLY, &error));
  const int code = zip_error_code_zip(&error);
  zip_error_fini(&error);
  if (!opened->zip) return "ファイル（ＺＩＰ形式）が" + Why(code);
  (void)source.release();  // it belongs to the archive now

  const zip_int64_t count = zip_get_num_entries(opened->zip.get(), 0);
  for (zip_int64_t i = 0; i < count; ++i) {
    const auto place = static_cast<zip_uint64_t>(i);
    const char* name = zip_get_name(opened->zip.get(), place, ZIP_FL_ENC_GUESS);
    opened->names.emplace_back(name == nullptr ? "" : name);
    opened->places.emplace(Key_Of(opened->names.back()), place);
  }
  opened_ = std::move(opened);
  return {};
}

const std::vector<std::string>& Archive::Names() const {
  static const std::vector<std::string> kNone;
  return opened_ ? opened_->names : kNone;
}

std::optional<std::string> Archive::Find(std::string_view name) const {
  const auto place = opened_ ? opened_->Place(name) : std::nullopt;
  return place ? std::optional(opened_->names[*place]) : std::nullopt;
}

Archive::Part Archive::Read(std::string_view name) const {
  const auto place = opened_ ? opened_->Place(name) : std::nullopt;
  if (!place) return {fmt::format("部品「{}」がありません。", name), {}};
  const Limits& limits = opened_->limits;
  const std::uint64_t most =
      std::min(limits.part, kFree_Of_Ratio + opened_->Packed_Size(*place) * limits.ratio);
  zip_stat_t stat;
  zip_stat_init(&stat);
  if (zip_stat_index(opened_->zip.get(), *place, 0, &stat) != 0)
    return {fmt::format("部品「{}」は{}", name, Why(ZIP_ER_INCONS)), {}};
  Part part;
  // What the archive says of the size is believed only within the limit.
  if ((stat.valid & ZIP_STAT_SIZE) != 0 && stat.size <= most) part.bytes.reserve(stat.size);
  part.error = opened_->Unpack(name, *place, most, [&](std::string_view piece) {
    part.bytes += piece;
    return true;
  });
  if (!part.error.empty()) part.bytes.clear();
  return part;
}

std::string Archive::Read_Pieces(std::string_view name,
                                 const std::function<bool(std::string_view)>& take) const {
  const auto place = opened_ ? opened_->Place(name) : std::nullopt;
  if (!place) return fmt::format("部品「{}」がありません。", name);
  const Limits& limits = opened_->limits;
  return opened_->Unpack(
      name, *place, kFree_Of_Pieces + opened_->Packed_Size(*place) * limits.ratio_of_pieces, take);
}

bool Archive::Same_Parts(const Archive& other, std::string_view except) const {
  if (!opened_ || !other.opened_ || Names() != other.Names()) return false;
  const auto changed = opened_->Place(except);
  for (zip_uint64_t i = 0; i < Names().size(); ++i) {
    if (i == changed) continue;
    zip_stat_t a;
    zip_stat_t b;
    if (zip_stat_index(opened_->zip.get(), i, 0, &a) != 0 ||
        zip_stat_index(other.opened_->zip.get(), i, 0, &b) != 0 || a.crc != b.crc ||
        a.size != b.size || a.comp_size != b.comp_size || a.comp_method != b.comp_method)
      return false;
  }
  return true;
}

Archive::Part Archive::With_Part(std::string_view name, std::string_view content) const {
  const auto place = opened_ ? opened_->Place(name) : std::nullopt;
  if (!place) return {fmt::format("部品「{}」がありません。", name), {}};
  const auto failed = [&](int code) {
    return Part{fmt::format("部品「{}」を書き込めません。{}", name, Why(code)), {}};
  };
  // The library writes over its source and frees it, even one that it was only lent: it gets a copy.
  const Zip_Source source(zip_source_buffer_create(nullptr, 0, 1, nullptr));
  if (!source || !Fill(source.get(), opened_->bytes)) return failed(ZIP_ER_MEMORY);
  zip_error_t error;
  zip_error_init(&error);
  zip_source_keep(source.get());  // the archive drops one hold of it when it is closed
  Zip zip(zip_open_from_source(source.get(), 0, &error));
  const int code = zip_error_code_zip(&error);
  zip_error_fini(&error);
  if (!zip) {
    zip_source_free(source.get());
    return failed(code);
  }
  zip_stat_t stat;
  zip_stat_init(&stat);
  const bool has_date =
      zip_stat_index(zip.get(), *place, 0, &stat) == 0 && (stat.valid & ZIP_STAT_MTIME) != 0;
  zip_source_t* fresh = zip_source_buffer(zip.get(), content.data(), content.size(), 0);
  if (fresh == nullptr) return failed(ZIP_ER_MEMORY);
  if (zip_file_replace(zip.get(), *place, fresh, 0) != 0) {
    zip_source_free(fresh);
    return failed(zip_error_code_zip(zip_get_error(zip.get())));
  }
  // The part keeps its date, so that the same content gives the same archive.
  if (has_date) (void)zip_file_set_mtime(zip.get(), *place, stat.mtime, 0);
  if (zip_close(zip.get()) != 0) return failed(zip_error_code_zip(zip_get_error(zip.get())));
  (void)zip.release();

  Part part;
  zip_stat_t size;
  zip_stat_init(&size);
  if (zip_source_stat(source.get(), &size) != 0 || (size.valid & ZIP_STAT_SIZE) == 0 ||
      zip_source_open(source.get()) != 0)
    return failed(ZIP_ER_MEMORY);
  part.bytes.resize(size.size);
  const zip_int64_t read = zip_source_read(source.get(), part.bytes.data(), part.bytes.size());
  (void)zip_source_close(source.get());
  if (read < 0 || static_cast<zip_uint64_t>(read) != size.size) return failed(ZIP_ER_READ);
  return part;
}

}  // namespace oru::container
