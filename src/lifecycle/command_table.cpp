// SPDX-License-Identifier: MIT
#include "lifecycle/command_table.h"

#include <algorithm>

namespace oru::lifecycle {
namespace {

using enum Action;

constexpr int kComments = 1, kAs_Clauses = 2;    // modes of Alg_CmA_Pos
constexpr int kSet_Labels = 1, kCut_Labels = 2;  // modes of Set_LNo_Key

// Handlers are named for the group of their buttons: CE code editing, CM moving, CT tools, CW
// windows, HP help; MN_n is the n-th entry of the main menu.
constexpr Command kCommands[] = {
    {"CTE_CT_1_Click", "プロジェクト構成情報", Open_View, "Frm_List"},
    {"CTE_CT_2_Click", "プロシージャ参照関係", Open_View, "Frm_Chart"},
    {"CTE_CT_3_Click", "検索", Open_View, "Frm_Search"},
    {"CTE_CT_4_Click", "コード制御構造", Open_View, "Frm_Control", 0, Guard::Loading},
    {"CTE_CT_5_Click", "定型文挿入", Open_View, "Frm_Insert"},
    {"CTE_CT_6_Click", "無効コード管理", Open_View, "Frm_Export"},
    {"CTE_CT_7_Click", "コントロール情報", Open_Control, "Frm_Inform"},
    {"CTE_CT_8_Click", "ドキュメント生成", Open_View, "Frm_Report"},
    {"CTE_CT_9_Click", "変数・定数定義情報", Open_View, "Frm_Value"},
    {"CTE_CT_V_Click", "コード差分", Open_View, "Frm_Diff"},
    {.Handler = "CEd_MN_2_Click",
     .Ttl = "参照文",
     .Act = Open_View,
     .Nam = "Frm_Search",
     .Mod = "参照文"},
    {.Handler = "CEd_MN_3_Click",
     .Ttl = "コード制御構造",
     .Act = Open_View,
     .Nam = "Frm_Control",
     .Sel_Wrd = true},
    {.Handler = "CEd_SN_1_Click",
     .Ttl = "スニペットアシスタント",
     .Act = Open_View,
     .Nam = "Frm_Snippet",
     .Mod = "S"},
    {"CEd_SQ_1_Click", "ＳＱＬアシスタント", Open_View, "Frm_SQLCp", 0, Guard::None, true},

    {"CTE_HS_1_Click", "変更履歴登録", Add_History},
    {"CTS_Ev_1_Click", "変更履歴登録", Set_History},
    {"CTE_CM_2_Click", "プロシージャ変更履歴", Open_View, "Frm_Move"},
    {"CTE_CM_3_Click", "プロシージャ定義行に移動", Move, {}, 1, Guard::Editing},
    {"CTE_CM_4_Click", "最終変更行に移動", Move, {}, 2, Guard::Editing},
    {"CTE_CM_5_Click", "プロシージャ最終行に移動", Move, {}, 3, Guard::Editing},
    {"CTE_CM_6_Click", "行ジャンプ", Open_View, "Frm_Jump"},

    // The formatter and the labels look for themselves whether code is being edited.
    {"CEv_CE_1_Click", "As句の整列", Transform, "Alg_CmA_Pos", kAs_Clauses, Guard::Editing},
    {"CEv_CE_2_Click", "行内コメントの整列", Transform, "Alg_CmA_Pos", kComments, Guard::Editing},
    {"CEv_CE_3_Click", "代入文の反転", Transform, "Rev_Let_Sta", 0, Guard::Editing},
    {"CTE_CE_5_Click", "トレース用命令文の設定・解除", Open_View, "Frm_Trace", 0, Guard::None,
     true},
    {"CTE_CE_6_Click", "エラー処理用行ラベルの解除", Transform, "Set_LNo_Key", kCut_Labels},
    {"CEv_CE_7_Click", "コード整形", Transform, "Rev_Indent"},
    {"CTE_CE_8_Click", "エラー処理用行ラベルの設定", Transform, "Set_LNo_Key", kSet_Labels},

    {"CEv_CW_1_Click", "IDE内ウィンドウの表示切替", Windows},
    {"CEv_CW_2_Click", "コード・オブジェクトの表示切替", Other_View},
    {"CTE_CW_4_Click", "コードウィンドウを閉じる", Close_Windows},
    {"CEv_CW_5_Click", "コードウィンドウ分割・解除", Split},

    {"CEv_MN_T_Click", "その他の機能", Pop_Menu},
    {"CEv_OP_1_Click", "オプション設定", Open_Option, "Frm_Option"},
    {"CEv_HP_1_Click", "ヘルプの表示", Help, {}, static_cast<int>(Help_Topic::Contents)},
    {"CEv_HP_2_Click", "ヘルプの表示", Help, {}, static_cast<int>(Help_Topic::Contents)},
    {"CEv_EL_1_Click", "障害レポート表示", Open_Report},
    {"CEv_CL_1_Click", "更新情報の初期化", Clear_History},
    {"CEv_VR_1_Click", "バージョン情報", Version},
    {"CYH_An_T_Click", "プロジェクト情報取得", Analyse_All},

    {"CTS_CT_A_Click", "すべて最小化する", Frame, {}, 1},
    {"CTS_CT_B_Click", "すべて元のサイズに戻す", Frame, {}, 2},
    {"CTS_CT_C_Click", "すべて閉じる", Frame, {}, 3},
    {"CTS_HP_1_Click", "このウィンドウのトピック", Help, {}, static_cast<int>(Help_Topic::Window)},
    {"CTS_HP_2_Click", "目次", Help, {}, static_cast<int>(Help_Topic::Contents)},
    {"CTS_HP_3_Click", "キーワード", Help, {}, static_cast<int>(Help_Topic::Keywords)},
};

// By place, without a gap: `Menu_Entries(Place)` gives a part of it.
constexpr Menu_Entry kEntries[] = {
    {Place::Popup, "検索...(&1)", "CTE_CT_3_Click"},
    {Place::Popup, "参照文...(&2)", "CEd_MN_2_Click"},
    {Place::Popup, "コード制御構造...(&3)", "CTE_CT_4_Click"},
    {Place::Popup, "参照関係...(&4)", "CTE_CT_2_Click"},
    {Place::Popup, "変更履歴...(&5)", "CTE_CM_2_Click"},
    {Place::Popup, "変更履歴登録...(&6)", "CTE_HS_1_Click"},
    {Place::Popup, "その他の機能...(&7)", "CEv_MN_T_Click"},
    {Place::Popup, "スニペットアシスタント ∞ ...", "CEd_SN_1_Click"},
    {Place::Popup, "ＳＱＬアシスタント ∞ ...", "CEd_SQ_1_Click"},

    {Place::Functions, "プロジェクト構成情報...(&1)", "CTE_CT_1_Click"},
    {Place::Functions, "コントロール情報...(&2)", "CTE_CT_7_Click"},
    {Place::Functions, "変数・定数定義情報...(&3)", "CTE_CT_9_Click"},
    {Place::Functions, "コード差分...(&4)", "CTE_CT_V_Click"},
    {Place::Functions, "ドキュメント生成...(&5)", "CTE_CT_8_Click"},
    {Place::Functions, "コード整形(&N)", "CEv_CE_7_Click"},
    {Place::Functions, "As句の整列(&A)", "CEv_CE_1_Click"},
    {Place::Functions, "行内コメントの整列(&M)", "CEv_CE_2_Click"},
    {Place::Functions, "代入文の反転 (&R)", "CEv_CE_3_Click"},
    {Place::Functions, "コードウィンドウ分割・解除(&Y)", "CEv_CW_5_Click"},
    {Place::Functions, "IDE内ウィンドウの表示切替(&P)", "CEv_CW_1_Click"},
    {Place::Functions, "コード・オブジェクトの表示切替(&B)", "CEv_CW_2_Click"},
    {Place::Functions, "オプション設定...(&O)", "CEv_OP_1_Click"},
    {Place::Functions, "ヘルプの表示...(&H)", "CEv_HP_1_Click"},

    {Place::Support, "オプション設定...(&O)", "CEv_OP_1_Click"},
    {Place::Support, "更新情報の初期化(&D)", "CEv_CL_1_Click"},
    {Place::Support, "障害レポート表示(&E)", "CEv_EL_1_Click"},
    {Place::Support, "ヘルプの表示...(&H)", "CEv_HP_2_Click"},
    {Place::Support, "バージョン情報...(&A)", "CEv_VR_1_Click"},

    {Place::Context, "検索...(&1)", "CTE_CT_3_Click"},
    {Place::Context, "参照文...(&2)", "CEd_MN_2_Click"},
    {Place::Context, "コード制御構造...(&3)", "CEd_MN_3_Click"},
    {Place::Context, "参照関係...(&4)", "CTE_CT_2_Click"},
    {Place::Context, "変更履歴...(&5)", "CTE_CM_2_Click"},
    {Place::Context, "変更履歴登録...(&6)", "CTE_HS_1_Click"},
    {Place::Context, "その他の機能...(&7)", "CEv_MN_T_Click"},
    {Place::Context, "スニペットアシスタント ∞ ...", "CEd_SN_1_Click"},
    {Place::Context, "ＳＱＬアシスタント ∞ ...", "CEd_SQ_1_Click"},

    {Place::Tool_Bar, "変更履歴登録", "CTE_HS_1_Click"},
    {Place::Tool_Bar, "プロシージャ変更履歴...", "CTE_CM_2_Click"},
    {Place::Tool_Bar, "プロジェクト構成情報...", "CTE_CT_1_Click"},
    {Place::Tool_Bar, "プロシージャ参照関係...", "CTE_CT_2_Click"},
    {Place::Tool_Bar, "検索...", "CTE_CT_3_Click"},
    {Place::Tool_Bar, "コード制御構造...", "CTE_CT_4_Click"},
    {Place::Tool_Bar, "変数・定数定義情報...", "CTE_CT_9_Click"},
    {Place::Tool_Bar, "コード差分...", "CTE_CT_V_Click"},
    {Place::Tool_Bar, "コントロール情報...", "CTE_CT_7_Click"},
    {Place::Tool_Bar, "ドキュメント生成...", "CTE_CT_8_Click"},
    {Place::Tool_Bar, "定型文挿入...", "CTE_CT_5_Click"},
    {Place::Tool_Bar, "無効コード管理...", "CTE_CT_6_Click"},
    {Place::Tool_Bar, "プロシージャ定義行に移動", "CTE_CM_3_Click"},
    {Place::Tool_Bar, "最終変更行に移動", "CTE_CM_4_Click"},
    {Place::Tool_Bar, "プロシージャ最終行に移動", "CTE_CM_5_Click"},
    {Place::Tool_Bar, "行ジャンプ...", "CTE_CM_6_Click"},
    {Place::Tool_Bar, "コード整形", "CEv_CE_7_Click"},
    {Place::Tool_Bar, "As句の整列", "CEv_CE_1_Click"},
    {Place::Tool_Bar, "行内コメントの整列", "CEv_CE_2_Click"},
    {Place::Tool_Bar, "代入文の反転", "CEv_CE_3_Click"},
    {Place::Tool_Bar, "IDE内ウィンドウの表示切替", "CEv_CW_1_Click"},
    {Place::Tool_Bar, "コードウィンドウ分割・解除", "CEv_CW_5_Click"},
    {Place::Tool_Bar, "コード・オブジェクトの表示切替", "CEv_CW_2_Click"},
    {Place::Tool_Bar, "トレース用命令文の設定・解除...", "CTE_CE_5_Click"},
    {Place::Tool_Bar, "エラー処理用行ラベルの解除...", "CTE_CE_6_Click"},
    {Place::Tool_Bar, "エラー処理用行ラベルの設定...", "CTE_CE_8_Click"},
    {Place::Tool_Bar, "プロジェクト情報取得", "CYH_An_T_Click"},
    {Place::Tool_Bar, "オプション設定", "CEv_OP_1_Click"},
    {Place::Tool_Bar, "ヘルプの表示", "CEv_HP_2_Click"},

    {Place::Frame, "プロシージャ変更履歴...(&0)", "CTE_CM_2_Click"},
    {Place::Frame, "プロジェクト構成情報...(&1)", "CTE_CT_1_Click"},
    {Place::Frame, "プロシージャ参照関係...(&2)", "CTE_CT_2_Click"},
    {Place::Frame, "検索...(&3)", "CTE_CT_3_Click"},
    {Place::Frame, "コード制御構造...(&4)", "CTE_CT_4_Click"},
    {Place::Frame, "変数・定数定義情報...(&5)", "CTE_CT_9_Click"},
    {Place::Frame, "コード差分...(&6)", "CTE_CT_V_Click"},
    {Place::Frame, "コントロール情報...(&7)", "CTE_CT_7_Click"},
    {Place::Frame, "ドキュメント生成...(&8)", "CTE_CT_8_Click"},
    {Place::Frame, "定型文挿入...(&9)", "CTE_CT_5_Click"},
    {Place::Frame, "無効コード管理...(&A)", "CTE_CT_6_Click"},
    {Place::Frame, "すべて最小化する(&N)", "CTS_CT_A_Click"},
    {Place::Frame, "すべて元のサイズに戻す(&R)", "CTS_CT_B_Click"},
    {Place::Frame, "すべて閉じる(&C)", "CTS_CT_C_Click"},
    {Place::Frame, "このウィンドウのトピック...(&T)", "CTS_HP_1_Click"},
    {Place::Frame, "目次...(&C)", "CTS_HP_2_Click"},
    {Place::Frame, "キーワード...(&I)", "CTS_HP_3_Click"},
};

constexpr bool Has_Its_Command(const Menu_Entry& entry) {
  return std::ranges::find(kCommands, entry.Handler, &Command::Handler) != std::end(kCommands);
}
static_assert(std::ranges::all_of(kEntries, Has_Its_Command));
static_assert(std::ranges::is_sorted(kEntries, {}, &Menu_Entry::Where));

}  // namespace

std::span<const Command> Commands_Table() {
  return kCommands;
}

const Command* Find_Command(std::string_view handler) {
  const auto* const found = std::ranges::find(kCommands, handler, &Command::Handler);
  return found == std::end(kCommands) ? nullptr : found;
}

std::span<const Menu_Entry> Menu_Entries() {
  return kEntries;
}

std::span<const Menu_Entry> Menu_Entries(Place where) {
  const auto* const first = std::ranges::lower_bound(kEntries, where, {}, &Menu_Entry::Where);
  const auto* const last = std::ranges::upper_bound(kEntries, where, {}, &Menu_Entry::Where);
  return {first, last};
}

}  // namespace oru::lifecycle
