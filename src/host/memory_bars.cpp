// SPDX-License-Identifier: MIT
#include "host/memory_bars.h"

#include <algorithm>
#include <utility>

#include "host/model.h"

namespace oru::host {
namespace {

/// The entries that an editor has from the start: captions from the bar down, "" where one ends.
struct Own_Entry {
  std::string_view bar, menu, submenu, caption;
};

constexpr Own_Entry kOwn_Entries[] = {
    {"Code Window", "", "", "切り取り(&T)"},
    {"Code Window", "", "", "貼り付け(&P)"},
    {"Code Window", "", "", "定義(&D)"},
    {"Code Window", "", "", "元の位置へ移動(&N)"},
    {"ﾒﾆｭｰ ﾊﾞｰ", "編集(&E)", "ﾌﾞｯｸﾏｰｸ(&B)", "ﾌﾞｯｸﾏｰｸの設定/解除(&T)"},
    {"ﾒﾆｭｰ ﾊﾞｰ", "編集(&E)", "ﾌﾞｯｸﾏｰｸ(&B)", "すべてのﾌﾞｯｸﾏｰｸの解除(&C)"},
    {"ﾒﾆｭｰ ﾊﾞｰ", "表示(&V)", "", "ｺｰﾄﾞ(&C)"},
    {"ﾒﾆｭｰ ﾊﾞｰ", "表示(&V)", "", "ｵﾌﾞｼﾞｪｸﾄ(&B)"},
    {"ﾒﾆｭｰ ﾊﾞｰ", "表示(&V)", "", "ｲﾐﾃﾞｨｴｲﾄ ｳｨﾝﾄﾞｳ(&I)"},
    {"ﾒﾆｭｰ ﾊﾞｰ", "表示(&V)", "", "ﾌﾟﾛｼﾞｪｸﾄ ｴｸｽﾌﾟﾛｰﾗｰ(&P)"},
    {"ﾒﾆｭｰ ﾊﾞｰ", "表示(&V)", "", "ﾌﾟﾛﾊﾟﾃｨ ｳｨﾝﾄﾞｳ(&W)"},
    {"ﾒﾆｭｰ ﾊﾞｰ", "表示(&V)", "", "ﾌｫｰﾑ ﾚｲｱｳﾄ ｳｨﾝﾄﾞｳ(&F)"},
    {"ﾒﾆｭｰ ﾊﾞｰ", "表示(&V)", "", "ﾂｰﾙﾎﾞｯｸｽ(&X)"},
    {"ﾒﾆｭｰ ﾊﾞｰ", "ﾂｰﾙ(&T)", "", ""},
    {"ﾒﾆｭｰ ﾊﾞｰ", "ｳｨﾝﾄﾞｳ(&W)", "", "分割(&P)"},
    {"ﾒﾆｭｰ ﾊﾞｰ", "ｳｨﾝﾄﾞｳ(&W)", "", "重ねて表示(&C)"},
    {"編集", "", "", "ｺﾒﾝﾄ ﾌﾞﾛｯｸ"},
    {"編集", "", "", "非ｺﾒﾝﾄ ﾌﾞﾛｯｸ"},
};

using Click = std::function<void()>;
/// One slot for each event source; a source that has ended leaves an empty one.
using Click_List = std::vector<std::weak_ptr<Click>>;

class Memory_Events final : public CommandBarEvents {
 public:
  explicit Memory_Events(Click_List& clicks) { clicks.push_back(click_); }
  void Set_Click(std::function<void()> handler) override { *click_ = std::move(handler); }

 private:
  std::shared_ptr<Click> click_ = std::make_shared<Click>();
};

}  // namespace

class Memory_Bar_Control;

class Memory_Bar final : public CommandBar, public CommandBarControls {
 public:
  /// `popup` is the control that the bar belongs to, null for one of the first level.
  Memory_Bar(Memory_Command_Bars& owner, std::string name, bool is_own,
             const Memory_Bar_Control* popup = nullptr)
      : owner_(owner), name_(std::move(name)), is_own_(is_own), popup_(popup) {}

  [[nodiscard]] std::string Name() const override;
  [[nodiscard]] bool Visible() const override { return visible_; }
  void Set_Visible(bool visible) override { visible_ = visible; }
  [[nodiscard]] CommandBarControls& Controls() override { return *this; }
  void Delete() override {
    if (is_own_) throw Host_Error(kErr_Bad_Call, "標準のバーは削除できません。");
    owner_.Remove(*this);
  }

  [[nodiscard]] int Count() const override { return static_cast<int>(controls_.size()); }
  [[nodiscard]] CommandBarControl* Item(int position) override;
  [[nodiscard]] CommandBarControl* Item(std::string_view caption) override;
  [[nodiscard]] CommandBarControl& Add(ControlType type, int before) override;

  [[nodiscard]] Memory_Command_Bars& Owner() const { return owner_; }
  [[nodiscard]] std::string Path() const;
  void Remove(const Memory_Bar_Control& control);

 private:
  Memory_Command_Bars& owner_;
  std::string name_;
  bool is_own_;  ///< the editor's, or a popup's, which goes with its control
  const Memory_Bar_Control* popup_;
  bool visible_ = true;
  std::vector<std::unique_ptr<Memory_Bar_Control>> controls_;
};

class Memory_Bar_Control final : public CommandBarControl {
 public:
  Memory_Bar_Control(Memory_Bar& bar, ControlType type) : bar_(bar), type_(type) {
    if (type == ControlType::Popup)
      popup_ = std::make_unique<Memory_Bar>(bar.Owner(), std::string(), true, this);
  }

  [[nodiscard]] std::string Caption() const override { return caption_; }
  void Set_Caption(std::string_view caption) override { caption_ = caption; }
  [[nodiscard]] ControlType Type() const override { return type_; }
  [[nodiscard]] bool BeginGroup() const override { return begins_; }
  void Set_BeginGroup(bool begins) override { begins_ = begins; }
  [[nodiscard]] bool Enabled() const override { return enabled_; }
  void Set_Enabled(bool enabled) override { enabled_ = enabled; }
  [[nodiscard]] class CommandBar* CommandBar() override { return popup_.get(); }

  void Execute() override {
    if (!enabled_) throw Host_Error(kErr_Bad_Call, "コマンドは現在使用できません: " + caption_);
    // A handler may remove this control: nothing of it is used once the first one runs.
    std::vector<std::shared_ptr<Click>> clicks;
    for (const auto& source : clicks_)
      if (auto click = source.lock()) clicks.push_back(std::move(click));
    bar_.Owner().Record(Path());
    for (const auto& click : clicks)
      if (const Click handler = *click) handler();
  }
  void Delete() override { bar_.Remove(*this); }

  [[nodiscard]] std::unique_ptr<CommandBarEvents> New_Events() {
    std::erase_if(clicks_, [](const auto& source) { return source.expired(); });
    return std::make_unique<Memory_Events>(clicks_);
  }
  [[nodiscard]] std::string Path() const { return bar_.Path() + " > " + caption_; }

 private:
  Memory_Bar& bar_;
  ControlType type_;
  std::string caption_;
  bool begins_ = false, enabled_ = true;
  std::unique_ptr<Memory_Bar> popup_;
  Click_List clicks_;
};

std::string Memory_Bar::Name() const {
  return popup_ == nullptr ? name_ : popup_->Caption();
}

std::string Memory_Bar::Path() const {
  return popup_ == nullptr ? name_ : popup_->Path();
}

CommandBarControl* Memory_Bar::Item(int position) {
  return position >= 1 && position <= Count()
             ? controls_[static_cast<std::size_t>(position) - 1].get()
             : nullptr;
}

CommandBarControl* Memory_Bar::Item(std::string_view caption) {
  for (const auto& control : controls_)
    if (control->Caption() == caption) return control.get();
  return nullptr;
}

CommandBarControl& Memory_Bar::Add(ControlType type, int before) {
  if (before < 0 || before > Count() + 1)
    throw Host_Error(kErr_Subscript, "バーにその位置はありません。");
  const auto at = before == 0 ? controls_.end() : controls_.begin() + (before - 1);
  return **controls_.insert(at, std::make_unique<Memory_Bar_Control>(*this, type));
}

void Memory_Bar::Remove(const Memory_Bar_Control& control) {
  std::erase_if(controls_, [&](const auto& each) { return each.get() == &control; });
}

Memory_Command_Bars::Memory_Command_Bars() {
  const auto popup = [](CommandBar* bar, std::string_view caption) {
    CommandBarControl* control = bar->Controls().Item(caption);
    if (control == nullptr) {
      control = &bar->Controls().Add(ControlType::Popup);
      control->Set_Caption(caption);
    }
    return control->CommandBar();
  };
  for (const auto& [name, menu, submenu, caption] : kOwn_Entries) {
    CommandBar* bar = Item(name);
    if (bar == nullptr)
      bar = bars_.emplace_back(std::make_unique<Memory_Bar>(*this, std::string(name), true)).get();
    if (!menu.empty()) bar = popup(bar, menu);
    if (!submenu.empty()) bar = popup(bar, submenu);
    if (!caption.empty()) bar->Controls().Add(ControlType::Button).Set_Caption(caption);
  }
}

Memory_Command_Bars::~Memory_Command_Bars() = default;

int Memory_Command_Bars::Count() const {
  return static_cast<int>(bars_.size());
}

CommandBar* Memory_Command_Bars::Item(int position) {
  return position >= 1 && position <= Count() ? bars_[static_cast<std::size_t>(position) - 1].get()
                                              : nullptr;
}

CommandBar* Memory_Command_Bars::Item(std::string_view name) {
  for (const auto& bar : bars_)
    if (bar->Name() == name) return bar.get();
  return nullptr;
}

CommandBar& Memory_Command_Bars::Add(std::string_view name) {
  if (Item(name) != nullptr) throw Host_Error(kErr_Bad_Call, "同じ名前のバーがあります。");
  return *bars_.emplace_back(std::make_unique<Memory_Bar>(*this, std::string(name), false));
}

std::unique_ptr<CommandBarEvents> Memory_Command_Bars::CommandBarEvents(CommandBarControl& button) {
  auto* control = dynamic_cast<Memory_Bar_Control*>(&button);
  if (control == nullptr) throw Host_Error(kErr_Bad_Call, "このエディターのボタンではありません。");
  return control->New_Events();
}

void Memory_Command_Bars::Set_Handler(std::function<void(const std::string&)> handler) {
  handler_ = std::move(handler);
}

void Memory_Command_Bars::Record(const std::string& path) {
  executed_.push_back(path);
  if (const auto handler = handler_) handler(path);
}

void Memory_Command_Bars::Remove(const Memory_Bar& bar) {
  std::erase_if(bars_, [&](const auto& each) { return each.get() == &bar; });
}

}  // namespace oru::host
