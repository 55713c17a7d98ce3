// SPDX-License-Identifier: MIT
// The bundled sample project against its true answers, which were worked out by hand.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "analyser/references.h"
#include "app/file_project.h"
#include "app/session.h"
#include "sample/truth.h"
#include "support/fakes.h"
#include "views/references.h"

namespace oru::app {
namespace {

class Sample : public testing::Test {
 protected:
  Sample()
      : session(ui, clock,
                {.Data_Folder = folder / "data",
                 .Program_Folder = ORU_SOURCE_DIR "/share",
                 .Use_Analysis_File = false}) {
    EXPECT_EQ(project.Open(ORU_SOURCE_DIR "/samples/juchu", 932), "");
    EXPECT_TRUE(session.AddinInstance_OnConnection(project.Editor, nullptr));
    EXPECT_TRUE(session.Analyse());
  }
  std::string Field(std::string_view module, std::string_view member, std::size_t index) {
    const auto* entry = session.Tbl.Mdl_Tbl.Get(module);
    const std::string* row = entry == nullptr ? nullptr : (*entry)->Mem.Get(member);
    return row == nullptr ? "(none)" : std::string(service::Row_Field(*row, index));
  }

  test::Fake_User_Interface ui;
  test::Fixed_Clock clock;
  test::Temp_Folder folder;
  File_Project project;
  Session session;
};

// What stands in only one of two sets, for a readable failure.
std::string Difference(const std::set<std::string>& got, const std::set<std::string>& want) {
  std::string text;
  for (const std::string& one : got)
    if (want.count(one) == 0) text += "too much: " + one + "\n";
  for (const std::string& one : want)
    if (got.count(one) == 0) text += "missing:  " + one + "\n";
  return text;
}

TEST_F(Sample, Modules) {
  EXPECT_TRUE(project.Problems.empty());
  ASSERT_EQ(session.Tbl.Mdl_Tbl.Count(), sample::modules.size());
  for (std::size_t i = 0; i < sample::modules.size(); ++i) {
    const sample::Module& want = sample::modules[i];
    EXPECT_EQ(session.Tbl.Mdl_Tbl.At(i + 1)->key, want.name);
    host::VBComponent* component =
        session.VBInst->ActiveVBProject()->VBComponents().Item(want.name);
    ASSERT_NE(component, nullptr) << want.name;
    EXPECT_EQ(component->Type(), want.type) << want.name;
    EXPECT_EQ(component->CodeModule()->CountOfLines(), want.lines) << want.name;
  }
}

TEST_F(Sample, WhoCallsWhom) {
  std::set<std::string> want;
  for (const sample::Call& call : sample::calls)
    want.insert(std::string(call.caller) + " > " + std::string(call.target) + " " +
                std::string(call.lines) + call.flag);
  std::set<std::string> got;
  for (analyser::Ref_Cursor cursor; analyser::Set_Ref_Fld(session.Tbl.Ref_All, {}, cursor);) {
    const analyser::Ref_Record& record = cursor.Record;
    got.insert(std::string(record.Caller) + " > " +
               analyser::Full_Name(record.Tgt_Mdl, record.Tgt_Mem) + " " +
               std::string(record.Ref_Lns) + record.Ref_Flg);
  }
  EXPECT_EQ(Difference(got, want), "");
}

TEST_F(Sample, WhatNothingRefersTo) {
  std::set<std::string> want(sample::unreferenced.begin(), sample::unreferenced.end());
  std::set<std::string> got;
  for (const views::Unused_Row& row : views::Get_Unused(session.Tbl))
    if (!row.Kind.starts_with("Api")) got.insert(analyser::Full_Name(row.Module, row.Member));
  EXPECT_EQ(Difference(got, want), "");
}

TEST_F(Sample, EventsAndMetrics) {
  std::set<std::string> want;
  for (const sample::Event& event : sample::events)
    want.insert(analyser::Full_Name(event.module, event.member));
  std::set<std::string> got;
  for (const auto& item : session.Tbl.Mdl_Tbl)
    for (const auto& member : item.value->Mem)
      if (service::Row_Field(member.value, 2) == "0")
        got.insert(analyser::Full_Name(item.key, member.key));
  EXPECT_EQ(Difference(got, want), "");

  for (const sample::Metric& metric : sample::metrics) {
    const int numbers[]{metric.code, metric.comment, metric.blank, metric.conditions, metric.nest};
    for (std::size_t i = 0; i < 5; ++i)
      EXPECT_EQ(Field(metric.module, metric.member, 7 + i), std::to_string(numbers[i]))
          << metric.module << "." << metric.member << " field " << 7 + i;
  }
}

}  // namespace
}  // namespace oru::app
