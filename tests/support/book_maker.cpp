// SPDX-License-Identifier: MIT
#include "support/book_maker.h"

#include "support/archive_maker.h"

namespace oru::test {

namespace {

std::string Record(unsigned id, std::string_view payload) {
  return Bytes().U16(id).U32(static_cast<std::uint32_t>(payload.size())).Put(payload).Text();
}

}  // namespace

std::string Pack_Literally(std::string_view bytes) {
  Bytes out;
  out.U8(1);
  // 3584 literal bytes and their flags fit into a chunk; only full chunks may be followed by more.
  for (std::size_t at = 0; at < bytes.size(); at += 4096) {
    const std::string_view chunk = bytes.substr(at, 4096);
    if (chunk.size() == 4096) {
      out.U16(0x3FFF).Put(chunk);
      continue;
    }
    Bytes tokens;
    for (std::size_t i = 0; i < chunk.size(); i += 8) tokens.U8(0).Put(chunk.substr(i, 8));
    out.U16(0xB000 | (tokens.Size() - 1)).Put(tokens.Text());
  }
  return out.Text();
}

std::string Source_Of(const Made_Module& module) {
  return "Attribute VB_Name = \"" + module.name + "\"\r\n" + module.source;
}

std::string Made_Project::Dir(std::uint32_t offset_error) const {
  Bytes dir;
  dir.Put(Record(0x01, Bytes().U32(1).Text()));
  dir.Put(Record(0x03, Bytes().U16(code_page).Text()));
  dir.Put(Record(0x04, name));
  dir.Put(Record(0x05, "orders")).Put(Record(0x40, Bytes().Wide("orders").Text()));
  dir.U16(0x09).U32(4).U32(1).U16(2);  // the version takes six bytes
  // A reference whose total size is wrong, but not the length within.
  const std::string library = "*\\G{00020430}#2.0#0#C:\\stdole2.tlb#OLE Automation";
  dir.Put(Record(0x16, "stdole")).Put(Record(0x3E, Bytes().Wide("stdole").Text()));
  dir.U16(0x0D).U32(9999).U32(static_cast<std::uint32_t>(library.size())).Put(library).Zeros(6);
  dir.Put(Record(0x0F, Bytes().U16(static_cast<unsigned>(modules.size())).Text()));
  for (const Made_Module& module : modules) {
    const std::string wide = Bytes().Wide(module.name).Text();
    const auto offset = static_cast<std::uint32_t>(module.cache.size()) + offset_error;
    dir.Put(Record(0x19, module.name)).Put(Record(0x47, wide));
    dir.Put(Record(0x1A, module.name)).Put(Record(0x32, wide));
    dir.Put(Record(0x31, Bytes().U32(offset).Text()));
    dir.Put(Record(module.key == "Module" ? 0x21 : 0x22, "")).Put(Record(0x2B, ""));
  }
  return dir.Put(Record(0x10, "")).Text();
}

container::Storage Made_Project::Storage() const {
  container::Storage root, vba{.name = "VBA", .streams = {}, .storages = {}};
  std::string project = "ID=\"{0}\"\r\n";
  for (const Made_Module& module : modules) {
    project +=
        module.key + "=" + module.name + (module.key == "Document" ? "/&H00000000" : "") + "\r\n";
    vba.streams.push_back({module.name, module.cache + Pack_Literally(Source_Of(module))});
  }
  root.streams.push_back({"PROJECT", project + project_lines});
  vba.streams.push_back({"dir", Pack_Literally(Dir())});
  vba.streams.push_back({"_VBA_PROJECT", "compiled by some version"});
  vba.streams.push_back({"__SRP_0", "compiled"});
  vba.class_id[3] = 5;
  root.storages.push_back(std::move(vba));
  return root;
}

std::string Make_Xlsm(const container::Storage& project) {
  return Make_Archive({
      {"_rels/.rels",
       "<Relationships><Relationship Id=\"rId1\" Type=\"t/officeDocument\" "
       "Target=\"xl/workbook.xml\"/></Relationships>"},
      {"xl/workbook.xml",
       "<workbook xmlns:r=\"r\"><sheets><sheet name=\"受注\" r:id=\"rId1\"/>"
       "</sheets></workbook>"},
      {"xl/_rels/workbook.xml.rels",
       "<Relationships><Relationship Id=\"rId1\" Type=\"t/worksheet\" Target=\"sheet1.xml\"/>"
       "<Relationship Id=\"rId2\" Type=\"t/vbaProject\" Target=\"/xl/vbaProject.bin\"/>"
       "</Relationships>"},
      {"xl/sheet1.xml", "<worksheet><sheetPr codeName=\"Sheet1\"/><sheetData/></worksheet>"},
      {"xl/vbaProject.bin", container::Write_Compound(project)},
      {"xl/media/picture", "kept as it is"},
  });
}

std::string Make_Xlsm(const Made_Project& project) {
  return Make_Xlsm(project.Storage());
}

}  // namespace oru::test
