// SPDX-License-Identifier: MIT
// Files that exist only in memory, on any drive or share, with every access recorded and every
// failure to order.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "service/file_store.h"

namespace oru::test {

class Fake_Store final : public service::File_Store {
 public:
  struct File {
    std::string bytes;
    service::Date_Time date{2024, 1, 1, 0, 0, 0};
    int version = 0;
  };
  std::map<std::string, File> files;
  std::set<std::string> folders;
  std::vector<std::string> calls;  ///< "Copy A -> B", "Delete A", "Write A", "Read A"
  std::set<std::string> refused;   ///< paths that cannot be written
  service::Date_Time now{2024, 3, 5, 6, 7, 8};

  void Put(const std::string& path, std::string bytes, service::Date_Time date) {
    files[path] = {std::move(bytes), date, ++versions_};
  }
  void Put(const std::string& path, std::string bytes) { Put(path, std::move(bytes), now); }
  [[nodiscard]] bool Has(const std::string& path) const { return files.contains(path); }

  [[nodiscard]] std::optional<Seen> Look(const std::string& path) override {
    const auto at = files.find(path);
    if (at == files.end()) return std::nullopt;
    return Seen{at->second.date, at->second.bytes.size(), std::to_string(at->second.version)};
  }
  /// In blocks of seven bytes, so that lines are cut everywhere.
  [[nodiscard]] service::File_Result Read(
      const std::string& path, const std::function<bool(std::string_view)>& take) override {
    calls.push_back("Read " + path);
    const auto at = files.find(path);
    if (at == files.end()) return {"not there"};
    std::string_view rest = at->second.bytes;
    for (; !rest.empty(); rest.remove_prefix(std::min(rest.size(), kBlock)))
      if (!take(rest.substr(0, kBlock))) break;
    return {};
  }
  [[nodiscard]] std::unique_ptr<service::New_File> Create(const std::string& path) override {
    return std::make_unique<Written>(*this, path);
  }
  [[nodiscard]] bool CopyFile(const std::string& from, const std::string& to) override {
    calls.push_back("Copy " + from + " -> " + to);
    if (!files.contains(from) || refused.contains(to)) return false;
    const File copy = files[from];
    Put(to, copy.bytes, copy.date);
    return true;
  }
  bool DeleteFile(const std::string& path) override {
    calls.push_back("Delete " + path);
    return files.erase(path) > 0;
  }
  [[nodiscard]] bool Folder_Exists(const std::string& path) override {
    return folders.contains(path);
  }

 private:
  static constexpr std::size_t kBlock = 7;

  class Written final : public service::New_File {
   public:
    Written(Fake_Store& store, std::string path) : store_(store), path_(std::move(path)) {}
    void Put(std::string_view bytes) override { bytes_ += bytes; }
    [[nodiscard]] Outcome Commit(const std::optional<service::File_Mark>& expected) override {
      store_.calls.push_back("Write " + path_);
      Outcome outcome;
      const auto seen = store_.Look(path_);
      outcome.changed = expected && (seen ? seen->mark : service::File_Mark()) != *expected;
      if (outcome.changed || store_.refused.contains(path_)) {
        outcome.error = "「" + path_ + "」に書けません。";
        return outcome;
      }
      store_.Put(path_, bytes_);
      outcome.mark = store_.Look(path_)->mark;
      return outcome;
    }

   private:
    Fake_Store& store_;
    std::string path_, bytes_;
  };

  int versions_ = 0;
};

}  // namespace oru::test
