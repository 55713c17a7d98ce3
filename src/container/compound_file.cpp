// SPDX-License-Identifier: MIT
#include "container/compound_file.h"

#include <gsf/gsf-infile-msole.h>
#include <gsf/gsf-infile.h>
#include <gsf/gsf-input-memory.h>
#include <gsf/gsf-outfile-msole.h>
#include <gsf/gsf-outfile.h>
#include <gsf/gsf-output-memory.h>
#include <gsf/gsf-utils.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <utility>

#include "container/directory_depth.h"
#include "service/text.h"

namespace oru::container {
namespace {

constexpr std::string_view kSignature = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";
constexpr int kMost_Levels = 32;
constexpr std::size_t kMost_Depth =
    10'000;  // entries are often a chain, and a project has thousands of streams at most
constexpr std::string_view kDamaged = "ファイル（複合ファイル形式）が破損しています。";

struct Unref {
  void operator()(void* object) const { g_object_unref(object); }
};
template <class T>
using Held = std::unique_ptr<T, Unref>;

// The library tells of damage on the error stream; our users are told by `error`.
void Start_Library() {
  static std::once_flag once;
  std::call_once(once, [] {
    gsf_init();
    const auto silent = [](const gchar*, GLogLevelFlags, const gchar*, gpointer) {};
    for (const char* domain :
         {static_cast<const char*>(nullptr), "libgsf:msole", "libgsf", "GLib", "GLib-GObject"})
      g_log_set_handler(domain, static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK), silent, nullptr);
  });
}

template <class Children>
auto* Find(Children& children, std::string_view name) {
  const auto at = std::find_if(children.begin(), children.end(), [&](const auto& child) {
    return service::Equal_No_Case(child.name, name);
  });
  return at == children.end() ? nullptr : &*at;
}

// Reads what is in a storage; false for damage. `budget` is what its streams may still hold:
// streams of a sound file share no sectors, so together they are smaller than the file.
bool Read_Storage(GsfInfile* from, Storage& to, std::size_t& budget, int level) {
  if (level > kMost_Levels) return false;
  (void)gsf_infile_msole_get_class_id(GSF_INFILE_MSOLE(from), to.class_id.data());
  const int count = gsf_infile_num_children(from);
  for (int i = 0; i < count; ++i) {
    const char* name = gsf_infile_name_by_index(from, i);
    const Held<GsfInput> child(gsf_infile_child_by_index(from, i));
    if (!child || name == nullptr) return false;
    auto* storage = GSF_IS_INFILE(child.get()) ? GSF_INFILE(child.get()) : nullptr;
    if (storage != nullptr && gsf_infile_num_children(storage) >= 0) {
      to.storages.push_back({.name = name, .streams = {}, .storages = {}});
      if (!Read_Storage(storage, to.storages.back(), budget, level + 1)) return false;
      continue;
    }
    const gsf_off_t size = gsf_input_size(child.get());
    if (size < 0 || static_cast<std::size_t>(size) > budget) return false;
    budget -= static_cast<std::size_t>(size);
    Stream stream{name, std::string(static_cast<std::size_t>(size), '\0')};
    if (size > 0 && gsf_input_read(child.get(), static_cast<std::size_t>(size),
                                   reinterpret_cast<guint8*>(stream.bytes.data())) == nullptr)
      return false;
    to.streams.push_back(std::move(stream));
  }
  return true;
}

bool Write_Storage(const Storage& from, GsfOutfile* to) {
  if (!gsf_outfile_msole_set_class_id(GSF_OUTFILE_MSOLE(to), from.class_id.data())) return false;
  for (const Storage& storage : from.storages) {
    const Held<GsfOutput> child(gsf_outfile_new_child(to, storage.name.c_str(), TRUE));
    if (!child || !Write_Storage(storage, GSF_OUTFILE(child.get())) ||
        !gsf_output_close(child.get()))
      return false;
  }
  for (const Stream& stream : from.streams) {
    const Held<GsfOutput> child(gsf_outfile_new_child(to, stream.name.c_str(), FALSE));
    if (!child ||
        !gsf_output_write(child.get(), stream.bytes.size(),
                          reinterpret_cast<const guint8*>(stream.bytes.data())) ||
        !gsf_output_close(child.get()))
      return false;
  }
  return true;
}

}  // namespace

const Stream* Storage::Find_Stream(std::string_view child) const {
  return Find(streams, child);
}
Stream* Storage::Find_Stream(std::string_view child) {
  return Find(streams, child);
}
const Storage* Storage::Find_Storage(std::string_view child) const {
  return Find(storages, child);
}
Storage* Storage::Find_Storage(std::string_view child) {
  return Find(storages, child);
}

bool Is_Compound(std::string_view bytes) {
  return bytes.starts_with(kSignature);
}

Compound_File Read_Compound(std::string_view bytes) {
  Compound_File file;
  Start_Library();
  if (!Is_Compound(bytes) || Directory_Depth(bytes, kMost_Depth) > kMost_Depth) {
    file.error = kDamaged;
    return file;
  }
  const Held<GsfInput> input(gsf_input_memory_new(reinterpret_cast<const guint8*>(bytes.data()),
                                                  static_cast<gsf_off_t>(bytes.size()), FALSE));
  GError* error = nullptr;
  const Held<GsfInfile> root(gsf_infile_msole_new(input.get(), &error));
  if (error != nullptr) g_error_free(error);
  std::size_t budget = bytes.size();
  if (!root || !Read_Storage(root.get(), file.root, budget, 0)) {
    file.root = {};
    file.error = kDamaged;
  }
  return file;
}

std::string Write_Compound(const Storage& root) {
  Start_Library();
  const Held<GsfOutput> sink(gsf_output_memory_new());
  const Held<GsfOutfile> file(gsf_outfile_msole_new(sink.get()));
  if (!Write_Storage(root, file.get()) || !gsf_output_close(GSF_OUTPUT(file.get()))) return {};
  const auto* bytes = gsf_output_memory_get_bytes(GSF_OUTPUT_MEMORY(sink.get()));
  const auto size = static_cast<std::size_t>(gsf_output_size(sink.get()));
  return {reinterpret_cast<const char*>(bytes), size};
}

}  // namespace oru::container
