// The front end without windows: whatever is on top asks a driver for the
// operator's next action until it closes.
#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ui/operator.h"
#include "screen/engine.h"
#include "screen/search_list.h"

namespace tpv {

class HeadlessFrontEnd : public ui::FrontEnd {
 public:
  void SetDriver(ui::Driver& driver) { driver_ = &driver; }

  void ShowModal(ui::Form& form) override;
  void Load(ui::Form& form) override { engine_.Load(form); }
  ui::Answer Show(const ui::MessageBox& box) override;
  std::optional<std::size_t> Search(ui::SearchRequest& request) override;
  void ShowManual(std::string_view) override {}
  void SetBanner(std::string_view banner) override { engine_.SetBanner(banner); }
  void ProcessEvents() override {}
  bool ShowProgress(const ui::Progress& progress, std::chrono::milliseconds) override {
    return driver_ != nullptr && driver_->GivesUp(progress);
  }
  void EndProgress() override {}
  void Notify(const Notice& notice) override;

  // What nobody has asked for yet, in the order told.
  std::vector<Notice> TakeNotices();
  std::string NoticesText();  // the same, one a line, left there

  ui::Engine& engine() { return engine_; }
  const ui::MessageBox* open_box() const { return box_; }
  ui::SearchList* open_search() const { return search_; }
  void Narrow(std::string_view text);

  // Throws ActionRefused when the box has no such button.
  void AnswerBox(ui::Answer answer);
  void ChooseSearchMenu(std::string_view entry);
  void ExportMatches(const std::string& path);
  void CloseSearch(std::optional<std::size_t> chosen_row);
  // A scanner's keystrokes for whatever is on top.
  void Scan(std::string_view code);

 private:
  void ScanIntoSearch(std::string_view code);

  ui::Engine engine_;
  ui::Driver* driver_ = nullptr;
  const ui::MessageBox* box_ = nullptr;
  std::optional<ui::Answer> answer_;
  bool by_key_ = false;  // whether a scanned code closed the search
  ui::SearchList* search_ = nullptr;
  std::string searched_;  // what is typed in its search box
  bool search_closed_ = false;
  std::optional<std::size_t> chosen_;
  std::mutex mutex_;  // of the notices
  std::vector<Notice> notices_;
};

}  // namespace tpv
