// SPDX-License-Identifier: MIT
// A zip archive in memory: the names of its parts, the content of one at a time, and the archive
// with one part replaced. Whatever is not replaced keeps its very bytes, compressed as they are.
// What a part may unpack to is limited, so that a small file cannot fill the memory.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace oru::container {

/// True if the bytes begin as an archive with at least one part does.
[[nodiscard]] bool Is_Archive(std::string_view bytes);

class Archive {
 public:
  struct Limits {
    std::uint64_t part = std::uint64_t{1} << 29;   ///< of one part that is held, in bytes
    std::uint64_t total = std::uint64_t{1} << 32;  ///< of all that is unpacked, in bytes
    /// Unpacked size to packed size of a part that is held, beyond the first 4 MiB.
    std::uint64_t ratio = 100;
    /// The same of a part that is read in pieces, beyond the first 64 MiB.
    std::uint64_t ratio_of_pieces = 200;
  };
  /// A part's content or why there is none.
  struct Part {
    std::string error;  ///< Japanese, naming the part; empty on success
    std::string bytes;
    [[nodiscard]] bool Ok() const { return error.empty(); }
  };

  Archive();
  ~Archive();
  Archive(Archive&&) noexcept;
  Archive& operator=(Archive&&) noexcept;

  /// Takes the bytes of an archive; gives an empty text, or what is wrong with it, in Japanese,
  /// without the file's name.
  [[nodiscard]] std::string Open(std::string bytes, const Limits& limits);
  [[nodiscard]] std::string Open(std::string bytes) { return Open(std::move(bytes), Limits()); }

  /// The names of all parts, in the archive's order, "/" between folders.
  [[nodiscard]] const std::vector<std::string>& Names() const;
  /// The name as it stands in the archive, found without regard to letter case and to a leading
  /// "/"; nothing if there is no such part.
  [[nodiscard]] std::optional<std::string> Find(std::string_view name) const;
  /// Unpacks one part, checking its checksum. `name` as `Find` takes it.
  [[nodiscard]] Part Read(std::string_view name) const;
  /// The same piece by piece, for parts that are too large to be held: `take` is called with each
  /// piece in order, and ends the reading by giving false. An empty text, or what is wrong.
  [[nodiscard]] std::string Read_Pieces(std::string_view name,
                                        const std::function<bool(std::string_view)>& take) const;

  /// True if the other archive has the same parts in the same order, with the same checksums and
  /// sizes, packed and unpacked; the part `except` aside.
  [[nodiscard]] bool Same_Parts(const Archive& other, std::string_view except) const;

  /// The archive's bytes with one part's content replaced, or why that failed (in `error`).
  [[nodiscard]] Part With_Part(std::string_view name, std::string_view content) const;

 private:
  struct Opened;
  std::unique_ptr<Opened> opened_;
};

}  // namespace oru::container
