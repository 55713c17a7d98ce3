// SPDX-License-Identifier: MIT
#include "analyser/table_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "analyser/references.h"
#include "service/text.h"

namespace oru::analyser {

namespace {

// "Ver7" is followed by the lists in the order of their tags, then by the blocks, then by the marks.
constexpr std::string_view kList_Tags = "FGMPSETHV";
constexpr std::string_view kOnce = "FG";
constexpr int kRank_Version = 1, kRank_First_List = 2, kRank_Blocks = 20, kRank_Marks = 30;

// The lines of a block in their order, "#Mdl" first, "#End" last.
struct Block_Line {
  std::string_view tag;
  bool once, must;
  std::size_t fields;  // of its row; 0: looked at by itself
};
constexpr std::array kBlock{Block_Line{"#Mdl", true, true, Mdl_Row::Fields().size()},
                            Block_Line{"#Mem", false, true, 0},
                            Block_Line{"#MLL", true, true, 0},
                            Block_Line{"#MHL", true, true, 0},
                            Block_Line{"#InV", false, false, InV_Row::Fields().size()},
                            Block_Line{"#Def", false, false, Def_Row::Fields().size()},
                            Block_Line{"#Ctl", false, false, 0},
                            Block_Line{"#CCd", true, true, 0},
                            Block_Line{"#Ref", true, false, 0},
                            Block_Line{"#End", true, true, 0}};
enum Block_Rank { kMdl, kMem, kMLL, kMHL, kInV, kDef, kCtl, kCCd, kRef, kEnd };

constexpr std::size_t kUpd_Digits = 17;  // the moment and a five-digit line
constexpr std::size_t kHis_Digits = 5;

bool All_Digits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::optional<int> To_Number(std::string_view digits) {
  int number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return number;
}

std::size_t Count_Fields(std::string_view row) {
  return static_cast<std::size_t>(std::count(row.begin(), row.end(), '\t')) + 1;
}

template <class Rows>
void Put_Rows(const Rows& rows, std::string_view tag, std::size_t most, const Line_Sink& put) {
  for (std::size_t i = 0; i < rows.size() && i < most; ++i) put(tag, rows[i]);
}

}  // namespace

void Put_Lists(const Kept_Lists& lists, const Line_Sink& put) {
  put("F", lists.Exp_Val);
  put("G", lists.Dif_Val);
  for (const auto& item : lists.Mdl_Upd) put("M", item.value);
  for (const auto& item : lists.Mem_Upd) put("P", item.value);
  for (const auto& item : lists.His)
    put("S", fmt::format("{:05}{}", item.value.Lin, Full_Name(item.value.Mdl, item.value.Mem)));
  Put_Rows(lists.Sav, "E", lists.Sav.size(), put);
  for (std::size_t i = 0; i < lists.Src.size(); ++i)
    Put_Rows(lists.Src[i], "T" + fmt::to_string(i), kSrc_Rows, put);
  Put_Rows(lists.Cnd, "H", kCnd_Rows, put);
  Put_Rows(lists.Ctl, "V", kCtl_Rows, put);
}

void Put_Module_Block(const Tables& tables, const Mdl_Entry& entry, const Line_Sink& put) {
  put("#Mdl", entry.Mdl);
  for (const auto& item : entry.Mem) put("#Mem", item.value);
  put("#MLL", fmt::to_string(tables.MLL));
  put("#MHL", fmt::to_string(tables.MHL));
  for (const std::string& row : entry.InV) put("#InV", row);
  for (const std::string& row : entry.Def) put("#Def", row);
  // A row that only marks an event source has an empty value and is its key alone.
  for (const auto& item : entry.Ctl) put("#Ctl", item.value.empty() ? item.key : item.value);
  put("#CCd", entry.CCd);
  if (const std::string* references = tables.Ref_Tbl.Get(service::Row_Field(entry.Mdl, 0)))
    put("#Ref", *references);
  put("#End", {});
}

void Put_Ref_Marks(const Tables& tables, const Line_Sink& put) {
  for (std::size_t i = 0; i < tables.RIf_Dic.Count(); ++i) put("#RIf", tables.RIf_Dic.Text(i));
}

bool Table_Reader::Fail(std::string_view what) {
  if (why_.empty()) why_ = fmt::format("line {}: {}", line_, what);
  return false;
}

// Lines of a lower rank than the one before are out of order; so is a second one of a kind that
// comes once.
bool Table_Reader::In_Order(int rank, bool once) {
  if (rank < rank_ || (once && rank == rank_)) return Fail("out of order");
  rank_ = rank;
  return true;
}

bool Table_Reader::Take(std::string_view line) {
  if (!why_.empty()) return false;
  ++line_;
  if (line_ == 1) {
    rank_ = kRank_Version;
    return line == kFile_Version || Fail("another version");
  }
  if (line.empty()) return Fail("empty line");
  if (line.front() != '#') return entry_ == nullptr ? Take_List(line) : Fail("list in a module");
  if (line.size() < 4) return Fail("unknown tag");
  const std::string_view tag = line.substr(0, 4), payload = line.substr(4);
  if (entry_ != nullptr) return Take_Block(tag, payload);
  if (tag == kBlock[kMdl].tag) {
    // Both single lists have to be there before the first module.
    if (rank_ < kRank_First_List + 1 || !In_Order(kRank_Blocks, false)) return Fail("out of order");
    rank_ = kMdl - 1;
    entry_ = std::make_unique<Mdl_Entry>();
    has_references_ = false;
    return Take_Block(tag, payload);
  }
  if (tag != "#RIf") return Fail("unknown tag");
  if (!In_Order(kRank_Marks, false)) return false;
  marks_.emplace_back(payload);
  return true;
}

bool Table_Reader::Take_List(std::string_view line) {
  const std::size_t at = kList_Tags.find(line.front());
  if (at == std::string_view::npos) return Fail("unknown tag");
  const bool once = kOnce.find(line.front()) != std::string_view::npos;
  const int rank = kRank_First_List + static_cast<int>(at);
  // Nobody else's line may stand where a single one is missing.
  if (rank > rank_ + 1 && rank_ < kRank_First_List + 1) return Fail("a list is missing");
  if (!In_Order(rank, once)) return false;
  const std::string_view row = line.substr(1);
  const auto add_update = [&](service::Collection<std::string>& updates) {
    return (row.size() > kUpd_Digits && All_Digits(row.substr(0, kUpd_Digits)) &&
            updates.Add(row.substr(kUpd_Digits), std::string(row))) ||
           Fail("update string");
  };
  switch (line.front()) {
    case 'F':
      Lists.Exp_Val = row;
      return true;
    case 'G':
      Lists.Dif_Val = row;
      return true;
    case 'M':
      return add_update(Lists.Mdl_Upd);
    case 'P':
      return add_update(Lists.Mem_Upd);
    case 'S': {
      const std::size_t dot = row.find('.', std::min(row.size(), kHis_Digits));
      const auto number = To_Number(row.substr(0, kHis_Digits));
      if (!number || *number < 0 || dot == std::string_view::npos) return Fail("history");
      const std::string_view name = row.substr(kHis_Digits);
      His_Entry entry{{},
                      *number,
                      std::string(row.substr(kHis_Digits, dot - kHis_Digits)),
                      std::string(row.substr(dot + 1))};
      return Lists.His.Add(name, std::move(entry)) || Fail("history");
    }
    case 'E':
      Lists.Sav.emplace_back(row);
      return true;
    case 'T': {
      const auto list = static_cast<std::size_t>(row.empty() ? -1 : row.front() - '0');
      if (list >= Lists.Src.size()) return Fail("search history");
      Lists.Src[list].emplace_back(row.substr(1));
      return true;
    }
    case 'H':
      Lists.Cnd.emplace_back(row);
      return true;
    default:
      Lists.Ctl.emplace_back(row);
      return true;
  }
}

bool Table_Reader::Take_Member(std::string_view row) {
  const std::size_t fields = Count_Fields(row);
  const bool is_api = service::Row_Field(row, 2) == std::string_view(&kMem_Api, 1);
  if (fields != Mem_Row::Fields().size() && !(is_api && fields == kDeclare_Row_Fields))
    return Fail("number of fields");
  return entry_->Mem.Add(row.substr(0, row.find('\t')), std::string(row)) ||
         Fail("a member comes twice");
}

bool Table_Reader::Take_Block(std::string_view tag, std::string_view payload) {
  // The next line is mostly of the same kind as the one before, or the one behind it.
  auto rank = static_cast<std::size_t>(std::max(rank_, 0));
  for (; rank < kBlock.size() && kBlock[rank].tag != tag; ++rank)
    if (kBlock[rank].must && static_cast<int>(rank) != rank_) return Fail("a line is missing");
  if (rank == kBlock.size()) return Fail("unknown tag, or out of order");
  const Block_Line& kind = kBlock[rank];
  if (!In_Order(static_cast<int>(rank), kind.once)) return false;
  if (kind.fields != 0 && Count_Fields(payload) != kind.fields) return Fail("number of fields");
  switch (rank) {
    case kMdl:
      module_ = payload.substr(0, payload.find('\t'));
      entry_->Mdl = payload;
      return !module_.empty() || Fail("a module without name");
    case kMem:
      return Take_Member(payload);
    case kMLL:
    case kMHL: {
      const auto number = To_Number(payload);
      if (!number || *number < 0) return Fail("not a number");
      (rank == kMLL ? Tbl.MLL : Tbl.MHL) = *number;
      return true;
    }
    case kInV:
      entry_->InV.emplace_back(payload);
      return true;
    case kDef:
      entry_->Def.emplace_back(payload);
      return true;
    case kCtl: {
      const std::size_t fields = Count_Fields(payload);
      if (fields != 1 && fields != Ctl_Row::Fields().size()) return Fail("number of fields");
      const std::string_view key = payload.substr(0, payload.find('\t'));
      return entry_->Ctl.Add(key, fields == 1 ? std::string() : std::string(payload)) ||
             Fail("a control comes twice");
    }
    case kCCd:
      entry_->CCd = payload;
      return true;
    case kRef:
      has_references_ = true;
      references_ = payload;
      return true;
    default:
      return payload.empty() ? End_Block() : Fail("text behind the end");
  }
}

bool Table_Reader::End_Block() {
  // Without these a module was never read, or not to its end.
  const auto* first = entry_->Mem.At(1);
  if (first == nullptr || first->key != kDeclare) return Fail("a module without members");
  if (has_references_) Tbl.Ref_Tbl.Add(module_, std::move(references_));
  rank_ = kRank_Blocks;
  return Tbl.Mdl_Tbl.Add(module_, std::move(entry_)) || Fail("a module comes twice");
}

bool Table_Reader::Finish() {
  if (!why_.empty()) return false;
  if (entry_ != nullptr || rank_ < kRank_First_List + 1) return Fail("ends too early");
  Join_Ref_Texts(Tbl);
  if (Tbl.RIf_Dic.Count() != marks_.size()) return Fail("reference marks");
  for (const std::string& mark : marks_) {
    if (mark.size() < 3) return Fail("reference mark");
    const std::string_view key = std::string_view(mark).substr(0, mark.size() - 2);
    const unsigned flags = Tbl.RIf_Dic.Get(key);
    if (flags == 0 || Ref_Marks::Flag_Text(flags) != std::string_view(mark).substr(key.size()))
      return Fail("a reference mark that no reference gives");
  }
  return true;
}

}  // namespace oru::analyser
