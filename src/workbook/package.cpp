// SPDX-License-Identifier: MIT
#include "workbook/package.h"

#include <algorithm>
#include <utility>

#include "service/text.h"
#include "workbook/xml_reader.h"

namespace oru::workbook {
namespace {

std::string_view Folder_Of(std::string_view part) {
  return part.substr(0, part.rfind('/') + 1);  // npos + 1 is 0: none
}

// A target as its relationship gives it, seen from the folder of the part it belongs to.
std::string Resolve(std::string_view folder, std::string_view target) {
  std::string path = target.starts_with('/') ? std::string(target.substr(1))
                                             : std::string(folder) + std::string(target);
  std::vector<std::string_view> steps;
  for (const std::string_view step : service::Split(path, "/")) {
    if (step == "." || step.empty()) continue;
    if (step != "..")
      steps.push_back(step);
    else if (!steps.empty())
      steps.pop_back();
  }
  std::string out;
  for (const std::string_view step : steps) out.append(out.empty() ? "" : "/").append(step);
  return out;
}

}  // namespace

const Relationship* Relationships::Of_Type(std::string_view type) const {
  const auto at = std::find_if(list.begin(), list.end(),
                               [&](const Relationship& entry) { return entry.type == type; });
  return at == list.end() ? nullptr : &*at;
}

const Relationship* Relationships::Of_Id(std::string_view id) const {
  const auto at = places.find(id);
  return at == places.end() ? nullptr : &list[at->second];
}

Relationships Read_Relationships(const container::Archive& archive, std::string_view part) {
  Relationships read;
  const std::string_view folder = Folder_Of(part);
  const std::string name =
      std::string(folder) + "_rels/" + std::string(part.substr(folder.size())) + ".rels";
  if (!archive.Find(name)) return read;
  const auto take = [&](const Xml_Element& element) {
    if (element.name != "Relationship" || element.Get("TargetMode") == "External") return;
    const std::string_view type = element.Get("Type");
    read.places.emplace(element.Get("Id"), read.list.size());
    read.list.push_back({std::string(element.Get("Id")),
                         std::string(type.substr(type.rfind('/') + 1)),
                         Resolve(folder, element.Get("Target"))});
  };
  read.error = Read_Xml(archive, name, {.begin = take});
  return read;
}

std::optional<std::string> Main_Part(const container::Archive& archive) {
  const Relationships relationships = Read_Relationships(archive, "");
  const Relationship* main = relationships.Of_Type("officeDocument");
  return main == nullptr ? std::nullopt : archive.Find(main->target);
}

std::optional<std::string> Vba_Part(const container::Archive& archive) {
  if (const auto main = Main_Part(archive)) {
    const Relationships relationships = Read_Relationships(archive, *main);
    if (const Relationship* vba = relationships.Of_Type("vbaProject"); vba != nullptr)
      if (auto part = archive.Find(vba->target)) return part;
  }
  // Where the way there is damaged, its usual name tells.
  for (const std::string& name : archive.Names()) {
    const std::string_view file = std::string_view(name).substr(Folder_Of(name).size());
    if (service::Equal_No_Case(file, "vbaProject.bin")) return name;
  }
  return std::nullopt;
}

bool Has_Signature(const container::Archive& archive, std::string_view vba_part) {
  const Relationships relationships = Read_Relationships(archive, vba_part);
  return std::any_of(
      relationships.list.begin(), relationships.list.end(), [](const Relationship& entry) {
        return service::Match_No_Case(entry.type, "vbaProjectSignature") != std::string_view::npos;
      });
}

}  // namespace oru::workbook
